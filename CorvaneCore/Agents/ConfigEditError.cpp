#include "Agents/ConfigEditError.h"

#include <utility>

namespace corvane {

ConfigEditError::ConfigEditError(Case kind, Phrase sentence, std::string detail)
    : kind_(kind)
    , sentence_(sentence)
    , detail_(std::move(detail)) {}

ConfigEditError ConfigEditError::unreadable(std::string reason) {
    return {Case::unreadable, translatable("corvane::ConfigEditError", "%1. Nothing was changed."),
            std::move(reason)};
}

ConfigEditError ConfigEditError::taken(Phrase sentence, std::string line) {
    return {Case::taken, sentence, std::move(line)};
}

std::string ConfigEditError::detail(Words words) const {
    return kind_ == Case::unreadable ? words({"corvane::ConfigEditError", detail_.c_str()}) : detail_;
}

std::string ConfigEditError::description(Words words) const {
    return filled(words(sentence_), {detail(words)});
}

} // namespace corvane

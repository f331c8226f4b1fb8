#include "Agents/ConfigEditError.h"

#include <utility>

namespace corvane {

ConfigEditError::ConfigEditError(Case kind, std::string detail)
    : kind_(kind)
    , detail_(std::move(detail)) {}

ConfigEditError ConfigEditError::unreadable(std::string reason) {
    return {Case::unreadable, std::move(reason)};
}

ConfigEditError ConfigEditError::codexNotifyTaken(std::string line) {
    return {Case::codexNotifyTaken, std::move(line)};
}

std::string ConfigEditError::detail(Words words) const {
    return kind_ == Case::unreadable ? words({"corvane::ConfigEditError", detail_.c_str()}) : detail_;
}

std::string ConfigEditError::description(Words words) const {
    const Phrase pattern =
        kind_ == Case::codexNotifyTaken
            ? translatable("corvane::ConfigEditError",
                           "Codex already sends notifications to another program (%1). Nothing was changed.")
            : translatable("corvane::ConfigEditError", "%1. Nothing was changed.");
    return filled(words(pattern), {detail(words)});
}

} // namespace corvane

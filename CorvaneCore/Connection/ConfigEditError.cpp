#include "Connection/ConfigEditError.h"

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

std::string ConfigEditError::description() const {
    if (kind_ == Case::codexNotifyTaken) {
        return "Codex already sends notifications to another program (" + detail_ + "). Nothing was changed.";
    }
    return detail_ + ". Nothing was changed.";
}

} // namespace corvane

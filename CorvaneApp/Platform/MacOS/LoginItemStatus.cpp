#include "Platform/MacOS/LoginItemStatus.h"

namespace corvane::loginitem {

Status status(long value) {
    switch (value) {
    case 1:
        return Status::enabled;
    case 2:
        return Status::requiresApproval;
    case 3:
        return Status::notFound;
    default:
        return Status::notRegistered;
    }
}

bool isEnabled(Status status) {
    return status == Status::enabled;
}

Change change(Status status, bool wanted) {
    if (wanted) return isEnabled(status) ? Change::none : Change::registerItem;
    const bool isRegistered = isEnabled(status) || status == Status::requiresApproval;
    return isRegistered ? Change::unregisterItem : Change::none;
}

std::string reason(const std::string& systems, Words words) {
    return systems.empty() ? words(translatable("corvane::LoginItem", "The system gave no reason."))
                           : systems;
}

} // namespace corvane::loginitem

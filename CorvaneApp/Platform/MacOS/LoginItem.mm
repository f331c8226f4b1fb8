#include "Platform/MacOS/LoginItem.h"

#include "Platform/MacOS/LoginItemStatus.h"
#include "Style/Translations.h"

#include <QString>

#import <ServiceManagement/ServiceManagement.h>

namespace corvane {

namespace {

loginitem::Status currentStatus() {
    return loginitem::status(static_cast<long>(SMAppService.mainAppService.status));
}

} // namespace

bool MacLoginItem::isEnabled() const {
    return loginitem::isEnabled(currentStatus());
}

void MacLoginItem::setEnabled(bool enabled) {
    NSError* error = nil;
    BOOL isDone = YES;
    switch (loginitem::change(currentStatus(), enabled)) {
    case loginitem::Change::none:
        return;
    case loginitem::Change::registerItem:
        isDone = [SMAppService.mainAppService registerAndReturnError:&error];
        break;
    case loginitem::Change::unregisterItem:
        isDone = [SMAppService.mainAppService unregisterAndReturnError:&error];
        break;
    }
    // The user has to approve it in System Settings.
    if (enabled && currentStatus() == loginitem::Status::requiresApproval)
        [SMAppService openSystemSettingsLoginItems];
    if (isDone) return;
    const QString text = QString::fromNSString(error.localizedDescription);
    throw LoginItemError(loginitem::reason(text.toStdString(), translations::words));
}

} // namespace corvane

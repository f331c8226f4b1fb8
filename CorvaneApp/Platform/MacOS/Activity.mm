#include "Platform/MacOS/Activity.h"

#import <Foundation/Foundation.h>

namespace corvane {

struct Activity::Parts {
    id<NSObject> token = nil;
};

Activity::Activity()
    : parts_(std::make_unique<Parts>()) {
    parts_->token =
        [NSProcessInfo.processInfo beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                                                     reason:@"Alerts are to come at once"];
}

Activity::~Activity() {
    [NSProcessInfo.processInfo endActivity:parts_->token];
}

} // namespace corvane

#include "Platform/MacOS/Observation.h"

#include <QMetaObject>
#include <QObject>

#import <AppKit/AppKit.h>
#include <utility>

namespace corvane {

namespace {

NSNotificationCenter* native(NotificationCenter center) {
    switch (center) {
    case NotificationCenter::application:
        break;
    case NotificationCenter::workspace:
        return NSWorkspace.sharedWorkspace.notificationCenter;
    case NotificationCenter::everyProcess:
        return NSDistributedNotificationCenter.defaultCenter;
    }
    return NSNotificationCenter.defaultCenter;
}

} // namespace

struct Observation::Parts {
    QObject context; // what is still to be called goes with it
    NSNotificationCenter* center = nil;
    id<NSObject> token = nil;
};

Observation::Observation(NotificationCenter center, const QString& name, std::function<void()> work)
    : parts_(std::make_unique<Parts>()) {
    QObject* const context = &parts_->context;
    parts_->center = native(center);
    // At once, on the thread that posts, which is the main one for all that is heard here.
    parts_->token = [parts_->center addObserverForName:name.toNSString()
                                                object:nil
                                                 queue:nil
                                            usingBlock:^(NSNotification*) {
                                              QMetaObject::invokeMethod(context, work, Qt::QueuedConnection);
                                            }];
}

Observation::~Observation() {
    [parts_->center removeObserver:parts_->token];
}

} // namespace corvane

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
    QObject context; // pending calls are cancelled with it
    NSNotificationCenter* center = nil;
    id<NSObject> token = nil;
};

Observation::Observation(NotificationCenter center, const QString& name, std::function<void()> work)
    : parts_(std::make_unique<Parts>()) {
    QObject* const context = &parts_->context;
    parts_->center = native(center);
    // Synchronously, on the posting thread, which is the main thread for all notifications used here.
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

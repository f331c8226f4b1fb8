#include "Platform/MacOS/SingleInstance.h"

#include "Platform/MacOS/ApplicationDelegate.h"

#include <QStandardPaths>

#import <Foundation/Foundation.h>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <utility>

namespace corvane {

namespace {

/// Asks the process that holds the lock to show its window. A distributed notification is sent from the run
/// loop, so this waits, for a second at most, until it has been delivered to this process too.
void askTheFirst() {
    constexpr NSTimeInterval patience = 1;
    NSDistributedNotificationCenter* const center = NSDistributedNotificationCenter.defaultCenter;
    __block bool isDelivered = false;
    const id<NSObject> token = [center addObserverForName:@(reopenNotification)
                                                   object:nil
                                                    queue:nil
                                               usingBlock:^(NSNotification*) {
                                                 isDelivered = true;
                                               }];
    [center postNotificationName:@(reopenNotification) object:nil userInfo:nil deliverImmediately:YES];
    NSDate* const limit = [NSDate dateWithTimeIntervalSinceNow:patience];
    while (!isDelivered && limit.timeIntervalSinceNow > 0)
        [NSRunLoop.currentRunLoop runMode:NSDefaultRunLoopMode beforeDate:limit];
    [center removeObserver:token];
}

} // namespace

MacSingleInstance::MacSingleInstance(std::filesystem::path folder)
    : folder_(std::move(folder)) {}

std::filesystem::path MacSingleInstance::standardFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::CacheLocation).toStdString();
}

bool MacSingleInstance::claim() {
    std::error_code ignored;
    std::filesystem::create_directories(folder_, ignored);
    const std::filesystem::path file = folder_ / "corvane.lock";
    lock_ = files::FileDescriptor(
        open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR));
    if (lock_.isOpen() && flock(lock_.number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        askTheFirst();
        return false;
    }
    const auto tell = [this] { Q_EMIT reopened(); };
    const QString name = QString::fromLatin1(reopenNotification);
    openedAgain_ = std::make_unique<Observation>(NotificationCenter::application, name, tell);
    askedByAnother_ = std::make_unique<Observation>(NotificationCenter::everyProcess, name, tell);
    return true;
}

} // namespace corvane

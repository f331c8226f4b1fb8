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
        [NSDistributedNotificationCenter.defaultCenter postNotificationName:@(reopenNotification)
                                                                     object:nil
                                                                   userInfo:nil
                                                         deliverImmediately:YES];
        return false;
    }
    const auto tell = [this] { Q_EMIT reopened(); };
    const QString name = QString::fromLatin1(reopenNotification);
    openedAgain_ = std::make_unique<Observation>(NotificationCenter::application, name, tell);
    askedByAnother_ = std::make_unique<Observation>(NotificationCenter::everyProcess, name, tell);
    return true;
}

} // namespace corvane

#pragma once

#include "Platform/Linux/FileDescriptor.h"

#include <QObject>
#include <QSocketNotifier>

#include <filesystem>
#include <memory>

namespace corvane {

/// Keeps one process at a time within a folder, without a message bus: whoever holds the lock on a file there
/// is the one, and listens on a socket beside it. The kernel gives the lock back when a process ends, however
/// it does, so nothing that a crash leaves is in the way. Main thread only.
class ReopenLock : public QObject {
    Q_OBJECT

  public:
    explicit ReopenLock(std::filesystem::path folder);

    /// A folder that only this user can write: the session's runtime folder, else one below the folder for
    /// temporary files, made if need be. Empty when there is none.
    [[nodiscard]] static std::filesystem::path standardFolder();

    /// Tries to be the one. False when another process is, which has been asked to come forward; also when it
    /// did not answer for a few seconds. True as well where the folder cannot be used at all: better two than
    /// none.
    [[nodiscard]] bool claim();

  Q_SIGNALS:
    /// Another process has tried to be the one.
    void asked();

  private:
    void listen();
    void answer();
    /// Whether the one heard that another process has come.
    [[nodiscard]] bool ask() const;

    std::filesystem::path path_;
    FileDescriptor folder_;
    FileDescriptor lock_;
    FileDescriptor socket_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace corvane

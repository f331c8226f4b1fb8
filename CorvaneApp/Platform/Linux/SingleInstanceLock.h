#pragma once

#include "Support/FileDescriptor.h"

#include <QObject>
#include <QSocketNotifier>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace corvane {

/// A single-instance lock in a folder, for sessions without a message bus. The process that holds the lock on
/// a file there listens on a socket beside it. The kernel releases the lock when the process ends, however it
/// ends, so leftovers of a crash do no harm. Main thread only.
class SingleInstanceLock : public QObject {
    Q_OBJECT

  public:
    explicit SingleInstanceLock(std::filesystem::path folder);

    /// A folder that only this user can write: the session's runtime folder, else one in the folder for
    /// temporary files, created if missing. Empty if there is none.
    [[nodiscard]] static std::filesystem::path standardFolder();

    /// Takes the lock. Returns false if another process holds it; `message`, at most 4096 bytes, has then
    /// been sent to that process, unless it did not listen for a few seconds. Without a message, nothing is
    /// sent. Returns true if the folder cannot be used at all: two instances are better than none.
    [[nodiscard]] bool claim(const std::optional<std::string>& message = std::string());

  Q_SIGNALS:
    /// Another process tried to take the lock.
    void asked(const std::string& message);

  private:
    void listen();
    void answer();
    /// Notifies the process that holds the lock; returns whether that worked.
    [[nodiscard]] bool ask(const std::string& message) const;

    std::filesystem::path path_;
    files::FileDescriptor folder_;
    files::FileDescriptor lock_;
    files::FileDescriptor socket_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace corvane

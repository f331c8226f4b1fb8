#pragma once

#include "Intake/AgentEvent.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <vector>

namespace corvane {

/// The application's side of the inbox directory: collects the event files that hook processes have finished.
///
/// Stores nothing but the path; all state is the directory's contents. Main thread only. Hook processes may
/// keep writing meanwhile: a file counts from the moment it has its final name. The application itself uses
/// `InboxReader`, which stays responsive and remembers what it could not delete.
struct EventInbox {
    /// The most event files that one drain reads; of a larger backlog, the oldest files are deleted unread.
    static constexpr std::size_t maxBacklog = 200;

    /// A larger file, in bytes, is deleted unread.
    static constexpr std::uintmax_t maxFileSize = std::uintmax_t{64} * 1024 * 1024;

    std::filesystem::path directory;
    AgentKinds agents = AgentKind::allCases; ///< files of others count as malformed

    /// Reads and deletes every visible file with the extension "event", and returns the events oldest first,
    /// equal dates by file name. Never fails and never blocks: a file that is malformed, too large, not a
    /// regular file or a symbolic link is deleted silently, a subdirectory is left alone, and an inbox that
    /// cannot be listed yields no events.
    [[nodiscard]] std::vector<AgentEvent> drain() const;
};

} // namespace corvane

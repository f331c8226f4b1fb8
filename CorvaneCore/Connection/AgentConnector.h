#pragma once

#include "Agents/AgentKind.h"
#include "Support/CorvanePaths.h"
#include "Support/Date.h"

#include <filesystem>
#include <optional>

namespace corvane {

/// Connects agents to the application and removes them again: the only place that changes files of other
/// programs.
///
/// At every moment, whatever fails and whenever the process ends, an agent's file holds all of its old bytes
/// or all of the new ones. Links to it stay links. Before connecting changes a file that it could read, it
/// keeps the old bytes in a backup beside it: its name, ".corvane-backup-" and the local time
/// (yyyyMMdd-HHmmss), then "-2", "-3" and so on when that name is taken. Backups are never deleted.
///
/// The agents write their files too. The file is checked again (identity, size, modification time) just
/// before the new one replaces it; if it changed, the edit starts over on the new content, three times at
/// most. Two small windows remain: a change within the microseconds between that check and the rename is lost
/// (the backup does not hold it), and so is a change in place that keeps size and modification time, which
/// takes two writes within one tick of the file system's clock.
///
/// Errors: HookScript::install's, ConfigEditError, files::FileError. Immutable; files are written on the
/// calling thread. Do not connect or disconnect the same agent from two threads at once.
class AgentConnector {
  public:
    /// `home`: the user's home directory, absolute. Without `paths`, the application's files are at their
    /// standard place under it.
    explicit AgentConnector(std::filesystem::path home, std::optional<CorvanePaths> paths = std::nullopt);

    [[nodiscard]] const std::filesystem::path& home() const { return home_; }
    [[nodiscard]] const CorvanePaths& paths() const { return paths_; }

    /// The file that `kind` reads its configuration from, whether it exists or not.
    [[nodiscard]] std::filesystem::path configFile(AgentKind kind) const;

    /// Whether the agent's file calls the hook wherever it should. False when it cannot be read. Never
    /// throws.
    [[nodiscard]] bool isConnected(AgentKind kind) const noexcept;

    /// Installs the hook program and makes the agent's file call it; creates file and folder if missing.
    /// `now` names the backup. Returns the backup's path; none when there were no readable bytes to back up
    /// or nothing had to change.
    ///
    /// A file that exists but cannot be read counts as missing: it is kept under a backup name by a hard
    /// link, which is not returned, before a new file replaces it. Anything but a file or a link to one (a
    /// folder, a pipe) is an error. So is running out of memory or file descriptors, which says nothing about
    /// the file.
    [[nodiscard]] std::optional<std::filesystem::path> connect(AgentKind kind, Date now) const;

    /// Rewrites the hook program if it is missing, changed or not executable. A connected agent would
    /// otherwise call nothing.
    void repairHook() const;

    /// Removes the application's own entries from the agent's file, without a backup. Does nothing when the
    /// file is missing or cannot be read. The hook program stays.
    void disconnect(AgentKind kind) const;

  private:
    std::filesystem::path home_;
    CorvanePaths paths_;
};

} // namespace corvane

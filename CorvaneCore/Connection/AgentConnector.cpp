#include "Connection/AgentConnector.h"

#include "Agents/HookScript.h"
#include "Support/Files.h"

#include <array>
#include <cerrno>
#include <ctime>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace corvane {

namespace fs = std::filesystem;
using files::FileError;
using files::FileState;

namespace {

/// How often an operation is tried on a file that keeps changing: once, plus three retries.
constexpr int attempts = 4;

struct Configuration {
    std::optional<std::string> bytes; ///< None when there is no file or it cannot be read.
    FileState state;
};

/// Whether a failed read is transient: it says nothing about the file, which must then not count as
/// unreadable.
bool isPassing(const FileError& error) {
    const int value = error.code().value();
    return value == EMFILE || value == ENFILE || value == ENOMEM || value == EBUSY;
}

Configuration readConfiguration(const fs::path& file) {
    Configuration found;
    found.state = files::state(file);
    if (found.state.kind == FileState::Kind::absent) return found;
    try {
        files::FileContent content = files::read(file);
        return {std::move(content.bytes), content.state};
    } catch (const FileError& error) {
        if (error.code() == std::errc::no_such_file_or_directory) return {};
        if (found.state.kind != FileState::Kind::plain || isPassing(error)) throw;
        return found;
    }
}

/// Throws if the hook program's path cannot be written in the agent's file.
void requireWritablePath(const AgentDescriptor& agent, const CorvanePaths& paths) {
    const std::string path = paths.hookScript().string();
    if (!agent.canHoldPath(path)) throw FileError(FileError::Operation::write, path, EILSEQ);
}

/// `now` as yyyyMMdd-HHmmss in the user's time zone, the same in every locale.
std::string timestamp(Date now, const fs::path& file) {
    const auto seconds = static_cast<std::time_t>(now.seconds());
    std::tm local{};
    tzset(); // the zone may have changed since the last time
    std::array<char, 64> text{};
    if (localtime_r(&seconds, &local) == nullptr ||
        std::strftime(text.data(), text.size(), "%Y%m%d-%H%M%S", &local) == 0) {
        throw FileError(FileError::Operation::backUp, file, EOVERFLOW);
    }
    return text.data();
}

/// The first free name for a backup of `file`, beside it and not beside its link target.
fs::path backupName(const fs::path& file, Date now) {
    const std::string name = file.string() + ".corvane-backup-" + timestamp(now, file);
    fs::path candidate = name;
    for (int n = 2; files::nameIsTaken(candidate); ++n)
        candidate = name + "-" + std::to_string(n);
    return candidate;
}

fs::path makeBackup(const fs::path& file, std::string_view bytes, Date now) {
    fs::path backup = backupName(file, now);
    files::writeBackup(backup, bytes, file);
    return backup;
}

/// Removes a backup of content that the file no longer has and that we did not replace.
void discard(const fs::path& backup) {
    std::error_code ignored;
    fs::remove(backup, ignored);
}

[[noreturn]] void throwKeepsChanging(const fs::path& file) {
    throw FileError(FileError::Operation::write, file, EBUSY);
}

} // namespace

AgentConnector::AgentConnector(fs::path home, std::optional<CorvanePaths> paths)
    : home_(std::move(home))
    , paths_(paths ? std::move(*paths) : CorvanePaths::standard(home_)) {}

fs::path AgentConnector::configFile(AgentKind kind) const {
    return home_ / kind.descriptor().configFile;
}

bool AgentConnector::isConnected(AgentKind kind) const noexcept {
    try {
        return kind.descriptor().isInstalled(files::read(configFile(kind)).bytes);
    } catch (...) {
        return false;
    }
}

std::optional<fs::path> AgentConnector::connect(AgentKind kind, Date now) const {
    requireWritablePath(kind.descriptor(), paths_);
    HookScript::install(paths_);
    const fs::path file = configFile(kind);
    for (int i = 0; i < attempts; ++i) {
        const Configuration old = readConfiguration(file);
        const std::string bytes = kind.descriptor().install(old.bytes, paths_);
        if (old.bytes) {
            if (*old.bytes == bytes) return std::nullopt;
            fs::path backup = makeBackup(file, *old.bytes, now);
            if (files::replaceIfUnchanged(file, bytes, old.state)) return backup;
            discard(backup);
        } else {
            std::optional<fs::path> link;
            if (old.state.kind != FileState::Kind::absent) {
                link = backupName(file, now);
                files::linkBackup(*link, file);
            }
            // The old file could not be read; with its permissions, the new one might be unreadable too.
            if (files::replaceIfUnchanged(file, bytes, old.state, files::Permissions::fresh)) {
                return std::nullopt;
            }
            if (link) discard(*link);
        }
    }
    throwKeepsChanging(file);
}

void AgentConnector::repairHook() const {
    if (!HookScript::isInstalled(paths_)) HookScript::install(paths_);
}

void AgentConnector::disconnect(AgentKind kind) const {
    const fs::path file = configFile(kind);
    for (int i = 0; i < attempts; ++i) {
        files::FileContent old;
        try {
            old = files::read(file);
        } catch (const FileError& error) {
            if (isPassing(error)) throw;
            return;
        }
        const std::string bytes = kind.descriptor().uninstall(old.bytes);
        if (bytes == old.bytes || files::replaceIfUnchanged(file, bytes, old.state)) return;
    }
    throwKeepsChanging(file);
}

} // namespace corvane

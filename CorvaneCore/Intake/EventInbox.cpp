#include "Intake/EventInbox.h"

#include "Agents/EventPayload.h"
#include "Support/FileDescriptor.h"
#include "Support/FileTime.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace corvane {

namespace {

struct CloseDirectory {
    void operator()(DIR* directory) const { closedir(directory); }
};
using Directory = std::unique_ptr<DIR, CloseDirectory>;

struct Entry {
    Date date = Date::distantPast(); // unless the date could be read
    std::string name;
    bool mayBeRead = true; // false for what is known not to be a regular file

    bool operator<(const Entry& other) const {
        return date != other.date ? date < other.date : name < other.name;
    }
};

bool isEventFileName(std::string_view name) {
    return name.front() != '.' && name.ends_with(".event");
}

/// The event files of a directory in no particular order; none when the directory cannot be listed to its
/// end.
std::vector<Entry> eventFiles(DIR* directory) {
    std::vector<Entry> entries;
    while (true) {
        errno = 0;
        const dirent* const found = readdir(directory);
        if (found == nullptr) {
            if (errno != 0) entries.clear();
            return entries;
        }
        if (!isEventFileName(found->d_name)) continue;

        Entry entry;
        struct stat status {};
        if (fstatat(dirfd(directory), found->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0) {
            if (S_ISDIR(status.st_mode)) continue;
            entry.date = modificationDate(status);
            entry.mayBeRead = S_ISREG(status.st_mode);
        }
        entry.name = found->d_name;
        entries.push_back(std::move(entry));
    }
}

/// The whole text of a regular file of at most `EventInbox::maxFileSize` bytes, a view into `buffer` with
/// padding after it for the payload's parser; none for anything else. Never blocks and never follows a link:
/// another kind of file may have taken the name.
std::optional<std::string_view> readEventFile(int directory, const char* name, std::string& buffer) {
    const files::FileDescriptor file(
        openat(directory, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status {};
    if (!file.isOpen() || fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    const auto size = static_cast<std::uintmax_t>(status.st_size);
    if (size > EventInbox::maxFileSize) return std::nullopt;
    return files::readToEnd(file, buffer,
                            {.expected = static_cast<std::size_t>(size),
                             .most = EventInbox::maxFileSize,
                             .spare = EventPayload::padding});
}

} // namespace

std::vector<AgentEvent> EventInbox::drain() const {
    const Directory opened(opendir(directory.c_str()));
    if (!opened) return {};
    std::vector<Entry> entries = eventFiles(opened.get());
    if (entries.empty()) return {};
    std::sort(entries.begin(), entries.end());

    const int place = dirfd(opened.get());
    const std::size_t surplus = entries.size() - std::min(entries.size(), maxBacklog);
    std::vector<AgentEvent> events;
    events.reserve(entries.size() - surplus);
    // Freed at the end: files of many megabytes are rare, and the application stays open all day.
    std::string buffer;
    EventPayload payload;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const Entry& entry = entries[i];
        if (i >= surplus && entry.mayBeRead) {
            if (const auto text = readEventFile(place, entry.name.c_str(), buffer)) {
                auto event = AgentEvent::parse(*text, entry.date, payload, agents);
                if (event) events.push_back(*std::move(event));
            }
        }
        unlinkat(place, entry.name.c_str(), 0);
    }
    return events;
}

} // namespace corvane

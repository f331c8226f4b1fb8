#include "Intake/EventInbox.h"

#include "Agents/EventPayload.h"
#include "Support/FileTime.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <new>
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

class Descriptor {
  public:
    explicit Descriptor(int number)
        : number_(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (number_ >= 0) close(number_);
    }
    [[nodiscard]] int number() const { return number_; }

  private:
    int number_;
};

struct Entry {
    Date date = Date::distantPast(); // stays so when the date cannot be read
    std::string name;
    bool mayBeRead = true; // false for what is known to be no plain file

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

/// Reads files one after the other into the same memory, with room behind the text for the payload's parser.
class FileReader {
  public:
    /// The whole of a plain file of at most `EventInbox::maxFileSize` bytes, valid until the next call; none
    /// for anything else. Never waits and never follows a link: another kind of file may have taken the name.
    std::optional<std::string_view> read(int directory, const char* name) {
        const Descriptor file(
            openat(directory, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
        struct stat status {};
        if (file.number() < 0 || fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode)) {
            return std::nullopt;
        }
        // A byte more than the file has leaves room to notice its end, and that it has grown.
        const auto size = static_cast<std::uintmax_t>(status.st_size);
        if (size > EventInbox::maxFileSize || !reserve(size + 1)) return std::nullopt;
        return readToEnd(file.number());
    }

  private:
    std::optional<std::string_view> readToEnd(int file) {
        std::size_t size = 0;
        while (true) {
            const ssize_t count = ::read(file, bytes_.get() + size, capacity_ - size);
            if (count < 0 && errno == EINTR) continue;
            if (count < 0) return std::nullopt;
            if (count == 0) break;
            size += static_cast<std::size_t>(count);
            if (size > EventInbox::maxFileSize) return std::nullopt;
            if (size == capacity_ && !grow()) return std::nullopt;
        }
        std::memset(bytes_.get() + size, 0, EventPayload::padding);
        return std::string_view(bytes_.get(), size);
    }

    bool reserve(std::size_t capacity) {
        constexpr std::size_t step = std::size_t{64} * 1024;
        if (capacity <= capacity_) return true;
        capacity = (capacity + step - 1) / step * step;
        bytes_.reset(new (std::nothrow) char[capacity + EventPayload::padding]);
        capacity_ = bytes_ ? capacity : 0;
        return bytes_ != nullptr;
    }

    bool grow() {
        const std::unique_ptr<char[]> old = std::move(bytes_);
        const std::size_t oldCapacity = std::exchange(capacity_, 0);
        if (!reserve(oldCapacity * 2)) return false;
        std::memcpy(bytes_.get(), old.get(), oldCapacity);
        return true;
    }

    std::unique_ptr<char[]> bytes_;
    std::size_t capacity_ = 0; // without the padding
};

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
    // Given back at the end: files of many megabytes are rare, and the application stays open all day.
    FileReader reader;
    EventPayload payload;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const Entry& entry = entries[i];
        if (i >= surplus && entry.mayBeRead) {
            if (const auto text = reader.read(place, entry.name.c_str())) {
                auto event = AgentEvent::parse(*text, entry.date, payload, agents);
                if (event) events.push_back(*std::move(event));
            }
        }
        unlinkat(place, entry.name.c_str(), 0);
    }
    return events;
}

} // namespace corvane

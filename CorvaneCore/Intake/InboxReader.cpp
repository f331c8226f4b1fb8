#include "Intake/InboxReader.h"

#include "Agents/EventPayload.h"
#include "Intake/EventInbox.h"
#include "Support/FileDescriptor.h"
#include "Support/FileTime.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace corvane {

namespace {

bool isEventFileName(std::string_view name) {
    return name.front() != '.' && name.ends_with(".event");
}

/// Whether an error is transient, that is, says nothing about the file itself.
bool isPassing(int error) {
    constexpr int errors[]{EMFILE, ENFILE, ENOMEM, EIO, EINTR, EAGAIN, ESTALE, ETIMEDOUT};
    return std::ranges::find(errors, error) != std::end(errors);
}

/// The whole text of a regular file of at most `EventInbox::maxFileSize` bytes, a view into `buffer` with
/// padding after it for the payload's parser; none with errno set for anything else. Never blocks and never
/// follows a link: another kind of file may have taken the name.
std::optional<std::string_view> readEventFile(int directory, const char* name, std::string& buffer) {
    const files::FileDescriptor file(
        openat(directory, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status {};
    if (!file.isOpen() || fstat(file.number(), &status) != 0) return std::nullopt;
    const auto size = static_cast<std::uintmax_t>(status.st_size);
    if (!S_ISREG(status.st_mode) || size > EventInbox::maxFileSize) {
        errno = EINVAL;
        return std::nullopt;
    }
    return files::readToEnd(file, buffer,
                            {.expected = static_cast<std::size_t>(size),
                             .most = EventInbox::maxFileSize,
                             .spare = EventPayload::padding});
}

} // namespace

InboxReader::InboxReader(std::filesystem::path directory, AgentKinds agents, int patience)
    : path_(std::move(directory))
    , agents_(agents)
    , patience_(patience) {}

InboxReader::~InboxReader() = default;

void InboxReader::begin() {
    directory_.reset(opendir(path_.c_str()));
    bytesRead_ = 0;
    wasLarge_ = false;
}

bool InboxReader::step(std::vector<AgentEvent>& events, const Share& share) {
    if (directory_ && !isListed_) list(share.names);
    if (isListed_ && next_ < surplus_) deleteSurplus(share.deletions);
    if (isListed_ && next_ >= surplus_) read(events, share.bytes);
    return directory_ != nullptr;
}

void InboxReader::list(std::size_t names) {
    for (std::size_t i = 0; i < names; ++i) {
        errno = 0;
        const dirent* const found = readdir(directory_.get());
        if (found != nullptr) {
            if (isEventFileName(found->d_name)) note(found->d_name);
            continue;
        }
        if (errno != 0) {
            // Nothing is known about the files that were not listed.
            undeletable_.merge(stillThere_);
            end();
        } else {
            finishListing();
        }
        return;
    }
}

void InboxReader::note(const char* name) {
    Entry entry;
    struct stat status {};
    const bool hasStatus = fstatat(dirfd(directory_.get()), name, &status, AT_SYMLINK_NOFOLLOW) == 0;
    if (hasStatus) {
        if (S_ISDIR(status.st_mode)) return;
        entry.date = modificationDate(status);
        entry.mayBeRead = S_ISREG(status.st_mode);
    }
    const auto known = undeletable_.find(std::string_view(name));
    if (known != undeletable_.end() && (!hasStatus || known->second == entry.date)) {
        stillThere_.insert(undeletable_.extract(known));
        return;
    }
    entry.name = name;
    entries_.push_back(std::move(entry));
}

void InboxReader::finishListing() {
    isListed_ = true;
    undeletable_ = std::exchange(stillThere_, {});
    deleteAgain();
    surplus_ = entries_.size() - std::min(entries_.size(), EventInbox::maxBacklog);
    const auto kept = entries_.begin() + static_cast<std::ptrdiff_t>(surplus_);
    // The surplus needs no order.
    if (surplus_ > 0) std::nth_element(entries_.begin(), kept, entries_.end());
    std::sort(kept, entries_.end());
}

void InboxReader::deleteAgain() {
    constexpr std::size_t most = 1'000;
    // Enough to conclude that the folder still rejects deletions; a single file may have its own owner or
    // flag.
    constexpr int mostFailures = 8;
    int failures = 0;
    for (std::size_t left = std::min(most, undeletable_.size()); left > 0 && failures < mostFailures;
         --left) {
        auto next = undeletable_.upper_bound(lastTried_);
        if (next == undeletable_.end()) next = undeletable_.begin();
        lastTried_ = next->first;
        if (remove(next->first)) {
            undeletable_.erase(next);
        } else {
            ++failures;
        }
    }
}

void InboxReader::deleteSurplus(std::size_t deletions) {
    const std::size_t stop = std::min(surplus_, next_ + deletions);
    for (; next_ < stop; ++next_)
        removeOrRemember(entries_[next_]);
}

void InboxReader::read(std::vector<AgentEvent>& events, std::uintmax_t bytes) {
    const std::uintmax_t before = bytesRead_;
    while (next_ < entries_.size() && bytesRead_ - before < bytes) {
        const Entry& entry = entries_[next_];
        // Later files must not be delivered before this one.
        const Reading reading = entry.mayBeRead ? readFile(entry, events) : Reading::done;
        if (reading == Reading::postponed) return end();
        if (reading == Reading::done) {
            removeOrRemember(entry);
        } else {
            // Not remembered as undeletable: if it becomes readable before it can be deleted, it is still
            // delivered.
            remove(entry.name);
        }
        ++next_;
    }
    if (next_ == entries_.size()) end();
}

InboxReader::Reading InboxReader::readFile(const Entry& entry, std::vector<AgentEvent>& events) {
    const auto text = readEventFile(dirfd(directory_.get()), entry.name.c_str(), buffer_);
    if (!text) {
        if (!isPassing(errno)) return Reading::done;
        if (failedPasses_ >= patience_) return Reading::givenUp;
        ++failedPasses_;
        return Reading::postponed;
    }
    failedPasses_ = 0;
    bytesRead_ += text->size();
    if (!payload_) payload_ = std::make_unique<EventPayload>();
    auto event = AgentEvent::parse(*text, entry.date, *payload_, agents_);
    if (event) events.push_back(*std::move(event));
    return Reading::done;
}

bool InboxReader::remove(const std::string& name) {
    return unlinkat(dirfd(directory_.get()), name.c_str(), 0) == 0 || errno == ENOENT;
}

void InboxReader::removeOrRemember(const Entry& entry) {
    if (!remove(entry.name)) undeletable_.insert_or_assign(entry.name, entry.date);
}

// Frees everything, since files of many megabytes are rare, and the application stays open all day.
void InboxReader::end() {
    constexpr std::uintmax_t much = std::uintmax_t{1} << 20U;
    constexpr std::size_t many = 10'000;
    wasLarge_ = bytesRead_ > much || entries_.size() > many;
    directory_.reset();
    isListed_ = false;
    stillThere_.clear();
    std::vector<Entry>().swap(entries_);
    surplus_ = 0;
    next_ = 0;
    std::string().swap(buffer_); // an assignment would keep the memory
    payload_.reset();
}

} // namespace corvane

#pragma once

#include "Intake/AgentEvent.h"

#include <cstddef>
#include <cstdint>
#include <dirent.h>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace corvane {

/// Collects the event files of an inbox directory in passes, each of which can be spread over many turns of
/// an event loop. A pass delivers what was in the directory when it was listed, oldest first, equal dates by
/// file name, and deletes it; of more than `EventInbox::maxBacklog` files the oldest are deleted unread.
///
/// Remembers from pass to pass, by name and modification date, what could not be deleted, so that nothing is
/// delivered twice. Never fails and never blocks. Main thread only.
class InboxReader {
  public:
    /// The most that one step does, about 20 ms of work in all. A single file may be larger.
    struct Share {
        std::size_t names = 5'000;                       ///< Entries listed.
        std::size_t deletions = 1'000;                   ///< Files deleted unread.
        std::uintmax_t bytes = std::uintmax_t{4} << 20U; ///< Bytes read.
    };

    /// The number of successive passes that wait for a file whose reading fails for a transient reason, such
    /// as a lack of file descriptors. After that, files that cannot be read are deleted, until one can be
    /// read again.
    static constexpr int usualPatience = 10;

    /// Files of other agents than `agents` count as malformed.
    explicit InboxReader(std::filesystem::path directory, AgentKinds agents = AgentKind::allCases,
                         int patience = usualPatience);
    InboxReader(const InboxReader&) = delete;
    InboxReader& operator=(const InboxReader&) = delete;
    ~InboxReader();

    /// Begins a pass, once the previous one has ended.
    void begin();

    /// Continues the pass and appends the events read to `events`. Returns whether there is more to do.
    bool step(std::vector<AgentEvent>& events, const Share& share);
    bool step(std::vector<AgentEvent>& events) { return step(events, Share()); }

    /// Whether the last pass needed an unusual amount of memory, all of which it has freed.
    [[nodiscard]] bool wasLarge() const { return wasLarge_; }
    /// The number of files remembered as impossible to delete.
    [[nodiscard]] std::size_t undeletableCount() const { return undeletable_.size(); }

  private:
    struct CloseDirectory {
        void operator()(DIR* directory) const { closedir(directory); }
    };
    struct Entry {
        Date date = Date::distantPast(); // if the date could not be read
        std::string name;
        bool mayBeRead = true; // false for what is known not to be a regular file

        bool operator<(const Entry& other) const {
            return date != other.date ? date < other.date : name < other.name;
        }
    };
    using Dates = std::map<std::string, Date, std::less<>>;
    enum class Reading { done, postponed, givenUp };

    void list(std::size_t names);
    void note(const char* name);
    void finishListing();
    void deleteAgain();
    void deleteSurplus(std::size_t deletions);
    void read(std::vector<AgentEvent>& events, std::uintmax_t bytes);
    Reading readFile(const Entry& entry, std::vector<AgentEvent>& events);
    bool remove(const std::string& name);
    void removeOrRemember(const Entry& entry);
    void end();

    std::filesystem::path path_;
    AgentKinds agents_;
    int patience_;
    int failedPasses_ = 0; // successive passes that ended at a file that could not be read
    Dates undeletable_;
    std::string lastTried_; // the last of them whose deletion was tried again

    // State of the current pass.
    std::unique_ptr<DIR, CloseDirectory> directory_;
    bool isListed_ = false;
    Dates stillThere_;           // the part of `undeletable_` that the listing has found again
    std::vector<Entry> entries_; // after the listing: the surplus, then what is to be read, in order
    std::size_t surplus_ = 0;
    std::size_t next_ = 0;
    std::uintmax_t bytesRead_ = 0;
    bool wasLarge_ = false;
    std::string buffer_;
    std::unique_ptr<EventPayload> payload_;
};

} // namespace corvane

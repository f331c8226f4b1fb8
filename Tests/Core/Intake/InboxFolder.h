#pragma once

#include "Intake/AgentEvent.h"
#include "Support/TestSupport.h"

#include <cstddef>
#include <filesystem>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::test {

/// An inbox of its own for a test, and what hooks write into it.
class InboxFolder {
  public:
    InboxFolder() { std::filesystem::create_directory(path()); }

    [[nodiscard]] std::filesystem::path path() const { return scratch_ / "events"; }
    [[nodiscard]] std::filesystem::path operator/(std::string_view name) const { return path() / name; }
    [[nodiscard]] const ScratchFolder& scratch() const { return scratch_; }

    /// Adds an event whose session identifier is the file's name, and `padding` bytes more of text.
    void add(std::string_view name, Date date, std::size_t padding = 0) const {
        writeFile(path() / name, R"(corvane-event 1
source=claude
---
{"hook_event_name":"Stop","session_id":")" +
                                     std::string(name) + R"(","message":")" + std::string(padding, 'x') +
                                     "\"}\n");
        setModificationDate(path() / name, date);
    }

    [[nodiscard]] std::size_t count() const {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(path()), {}));
    }

  private:
    ScratchFolder scratch_;
};

/// The session identifiers of `events`.
inline std::vector<std::string> sessionIDs(const std::vector<AgentEvent>& events) {
    std::vector<std::string> result;
    for (const AgentEvent& event : events)
        result.push_back(event.sessionID);
    return result;
}

} // namespace corvane::test

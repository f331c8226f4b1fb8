#pragma once

#include <functional>
#include <optional>
#include <string>

namespace corvane {

/// What is known about the terminal in which a session runs.
struct Terminal {
    std::optional<std::string> bundleID; ///< its application's, if known
    std::string program;                 ///< its value of TERM_PROGRAM; may be empty
    std::string agent;                   ///< the program that runs in it
    std::string directory;               ///< that program's working directory

    bool operator==(const Terminal&) const = default;
};

/// The other applications that run on this desktop. Main thread only.
class Applications {
  public:
    /// Called with whether a terminal was found and brought to the front.
    using Report = std::function<void(bool isFound)>;

    Applications() = default;
    Applications(const Applications&) = delete;
    Applications& operator=(const Applications&) = delete;
    virtual ~Applications() = default;

    /// Brings the terminal to the front: the window in which the agent runs, if the system can find it by the
    /// running processes, else a window of the application. Never launches anything. Calls `report` once,
    /// immediately or some seconds later; not at all if this object is destroyed first.
    virtual void activate(const Terminal& terminal, Report report) = 0;
};

} // namespace corvane

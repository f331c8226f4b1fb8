#pragma once

#include <string>

namespace corvane {

/// The other applications that run on this desktop. Main thread only.
class Applications {
  public:
    Applications() = default;
    Applications(const Applications&) = delete;
    Applications& operator=(const Applications&) = delete;
    virtual ~Applications() = default;

    /// Brings the first running application with this bundle identifier to the front. Nothing happens when
    /// none runs; nothing is ever launched.
    virtual void activate(const std::string& bundleID) = 0;

    /// The same for the terminal in which the program `agent` runs in the working directory `directory`,
    /// where the system can find that out from the running processes; used when no identifier is known.
    /// Nothing happens where nothing is found.
    virtual void activateTerminal(const std::string& agent, const std::string& directory) = 0;
};

} // namespace corvane

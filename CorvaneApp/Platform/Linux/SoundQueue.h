#pragma once

#include <chrono>
#include <deque>
#include <optional>
#include <string>

namespace corvane {

/// Sounds waiting for the player. A sound server that does not respond may block the player for half a
/// minute; requests that have waited too long by then are dropped, so that the sounds of many old alerts are
/// not played all at once and the queue does not grow.
class SoundQueue {
  public:
    using Moment = std::chrono::steady_clock::time_point;

    /// A sound played later than this no longer seems to belong to its banner.
    static constexpr std::chrono::milliseconds longestWait{1000};

    void add(std::string name, Moment now);

    /// Removes and returns the sound to play next, first in, first out; none if no request is recent enough.
    [[nodiscard]] std::optional<std::string> next(Moment now);

    [[nodiscard]] bool empty() const { return requests_.empty(); }

  private:
    void forgetOld(Moment now);

    struct Request {
        std::string name;
        Moment moment;
    };
    std::deque<Request> requests_;
};

} // namespace corvane

#pragma once

#include <chrono>
#include <deque>
#include <optional>
#include <string>

namespace corvane {

/// Sounds on their way to whoever plays them. A player may be held up for half a minute by a sound server
/// that does not answer; what has waited too long by then is forgotten, so that the sounds of many old alerts
/// do not come all at once and the queue does not grow.
class SoundQueue {
  public:
    using Moment = std::chrono::steady_clock::time_point;

    /// A sound that comes later than this is no longer taken to belong to its banner.
    static constexpr std::chrono::milliseconds longestWait{1000};

    void add(std::string name, Moment now);

    /// Takes out the sound to play next, in the order of asking; none when nothing is due any more.
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

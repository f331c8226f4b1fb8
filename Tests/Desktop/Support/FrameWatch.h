#pragma once

#include "Desktop/Support/Picture.h"
#include "Desktop/Support/Starvation.h"
#include "Desktop/Support/XObserver.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <sys/types.h>
#include <thread>
#include <vector>

namespace corvane::test {

/// Watches the banners as the screen shows them, every few milliseconds, on its own thread and connection.
/// Each that is opaque, and not about to fade out, must be seen whole: at its place or, since compositing
/// managers lag a little, at its previous one. A new one may take a second until it is whole.
///
/// Whole means identical, pixel by pixel, to its first correct appearance, except for its clock. The pointer
/// must stay away from the banners.
///
/// Time for which the programs involved wait for a processor does not count, nor do delayed looks.
class FrameWatch {
  public:
    /// `display` as in DISPLAY; the processes are those that draw it.
    FrameWatch(const std::string& display, const std::vector<pid_t>& processes);
    FrameWatch(const FrameWatch&) = delete;
    FrameWatch& operator=(const FrameWatch&) = delete;
    ~FrameWatch();

    struct Result {
        std::size_t frames = 0; ///< how many times the screen changed
        std::size_t cards = 0;  ///< the number of banners that were seen whole
        std::size_t torn = 0;   ///< how many times one of them was not
        std::string fault;      ///< the first fault, and
        Picture picture;        ///< the screen at that time
    };
    /// Stops watching.
    [[nodiscard]] Result stop();

  private:
    /// Of a clock that is paused while the programs wait for a processor.
    using Time = std::chrono::nanoseconds;

    struct Place {
        Rect card;
        Time lastSeen;
    };
    struct Card {
        std::optional<Time> opaqueSince;
        std::vector<Place> places; // the current one last
        std::optional<Picture> whole;
    };

    struct Tear {
        Time when;
        std::uint32_t window = 0;
        std::string fault;
        Picture picture;
    };

    void watch(const std::stop_token& stop);
    void advanceClock();
    void look();
    void note(const std::vector<Banner>& banners);
    void decide(Time until);
    void judge(const Picture& screen, const std::vector<Banner>& banners);
    [[nodiscard]] std::optional<std::string> fault(const Picture& screen, const Card& card) const;
    [[nodiscard]] bool isFadedOver(const Banner& banner, const std::vector<Banner>& banners) const;

    XObserver screen_;
    std::vector<pid_t> processes_;
    std::optional<Starvation> starvation_; // of the watching thread too, so it is created there
    std::chrono::steady_clock::time_point clockRead_;
    std::chrono::nanoseconds starved_{0}; // when the clock was read
    Time now_{0};
    std::map<std::uint32_t, Card> cards_; // by the window
    std::deque<Tear> tears_;              // that do not count if the banner turns out to be leaving
    Picture last_;
    Result result_;
    std::jthread thread_;
};

} // namespace corvane::test

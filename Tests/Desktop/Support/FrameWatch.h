#pragma once

#include "Desktop/Support/Picture.h"
#include "Desktop/Support/XObserver.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace corvane::test {

/// Watches the banners as the screen shows them, every few milliseconds, on a thread and a connection of its
/// own. Each that is opaque, and not about to fade out, must be seen whole: at its place or, since
/// compositors are a little late, at one that it has left just before. A new one may take a second until it
/// is.
///
/// Whole means as it was when all of it was right for the first time, pixel by pixel, except for its clock.
/// The pointer must stay away from the banners.
class FrameWatch {
  public:
    /// `display` as in DISPLAY.
    explicit FrameWatch(const std::string& display);
    FrameWatch(const FrameWatch&) = delete;
    FrameWatch& operator=(const FrameWatch&) = delete;
    ~FrameWatch();

    struct Result {
        std::size_t frames = 0; ///< how many times the screen was another one than before
        std::size_t cards = 0;  ///< the banners that were seen whole
        std::size_t torn = 0;   ///< how many times one of them was not
        std::string fault;      ///< what was wrong for the first time, and
        Picture picture;        ///< what the screen showed then
    };
    /// Stops watching.
    [[nodiscard]] Result stop();

  private:
    using Time = std::chrono::steady_clock::time_point;

    struct Place {
        Rect card;
        Time lastSeen;
    };
    struct Card {
        std::optional<Time> opaqueSince;
        std::vector<Place> places; // the present one last
        std::optional<Picture> whole;
    };

    struct Tear {
        Time when;
        std::uint32_t window = 0;
        std::string fault;
        Picture picture;
    };

    void watch(const std::stop_token& stop);
    void look();
    void note(const std::vector<Banner>& banners);
    void decide(Time until);
    void judge(const Picture& screen, const std::vector<Banner>& banners);
    [[nodiscard]] std::optional<std::string> fault(const Picture& screen, const Card& card) const;
    [[nodiscard]] bool isFadedOver(const Banner& banner, const std::vector<Banner>& banners) const;

    XObserver screen_;
    std::map<std::uint32_t, Card> cards_; // by the window
    std::deque<Tear> tears_;              // that do not count if the banner turns out to be leaving
    Picture last_;
    Result result_;
    std::jthread thread_;
};

} // namespace corvane::test

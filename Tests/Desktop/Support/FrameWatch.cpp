#include "Desktop/Support/FrameWatch.h"

#include "Desktop/Support/BannerLook.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace corvane::test {

namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

// How late a compositing manager may show a window's changes, and how late a new window.
constexpr auto delay = 300ms;
constexpr auto firstDelay = 1s;
// What was seen at the beginning of a longer look and at its end may not belong together.
constexpr auto longestLook = 100ms;

// When one banner is dismissed the others move at once, while its opacity changes only from the next step on.
constexpr auto notice = 100ms;
constexpr std::size_t maxUndecided = 10;

// The fill lets a little of the wallpaper through, which differs from place to place.
constexpr int tolerance = 16;

void blacken(Picture& picture, Rect area) {
    const auto width = static_cast<std::size_t>(picture.width);
    for (int y = std::max(area.y, 0); y < std::min(area.bottom(), picture.height); ++y) {
        const auto row = picture.pixels.begin() + static_cast<std::ptrdiff_t>(width) * y;
        std::fill(row + area.x, row + area.right(), 0);
    }
}

// What is compared: the whole card except its clock's line and its rim, where the desktop is visible at the
// round corners.
Picture constantPart(const Picture& screen, Rect card) {
    constexpr int rim = 3;
    constexpr int corner = 20;
    constexpr Rect clock{60, 54, 280, 26};
    Picture picture = screen.part(card);
    for (const int y : {0, card.height - rim})
        blacken(picture, {0, y, card.width, rim});
    for (const int x : {0, card.width - rim})
        blacken(picture, {x, 0, rim, card.height});
    for (const int y : {0, card.height - corner}) {
        for (const int x : {0, card.width - corner})
            blacken(picture, {x, y, corner, corner});
    }
    blacken(picture, clock);
    return picture;
}

bool overlap(const Rect& a, const Rect& b) {
    return a.x < b.right() && b.x < a.right() && a.y < b.bottom() && b.y < a.bottom();
}

} // namespace

FrameWatch::FrameWatch(const std::string& display, const std::vector<pid_t>& processes)
    : screen_(display)
    , processes_(processes)
    , thread_([this](const std::stop_token& stop) { watch(stop); }) {}

FrameWatch::~FrameWatch() = default;

FrameWatch::Result FrameWatch::stop() {
    thread_.request_stop();
    thread_.join();
    return std::move(result_);
}

void FrameWatch::watch(const std::stop_token& stop) {
    try {
        starvation_.emplace(processes_);
        clockRead_ = steady_clock::now();
        while (!stop.stop_requested()) {
            std::this_thread::sleep_for(2ms);
            look();
        }
        decide(now_);
    } catch (const std::exception& error) {
        ++result_.torn;
        result_.fault = error.what();
    }
}

void FrameWatch::advanceClock() {
    const std::chrono::nanoseconds starved = starvation_->soFar();
    const auto read = steady_clock::now();
    // Several may have waited at the same time.
    now_ += std::max<Time>(0ns, (read - clockRead_) - (starved - starved_));
    clockRead_ = read;
    starved_ = starved;
}

void FrameWatch::look() {
    const auto begin = steady_clock::now();
    // More than three banners need.
    const Rect area{0, 0, screen_.screenArea().width, 400};
    Picture seen = screen_.screen(area);
    // Queried after the picture, so that a banner that is still opaque was not yet fading out in the picture.
    const std::vector<Banner> banners = screen_.banners();
    advanceClock();
    note(banners);
    decide(now_ - notice);
    if (steady_clock::now() - begin < longestLook) judge(seen, banners);
    if (seen.pixels != last_.pixels) ++result_.frames;
    last_ = std::move(seen);
}

void FrameWatch::note(const std::vector<Banner>& banners) {
    const Time now = now_;
    std::erase_if(cards_, [&](const auto& card) {
        return std::ranges::find(banners, card.first, &Banner::window) == banners.end();
    });
    for (const Banner& banner : banners) {
        Card& card = cards_[banner.window];
        if (screen_.opacity(banner.window) < 1) {
            card.opaqueSince.reset();
        } else if (!card.opaqueSince) {
            card.opaqueSince = now;
        }
        // However long ago the last look was, it may have been at its place until now.
        if (!card.places.empty()) card.places.back().lastSeen = now;
        if (card.places.empty() || card.places.back().card != banner.card)
            card.places.push_back({banner.card, now});
        std::erase_if(card.places, [&](const Place& place) { return now - place.lastSeen > delay; });
    }
}

void FrameWatch::decide(Time until) {
    for (; !tears_.empty() && tears_.front().when <= until; tears_.pop_front()) {
        Tear& tear = tears_.front();
        const auto card = cards_.find(tear.window);
        if (card == cards_.end() || !card->second.opaqueSince) continue;
        if (result_.torn++ > 0) continue;
        result_.fault = std::move(tear.fault);
        result_.picture = std::move(tear.picture);
    }
}

void FrameWatch::judge(const Picture& screen, const std::vector<Banner>& banners) {
    const Time now = now_;
    for (const Banner& banner : banners) {
        Card& card = cards_.at(banner.window);
        if (!card.opaqueSince || isFadedOver(banner, banners)) continue;
        if (!card.whole && !bannerFault(screen, banner)) {
            card.whole = constantPart(screen, banner.card);
            ++result_.cards;
        }
        if (tears_.size() >= maxUndecided) return; // they hold pictures, and one is enough
        if (now - *card.opaqueSince < (card.whole ? delay : firstDelay)) continue;
        if (const auto wrong = card.whole ? fault(screen, card) : bannerFault(screen, banner)) {
            tears_.push_back({now, banner.window,
                              "the " + name(banner.kind) + " banner at " + std::to_string(banner.card.x) +
                                  "," + std::to_string(banner.card.y) + ": " + *wrong,
                              screen});
        }
    }
}

std::optional<std::string> FrameWatch::fault(const Picture& screen, const Card& card) const {
    std::size_t least = card.whole->pixels.size();
    for (const Place& place : card.places) {
        if (place.card.width != card.whole->width || place.card.height != card.whole->height) continue;
        least = std::min(least, constantPart(screen, place.card).differences(*card.whole, tolerance));
    }
    if (least == 0) return std::nullopt;
    return std::to_string(least) + " of its pixels are not what they were";
}

bool FrameWatch::isFadedOver(const Banner& banner, const std::vector<Banner>& banners) const {
    // One of the same kind looks the same.
    return std::ranges::any_of(banners, [&](const Banner& other) {
        return other.kind != banner.kind && !cards_.at(other.window).opaqueSince &&
               overlap(other.card, banner.card);
    });
}

} // namespace corvane::test

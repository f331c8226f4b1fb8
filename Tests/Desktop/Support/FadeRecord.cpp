#include "Desktop/Support/FadeRecord.h"

#include "Desktop/Support/Starvation.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <set>
#include <thread>

namespace corvane::test {

namespace {

using namespace std::chrono_literals;

// A light card's fill, which lets nothing of what is below through.
constexpr double surface = 255;
constexpr double invisible = 0.02;
constexpr double full = 0.98;

} // namespace

Rect fadeProbe(Rect card) {
    // Right of the texts and left of the buttons, low enough for a card that has not slid down yet.
    return {card.right() - 145, card.y + 20, 1, 1};
}

std::vector<FadeSample> recordFade(DesktopSession& desktop, Rect card, Color wallpaper,
                                   const std::function<bool(const std::vector<FadeSample>&)>& isOver) {
    std::vector<FadeSample> samples;
    const XObserver& screen = desktop.screen();
    Starvation starvation(desktop.painters());
    const double below = wallpaper.channels().front();
    const auto deadline = std::chrono::steady_clock::now() + 10s;
    do {
        std::this_thread::sleep_for(4ms);
        FadeSample sample;
        const std::vector<Banner> banners = screen.banners();
        sample.isMapped = !banners.empty();
        if (sample.isMapped) sample.top = banners.front().card.y;
        const int seen = screen.screen(fadeProbe(card)).at(0, 0).channels().front();
        sample.opacity = (seen - below) / (surface - below);
        sample.when = std::chrono::steady_clock::now();
        sample.starved = starvation.soFar();
        samples.push_back(sample);
    } while (!isOver(samples) && std::chrono::steady_clock::now() < deadline);
    return samples;
}

bool isUndisturbed(const std::vector<FadeSample>& samples) {
    constexpr auto longestPause = 30ms;
    constexpr auto longestWait = 40ms;
    const auto differ = [](const FadeSample& a, const FadeSample& b) {
        return a.isMapped != b.isMapped || a.top != b.top || std::abs(a.opacity - b.opacity) > invisible;
    };
    std::size_t from = 0;
    while (from + 1 < samples.size() && !differ(samples[from + 1], samples.front()))
        ++from;
    std::size_t to = samples.size() - 1;
    while (to > from && !differ(samples[to - 1], samples.back()))
        --to;
    for (std::size_t i = from; i < to; ++i) {
        if (samples[i + 1].when - samples[i].when > longestPause) return false;
    }
    return samples[to].starved - samples[from].starved <= longestWait;
}

std::chrono::milliseconds fadeLength(const std::vector<FadeSample>& samples) {
    const auto isPartly = [](const FadeSample& sample) {
        return sample.opacity > invisible && sample.opacity < full;
    };
    const auto first = std::ranges::find_if(samples, isPartly);
    const auto last = std::find_if(samples.rbegin(), samples.rend(), isPartly).base();
    if (first == samples.end()) return 0ms;
    const auto& from = first == samples.begin() ? *first : *(first - 1);
    const auto& to = last == samples.end() ? *(last - 1) : *last;
    return std::chrono::duration_cast<std::chrono::milliseconds>(to.when - from.when);
}

double largestRelapse(const std::vector<FadeSample>& samples, int direction) {
    double largest = 0;
    for (std::size_t i = 1; i < samples.size(); ++i)
        largest = std::max(largest, direction * (samples[i - 1].opacity - samples[i].opacity));
    return largest;
}

std::size_t stepsBetween(const std::vector<FadeSample>& samples) {
    std::set<double> levels;
    for (const FadeSample& sample : samples) {
        if (sample.opacity > invisible && sample.opacity < full) levels.insert(sample.opacity);
    }
    return levels.size();
}

} // namespace corvane::test

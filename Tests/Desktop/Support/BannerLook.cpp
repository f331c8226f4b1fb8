#include "Desktop/Support/BannerLook.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace corvane::test {

namespace {

/// The colours of a banner, stated independently so that a wrong one in the application is detected.
struct Palette {
    const char* name = nullptr;
    Color primary;
    Color secondary;
    Color surface;
    Color text;
};
constexpr std::array palettes{
    Palette{"light", {0x8A5300}, {0x1F6E46}, {0xFFFFFF}, {0x1D1D1F}},
    Palette{"dark", {0xFFC15A}, {0x7FD6A4}, {0x2C2C2E}, {0xF2F2F7}},
};

// How far a channel (0 to 255) may be off.
constexpr int exact = 6;
constexpr int padding = 16;
constexpr int margin = 8;

std::string hex(Color color) {
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "#%06X", color.rgb);
    return text.data();
}

std::string at(int x, int y) {
    return std::to_string(x) + "," + std::to_string(y);
}

std::optional<std::string> colorFault(const Picture& screen, const char* what, int x, int y, Color wanted,
                                      int tolerance) {
    const Color seen = screen.at(x, y);
    if (seen.isNear(wanted, tolerance)) return std::nullopt;
    return std::string(what) + " at " + at(x, y) + " is " + hex(seen) + " instead of " + hex(wanted);
}

std::optional<std::string> shareFault(const Picture& screen, const char* what, Rect area, Color wanted,
                                      double least) {
    const double share = screen.share(area, wanted, 40);
    if (share >= least) return std::nullopt;
    return std::string("only ") + std::to_string(static_cast<int>(share * 100)) + " % of the area of " +
           what + " at " + at(area.x, area.y) + " is " + hex(wanted);
}

// The title is drawn in the text's colour, which covers at least this share of its area, whatever the words.
constexpr double leastInk = 0.02;

std::optional<std::string> waitingFault(const Picture& screen, const Rect& card, const Palette& palette) {
    const int right = card.right() - 1;
    const int bottom = card.bottom() - 1;
    const std::array edges{
        std::array{card.middleX(), card.y},
        std::array{card.middleX(), bottom},
        std::array{card.x, card.middleY()},
        std::array{right, card.middleY()},
    };
    for (const auto& [x, y] : edges) {
        if (auto fault = colorFault(screen, "the outline", x, y, palette.primary, exact)) return fault;
    }
    for (const int y : {card.y + 5, card.bottom() - 6}) {
        if (auto fault = colorFault(screen, "the fill", card.middleX(), y, palette.surface, exact))
            return fault;
    }
    constexpr int glyphSide = 36;
    const Rect glyph{card.x + padding, card.middleY() - glyphSide / 2, glyphSide, glyphSide};
    if (auto fault =
            colorFault(screen, "the agent's ring", glyph.x + 1, glyph.middleY(), palette.primary, exact))
        return fault;
    // Left of the label there is only the button's fill.
    const Rect button{card.right() - padding - 9, card.y + 29, 6, 18};
    if (auto fault = shareFault(screen, "the main button", button, palette.primary, 0.95)) return fault;
    const Rect title{glyph.right() + 12, card.y + 12, 200, 30};
    return shareFault(screen, "the title", title, palette.text, leastInk);
}

std::optional<std::string> doneFault(const Picture& screen, const Rect& card, const Palette& palette) {
    for (const int y : {card.y + 5, card.bottom() - 6}) {
        if (auto fault = colorFault(screen, "the fill", card.middleX(), y, palette.surface, exact))
            return fault;
    }
    if (screen.at(card.middleX(), card.y).isNear(palette.primary, exact))
        return "it has the outline of a waiting banner";
    constexpr int discSide = 22;
    const Rect disc{card.x + padding, card.middleY() - discSide / 2, discSide, discSide};
    if (auto fault = shareFault(screen, "the check mark", disc, palette.secondary, 0.5)) return fault;
    const Rect title{disc.right() + 12, card.y + 10, 200, 24};
    return shareFault(screen, "the title", title, palette.text, leastInk);
}

} // namespace

std::string name(BannerKind kind) {
    return kind == BannerKind::waiting ? "waiting" : "done";
}

std::optional<std::string> bannerFault(const Picture& screen, const Banner& banner) {
    std::string faults;
    for (const Palette& palette : palettes) {
        const auto fault = banner.kind == BannerKind::waiting ? waitingFault(screen, banner.card, palette)
                                                              : doneFault(screen, banner.card, palette);
        if (!fault) return std::nullopt;
        faults += (faults.empty() ? "" : "; ") + std::string(palette.name) + ": " + *fault;
    }
    return faults;
}

std::optional<std::string> layoutFault(const std::vector<Banner>& banners, Rect workArea) {
    int top = workArea.y + margin;
    for (const Banner& banner : banners) {
        const int left = workArea.middleX() - banner.card.width / 2;
        if (banner.card.x != left || banner.card.y != top) {
            return "the " + name(banner.kind) + " banner stands at " + at(banner.card.x, banner.card.y) +
                   " instead of " + at(left, top);
        }
        top = banner.card.bottom() + margin;
    }
    return std::nullopt;
}

std::optional<std::string> screenFault(const XObserver& x, std::size_t waiting, std::size_t done) {
    const std::vector<Banner> banners = x.banners();
    const auto waitingSeen = static_cast<std::size_t>(
        std::ranges::count(banners, BannerKind::waiting, [](const Banner& banner) { return banner.kind; }));
    const std::size_t doneSeen = banners.size() - waitingSeen;
    if (waitingSeen != waiting || doneSeen != done) {
        return std::to_string(waitingSeen) + " waiting and " + std::to_string(doneSeen) +
               " done banners are on the screen instead of " + std::to_string(waiting) + " and " +
               std::to_string(done);
    }
    if (auto wrong = layoutFault(banners, x.workArea())) return wrong;
    if (banners.empty()) return std::nullopt;
    const Picture screen = x.screen();
    for (const Banner& banner : banners) {
        if (auto wrong = bannerFault(screen, banner)) return wrong;
    }
    return std::nullopt;
}

Rect primaryButton(const Banner& banner) {
    return {banner.card.right() - padding - 100, banner.card.y + 28, 96, 20};
}

Rect closeButton(const Banner& banner) {
    if (banner.kind == BannerKind::done)
        return {banner.card.right() - padding - 10, banner.card.middleY() - 4, 8, 8};
    return {banner.card.right() - padding - 8, banner.card.y + 61, 8, 8};
}

Rect snoozeButton(const Banner& banner) {
    return {banner.card.right() - padding - 50, banner.card.y + 61, 20, 8};
}

} // namespace corvane::test

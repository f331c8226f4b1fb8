#include "Desktop/Support/TextLook.h"

#include <QFont>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace corvane::test {

namespace {

/// How much of each pixel is covered by text, 0 to 1, whatever the colours.
struct Ink {
    int width = 0;
    int height = 0;
    std::vector<double> cover;

    [[nodiscard]] double at(int x, int y) const {
        return cover[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                     static_cast<std::size_t>(x)];
    }
};

// Coverage above this counts as a letter's, not as a trace of what is below the banner.
constexpr double visible = 0.2;

// The darkest pixel is full ink and the lightest is none; the other way round in the dark appearance.
Ink inkOf(const Picture& picture) {
    std::vector<double> light;
    for (const std::uint32_t pixel : picture.pixels) {
        const auto channels = Color{pixel}.channels();
        light.push_back(channels[0] + channels[1] + channels[2]);
    }
    auto sorted = light;
    std::ranges::sort(sorted);
    const double background = sorted[sorted.size() / 2];
    const bool isDark = background - sorted.front() < sorted.back() - background;
    const double full = isDark ? sorted.back() : sorted.front();
    Ink ink{picture.width, picture.height, {}};
    for (const double value : light) {
        const double range = background - full;
        ink.cover.push_back(range == 0 ? 0 : std::clamp((background - value) / range, 0.0, 1.0));
    }
    return ink;
}

// By how many pixels the font of a line that is too long may be smaller than usual. Closer letters, which
// come after that, are not recognised: where each of them is placed differs between a picture and a screen.
constexpr int mostSmaller = 2;

// The words as Qt draws them, cropped to their bounding box.
Picture drawn(BannerLine line, const std::string& words, int smaller) {
    if (qApp == nullptr) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        static int count = 1;
        static char name[] = "observer";
        static char* arguments[] = {name, nullptr};
        static const QGuiApplication application(count, arguments);
    }
    const bool isTitle = line == BannerLine::title;
    QFont font(isTitle ? QStringLiteral("Inter") : QStringLiteral("Noto Sans Mono"));
    font.setPixelSize((isTitle ? 15 : 13) - smaller);
    font.setWeight(isTitle ? QFont::DemiBold : QFont::Normal);

    constexpr int width = 500;
    constexpr int height = 40;
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setFont(font);
    painter.setPen(Qt::black);
    painter.drawText(10, height / 2 + 5, QString::fromStdString(words));
    painter.end();

    Picture picture{width, height, {}};
    int left = width;
    int top = height;
    int right = 0;
    int bottom = 0;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const std::uint32_t pixel = image.pixel(x, y) & 0xFFFFFF;
            picture.pixels.push_back(pixel);
            if (pixel == 0xFFFFFF) continue;
            left = std::min(left, x);
            top = std::min(top, y);
            right = std::max(right, x + 1);
            bottom = std::max(bottom, y + 1);
        }
    }
    // With an empty edge, so that the background's colour is in it.
    return picture.part({left - 1, top - 1, right - left + 2, bottom - top + 2});
}

struct Match {
    int x = 0;
    int y = 0;
    double difference = std::numeric_limits<double>::max();
};

// The place in `where` at which `wanted` differs least, as the mean over its pixels.
Match bestMatch(const Ink& where, const Ink& wanted) {
    Match best;
    for (int dy = 0; dy + wanted.height <= where.height; ++dy) {
        for (int dx = 0; dx + wanted.width <= where.width; ++dx) {
            double sum = 0;
            for (int y = 0; y < wanted.height; ++y) {
                for (int x = 0; x < wanted.width; ++x)
                    sum += std::abs(where.at(dx + x, dy + y) - wanted.at(x, y));
            }
            const double difference = sum / (wanted.width * wanted.height);
            if (difference < best.difference) best = {dx, dy, difference};
        }
    }
    return best;
}

bool isEmpty(const Ink& ink, int fromX, int toX, int fromY, int toY) {
    for (int y = fromY; y < toY; ++y) {
        for (int x = std::max(fromX, 0); x < std::min(toX, ink.width); ++x) {
            if (ink.at(x, y) > visible) return false;
        }
    }
    return true;
}

} // namespace

std::optional<std::string> wordsFault(const Picture& screen, const Banner& banner, BannerLine line,
                                      const std::string& words) {
    const bool isWaiting = banner.kind == BannerKind::waiting;
    const int left = banner.card.x + (isWaiting ? 64 : 50) - 4;
    const int right = isWaiting ? banner.card.right() - 160 : banner.card.right() - 40;
    const int top = line == BannerLine::title ? (isWaiting ? 14 : 8) : (isWaiting ? 38 : 32);
    constexpr int height = 28;
    const Ink seen = inkOf(screen.part({left, banner.card.y + top, right - left, height}));
    Ink wanted;
    Match match;
    for (int smaller = 0; smaller <= mostSmaller; ++smaller) {
        Ink candidate = inkOf(drawn(line, words, smaller));
        const Match found = bestMatch(seen, candidate);
        if (found.difference >= match.difference) continue;
        match = found;
        wanted = std::move(candidate);
    }

    // The right words were seen to differ by up to 0.011 on an opaque card, since Qt smooths a little
    // differently on a screen; words with another ending by more than 0.02.
    constexpr double tolerated = 0.02;
    if (match.difference > tolerated) {
        return "\"" + words + "\" cannot be read on the " + (line == BannerLine::title ? "first" : "second") +
               " line (it differs by " + std::to_string(match.difference) + ")";
    }
    const int bottom = match.y + wanted.height;
    if (!isEmpty(seen, 0, match.x, match.y, bottom)) return "something stands before \"" + words + "\"";
    // A space is wider than the gap between two letters.
    constexpr int space = 4;
    const int after = match.x + wanted.width;
    if (!isEmpty(seen, after, line == BannerLine::title ? seen.width : after + space, match.y, bottom))
        return "something stands after \"" + words + "\"";
    return std::nullopt;
}

} // namespace corvane::test

#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <vector>

namespace corvane::test {

/// A rectangle of screen pixels; y grows downwards.
struct Rect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool operator==(const Rect&) const = default;

    [[nodiscard]] int right() const { return x + width; } ///< the first column to the right of it
    [[nodiscard]] int bottom() const { return y + height; }
    [[nodiscard]] int middleX() const { return x + width / 2; }
    [[nodiscard]] int middleY() const { return y + height / 2; }
};

/// An opaque colour as 24-bit sRGB, red in the high byte.
struct Color {
    std::uint32_t rgb = 0;

    bool operator==(const Color&) const = default;

    /// Red, green and blue, 0 to 255 each.
    [[nodiscard]] std::array<int, 3> channels() const {
        return {static_cast<int>(rgb >> 16 & 0xFF), static_cast<int>(rgb >> 8 & 0xFF),
                static_cast<int>(rgb & 0xFF)};
    }

    /// Whether no channel differs by more than `tolerance`.
    [[nodiscard]] bool isNear(Color other, int tolerance) const {
        const auto a = channels();
        const auto b = other.channels();
        return std::equal(a.begin(), a.end(), b.begin(),
                          [tolerance](int x, int y) { return std::abs(x - y) <= tolerance; });
    }
};

/// A screenshot.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels; ///< row by row from the top; the high byte is undefined

    /// The colour of one pixel; black outside.
    [[nodiscard]] Color at(int x, int y) const;

    /// The share (0 to 1) of the pixels of `area` whose colour is within `tolerance` of `color`.
    [[nodiscard]] double share(Rect area, Color color, int tolerance) const;

    /// The part within `area`, which must be inside.
    [[nodiscard]] Picture part(Rect area) const;

    /// The number of pixels in which two pictures differ by more than `tolerance` in a channel; all of them
    /// when their sizes differ.
    [[nodiscard]] std::size_t differences(const Picture& other, int tolerance) const;

    /// Writes a PNG file. Throws std::runtime_error when that fails.
    void save(const std::filesystem::path& file) const;
};

} // namespace corvane::test

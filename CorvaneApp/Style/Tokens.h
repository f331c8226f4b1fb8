#pragma once

#include <QColor>
#include <QPalette>

#include <cstdint>

namespace corvane {

/// A light or dark appearance.
enum class ColorScheme : std::uint8_t { light, dark };

/// With high contrast, lines, dimmed text and fills are darker on light and lighter on dark, nothing is
/// translucent, and nothing fades.
enum class Contrast : std::uint8_t { normal, high };

/// What determines a colour: the appearance, and its contrast.
struct Look {
    // Implicit, since an appearance alone means normal contrast.
    // NOLINTNEXTLINE(google-explicit-constructor)
    constexpr Look(ColorScheme inScheme, Contrast inContrast = Contrast::normal)
        : scheme(inScheme)
        , contrast(inContrast) {}

    [[nodiscard]] constexpr bool isHighContrast() const { return contrast == Contrast::high; }

    bool operator==(const Look&) const = default;

    ColorScheme scheme;
    Contrast contrast;
};

/// A colour of the application's own with a value for each appearance, as 24-bit sRGB (red in the high byte).
struct Token {
    std::uint32_t light;
    std::uint32_t dark;

    /// The opaque colour for this appearance, the same with either contrast.
    [[nodiscard]] QColor color(Look look) const;
};

/// The application's palette: the only place with colour values. Views take the look from their QPalette at
/// the moment they draw, so that a change on the desktop reaches them as an ordinary palette change.
namespace Tokens {

inline constexpr Token primary{0x8A5300, 0xFFC15A};    ///< main accent colour
inline constexpr Token onPrimary{0xFFFFFF, 0x3A2400};  ///< content drawn on `primary`
inline constexpr Token secondary{0x1F6E46, 0x7FD6A4};  ///< second accent colour
inline constexpr Token background{0xF5F5F7, 0x1C1C1E}; ///< backdrop of a whole view
inline constexpr Token surface{0xFFFFFF, 0x2C2C2E};    ///< raised areas drawn on the backdrop
inline constexpr Token onSurface{0x1D1D1F, 0xF2F2F7};  ///< content drawn on `surface`
inline constexpr Token error{0xB3261E, 0xF2B8B5};      ///< error indication

/// Opacity of a disabled button, and of one that is pressed.
inline constexpr double disabledOpacity = 0.45;
inline constexpr double pressedOpacity = 0.8;

/// Opacity of a card's fill where the desktop blurs what lies behind it. Elsewhere, and with high contrast,
/// it is opaque: text below would show through.
inline constexpr double blurredFillOpacity = 0.82;

/// `a` and `b` mixed channel by channel, with `share` (0 to 1) of `a`. Halves are rounded to even.
[[nodiscard]] QColor mix(const QColor& a, const QColor& b, double share);

/// Dimmed text, on `surface` and on `background`.
[[nodiscard]] QColor textSecondary(Look look);
[[nodiscard]] QColor textSecondaryOnBackground(Look look);
/// The fill of a card, by whether the desktop blurs what is behind it.
[[nodiscard]] QColor cardFill(Look look, bool isBlurredBehind);
/// The line between parts of a view and around a card, on `surface` and on `background`.
[[nodiscard]] QColor divider(Look look);
[[nodiscard]] QColor dividerOnBackground(Look look);
/// The edge of bordered buttons and pickers.
[[nodiscard]] QColor controlBorder(Look look);
/// The fill behind a plain control under the pointer, and while it is pressed.
[[nodiscard]] QColor hoverFill(Look look);
[[nodiscard]] QColor pressedFill(Look look);
/// A primary button under the pointer.
[[nodiscard]] QColor primaryHover(Look look);
/// The track of a switch that is off, and the knob on it.
[[nodiscard]] QColor switchOff(Look look);
[[nodiscard]] QColor switchOffKnob(Look look);
/// The dot of a running session. With high contrast, it has a ring in `textSecondary`.
[[nodiscard]] QColor runningDot(Look look);
/// The thumb of a scroll bar, and under the pointer.
[[nodiscard]] QColor scrollThumb(Look look);
[[nodiscard]] QColor scrollThumbHovered(Look look);
/// The thin edge of a card that has no outline of its own; translucent except with high contrast.
[[nodiscard]] QColor hairline(Look look);
/// One layer of a card's shadow: black at `opacity`.
[[nodiscard]] QColor shadow(double opacity);

/// The appearance that a palette belongs to: dark when its window colour is darker than its text.
[[nodiscard]] ColorScheme scheme(const QPalette& palette);

/// The look that a palette was created for. A foreign palette has normal contrast.
[[nodiscard]] Look look(const QPalette& palette);

/// The application-wide palette for this look. An entry that nothing is ever drawn with keeps the desktop's
/// own colour, so that Qt keeps reporting changes of the desktop's palette.
[[nodiscard]] QPalette palette(Look look);

/// The appearance of the desktop itself, read from the application's palette, whether or not `palette` has
/// been applied over the desktop's.
[[nodiscard]] ColorScheme desktopScheme(const QPalette& palette);

} // namespace Tokens

} // namespace corvane

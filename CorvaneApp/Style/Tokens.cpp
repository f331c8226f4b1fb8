#include "Style/Tokens.h"

#include <cmath>

namespace corvane {

QColor Token::color(Look look) const {
    const std::uint32_t value = look.scheme == ColorScheme::dark ? dark : light;
    return QColor::fromRgb(static_cast<int>(value >> 16 & 0xFF), static_cast<int>(value >> 8 & 0xFF),
                           static_cast<int>(value & 0xFF));
}

namespace Tokens {

namespace {

// Where the desktop's own palette shows through. Only disabled alternating rows are drawn with it, and no
// view has such rows.
constexpr QPalette::ColorGroup desktopGroup = QPalette::Disabled;
constexpr QPalette::ColorRole desktopRole = QPalette::AlternateBase;

// The palette without that one entry: Qt takes what was never set from the desktop's palette.
QPalette overDesktop(const QPalette& whole) {
    QPalette result;
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Disabled, QPalette::Inactive}) {
        for (int i = 0; i < QPalette::NColorRoles; ++i) {
            const auto role = static_cast<QPalette::ColorRole>(i);
            if (group != desktopGroup || role != desktopRole)
                result.setBrush(group, role, whole.brush(group, role));
        }
    }
    return result;
}

struct Shares {
    double light;
    double dark;
    double highContrast; // in both appearances
};

double shareFor(Look look, Shares shares) {
    if (look.isHighContrast()) return shares.highContrast;
    return look.scheme == ColorScheme::dark ? shares.dark : shares.light;
}

QColor onSurfaceMixed(Look look, Shares shares) {
    return mix(onSurface.color(look), surface.color(look), shareFor(look, shares));
}

QColor onBackgroundMixed(Look look, Shares shares) {
    return mix(onSurface.color(look), background.color(look), shareFor(look, shares));
}

constexpr Shares textShares{0.68, 0.68, 0.84};
constexpr Shares dividerShares{0.12, 0.12, 0.55};

} // namespace

QColor mix(const QColor& a, const QColor& b, double share) {
    const auto channel = [share](int first, int second) {
        return static_cast<int>(std::nearbyint(first * share + second * (1 - share)));
    };
    return QColor::fromRgb(channel(a.red(), b.red()), channel(a.green(), b.green()),
                           channel(a.blue(), b.blue()));
}

QColor textSecondary(Look look) {
    return onSurfaceMixed(look, textShares);
}

QColor textSecondaryOnBackground(Look look) {
    return onBackgroundMixed(look, textShares);
}

QColor cardFill(Look look, bool isBlurredBehind) {
    QColor fill = surface.color(look);
    if (isBlurredBehind && !look.isHighContrast()) fill.setAlphaF(static_cast<float>(blurredFillOpacity));
    return fill;
}

QColor divider(Look look) {
    return onSurfaceMixed(look, dividerShares);
}

QColor dividerOnBackground(Look look) {
    return onBackgroundMixed(look, dividerShares);
}

QColor controlBorder(Look look) {
    return onSurfaceMixed(look, {0.24, 0.30, 0.75});
}

QColor hoverFill(Look look) {
    return onSurfaceMixed(look, {0.05, 0.07, 0.12});
}

QColor pressedFill(Look look) {
    return onSurfaceMixed(look, {0.10, 0.13, 0.20});
}

QColor primaryHover(Look look) {
    return mix(onSurface.color(look), primary.color(look), 0.16);
}

QColor switchOff(Look look) {
    return onSurfaceMixed(look, {0.48, 0.48, 0.55});
}

QColor switchOffKnob(Look look) {
    // Dark on the light track of the dark appearance, white on the dark track of the light one.
    return surface.color(look);
}

QColor runningDot(Look look) {
    return mix(textSecondary(look), surface.color(look), 0.50);
}

QColor scrollThumb(Look look) {
    return onSurfaceMixed(look, {0.30, 0.30, 0.30});
}

QColor scrollThumbHovered(Look look) {
    return onSurfaceMixed(look, {0.50, 0.50, 0.50});
}

QColor hairline(Look look) {
    if (look.isHighContrast()) return controlBorder(look);
    const bool isDark = look.scheme == ColorScheme::dark;
    QColor color(isDark ? Qt::white : Qt::black);
    color.setAlphaF(isDark ? 0.16F : 0.14F);
    return color;
}

QColor shadow(double opacity) {
    QColor color(Qt::black);
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

ColorScheme scheme(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness()
               ? ColorScheme::dark
               : ColorScheme::light;
}

Look look(const QPalette& palette) {
    // Dimmed text is the palette's only colour that depends on the contrast.
    const ColorScheme scheme = Tokens::scheme(palette);
    constexpr Contrast high = Contrast::high;
    const bool isHigh = palette.color(QPalette::PlaceholderText) == textSecondary({scheme, high});
    return {scheme, isHigh ? high : Contrast::normal};
}

QPalette palette(Look look) {
    QPalette palette(surface.color(look), background.color(look));
    palette.setColor(QPalette::WindowText, onSurface.color(look));
    palette.setColor(QPalette::Text, onSurface.color(look));
    palette.setColor(QPalette::ButtonText, onSurface.color(look));
    palette.setColor(QPalette::Base, surface.color(look));
    palette.setColor(QPalette::AlternateBase, background.color(look));
    palette.setColor(QPalette::ToolTipBase, surface.color(look));
    palette.setColor(QPalette::ToolTipText, onSurface.color(look));
    palette.setColor(QPalette::Highlight, primary.color(look));
    palette.setColor(QPalette::HighlightedText, onPrimary.color(look));
    palette.setColor(QPalette::Link, primary.color(look));
    palette.setColor(QPalette::PlaceholderText, textSecondary(look));
    return overDesktop(palette);
}

ColorScheme desktopScheme(const QPalette& palette) {
    // Nearly black or nearly white in every theme.
    constexpr int middle = 128;
    return palette.color(desktopGroup, desktopRole).lightness() < middle ? ColorScheme::dark
                                                                         : ColorScheme::light;
}

} // namespace Tokens

} // namespace corvane

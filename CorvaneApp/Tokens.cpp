#include "Tokens.h"

#include <cmath>

namespace corvane {

QColor Token::color(ColorScheme scheme) const {
    const std::uint32_t value = scheme == ColorScheme::dark ? dark : light;
    return QColor::fromRgb(static_cast<int>(value >> 16 & 0xFF), static_cast<int>(value >> 8 & 0xFF),
                           static_cast<int>(value & 0xFF));
}

namespace Tokens {

namespace {

// Where the desktop's own palette shows through. Only alternating rows that are disabled are drawn with it,
// and no view has such rows.
constexpr QPalette::ColorGroup desktopGroup = QPalette::Disabled;
constexpr QPalette::ColorRole desktopRole = QPalette::AlternateBase;

double byScheme(ColorScheme scheme, double light, double dark) {
    return scheme == ColorScheme::dark ? dark : light;
}

// The palette without that one place: Qt fills in what was never set from the desktop's.
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

} // namespace

QColor mix(const QColor& a, const QColor& b, double share) {
    const auto channel = [share](int first, int second) {
        return static_cast<int>(std::nearbyint(first * share + second * (1 - share)));
    };
    return QColor::fromRgb(channel(a.red(), b.red()), channel(a.green(), b.green()),
                           channel(a.blue(), b.blue()));
}

QColor textSecondary(ColorScheme scheme) {
    return mix(onSurface.color(scheme), surface.color(scheme), 0.68);
}

QColor textSecondaryOnBackground(ColorScheme scheme) {
    return mix(onSurface.color(scheme), background.color(scheme), 0.68);
}

QColor divider(ColorScheme scheme) {
    return mix(onSurface.color(scheme), surface.color(scheme), 0.12);
}

QColor dividerOnBackground(ColorScheme scheme) {
    return mix(onSurface.color(scheme), background.color(scheme), 0.12);
}

QColor controlBorder(ColorScheme scheme) {
    return mix(onSurface.color(scheme), surface.color(scheme), byScheme(scheme, 0.24, 0.30));
}

QColor hoverFill(ColorScheme scheme) {
    return mix(onSurface.color(scheme), surface.color(scheme), byScheme(scheme, 0.05, 0.07));
}

QColor pressedFill(ColorScheme scheme) {
    return mix(onSurface.color(scheme), surface.color(scheme), byScheme(scheme, 0.10, 0.13));
}

QColor primaryHover(ColorScheme scheme) {
    return mix(onSurface.color(scheme), primary.color(scheme), 0.16);
}

QColor switchOff(ColorScheme scheme) {
    return mix(onSurface.color(scheme), surface.color(scheme), 0.48);
}

QColor switchOffKnob(ColorScheme scheme) {
    // Dark on the light track of the dark appearance, white on the dark track of the light one.
    return surface.color(scheme);
}

QColor runningDot(ColorScheme scheme) {
    return mix(textSecondary(scheme), surface.color(scheme), 0.50);
}

QColor scrollThumb(ColorScheme scheme) {
    return mix(onSurface.color(scheme), surface.color(scheme), 0.30);
}

QColor scrollThumbHovered(ColorScheme scheme) {
    return mix(onSurface.color(scheme), surface.color(scheme), 0.50);
}

QColor hairline(ColorScheme scheme) {
    QColor color(scheme == ColorScheme::dark ? Qt::white : Qt::black);
    color.setAlphaF(static_cast<float>(byScheme(scheme, 0.14, 0.16)));
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

QPalette palette(ColorScheme scheme) {
    QPalette palette(surface.color(scheme), background.color(scheme));
    palette.setColor(QPalette::WindowText, onSurface.color(scheme));
    palette.setColor(QPalette::Text, onSurface.color(scheme));
    palette.setColor(QPalette::ButtonText, onSurface.color(scheme));
    palette.setColor(QPalette::Base, surface.color(scheme));
    palette.setColor(QPalette::AlternateBase, background.color(scheme));
    palette.setColor(QPalette::ToolTipBase, surface.color(scheme));
    palette.setColor(QPalette::ToolTipText, onSurface.color(scheme));
    palette.setColor(QPalette::Highlight, primary.color(scheme));
    palette.setColor(QPalette::HighlightedText, onPrimary.color(scheme));
    palette.setColor(QPalette::Link, primary.color(scheme));
    palette.setColor(QPalette::PlaceholderText, textSecondary(scheme));
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

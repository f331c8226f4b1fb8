#include "Platform/Linux/NotifierPlace.h"

#include "Style/DesktopNames.h"

#include <algorithm>

namespace corvane {

namespace {

// About the size of an icon, so that a panel keeps clear of the bar even where the icon's size is unknown.
constexpr int iconSide = 24;

QRect around(QPoint place) {
    return {place - QPoint(iconSide / 2, iconSide / 2), QSize(iconSide, iconSide)};
}

} // namespace

bool notifierPlaceIsKnown(bool isWayland, std::string_view desktops) {
    return isWayland ? isDesktop(desktops, {"KDE", "GNOME", "X-Cinnamon"}) : !isDesktop(desktops, {"MATE"});
}

QRect notifierPlace(QPoint given, std::optional<QPoint> pointer, qreal ratio,
                    const std::vector<QRect>& screens) {
    if (given.isNull()) return {};
    const QPoint scaled = given / ratio;
    const auto distance = [&pointer](QPoint point) { return (point - *pointer).manhattanLength(); };
    const QPoint place = pointer && distance(scaled) < distance(given) ? scaled : given;
    const bool isOnScreen = std::any_of(screens.begin(), screens.end(),
                                        [place](const QRect& screen) { return screen.contains(place); });
    return isOnScreen ? around(place) : QRect();
}

QRect notifierPlaceOnBar(QPoint pointer, qreal ratio, const std::vector<QRect>& bars) {
    const QPoint pixel = (QPointF(pointer) * ratio).toPoint();
    const bool isOnBar = std::ranges::any_of(bars, [pixel](const QRect& bar) { return bar.contains(pixel); });
    return isOnBar ? around(pointer) : QRect();
}

} // namespace corvane

#include "Platform/Linux/TrayBar.h"

#include "Platform/Linux/X11.h"
#include "Platform/Linux/XEvents.h"

namespace corvane {

namespace {

constexpr const char* colorsName = "_NET_SYSTEM_TRAY_COLORS";
// How far around an icon to sample the bar, in device pixels: beyond that are other icons.
constexpr int reach = 2;
constexpr int middle = 128;

/// The visible part of the bar; of several, that of the one at `place`. Empty if there is none.
QRect barAt(QPoint place) {
    const std::optional<QRect> root = x11::rootGeometry(x11::rootWindow());
    if (!root) return {};
    QRect found;
    for (const QRect& bar : x11::bars()) {
        const QRect visible = bar & *root;
        if (visible.isEmpty()) continue;
        if (found.isEmpty() || visible.contains(place)) found = visible;
    }
    return found;
}

} // namespace

TrayBar::TrayBar() {
    connect(
        &XEvents::instance(), &XEvents::propertyChanged, this,
        [this, colors = x11::atom(colorsName)](xcb_atom_t name) {
            if (name == colors) Q_EMIT changed();
        },
        Qt::QueuedConnection);
}

std::optional<ColorScheme> TrayBar::scheme(xcb_window_t icon) {
    const xcb_window_t tray = x11::selectionOwner(x11::traySelection());
    if (tray == XCB_WINDOW_NONE) return std::nullopt;
    watch(tray);
    if (const std::optional<ColorScheme> wanted = schemeOf(x11::numbers(tray, colorsName))) return wanted;
    const std::optional<QRect> place = x11::rootGeometry(icon);
    const std::optional<QRect> bar = x11::rootGeometry(x11::topLevel(icon));
    const std::optional<QRect> root = x11::rootGeometry(x11::rootWindow());
    if (!place || !bar || !root) return std::nullopt;
    // As the screen shows it, including what lies below a translucent bar.
    const QRect area = place->adjusted(-reach, -reach, reach, reach) & *bar & *root;
    return schemeAround(place->translated(-area.topLeft()), x11::screenPixels(area));
}

std::optional<ColorScheme> TrayBar::schemeOfBars(QPoint place) {
    return schemeAround({}, x11::screenPixels(barAt(place)));
}

bool TrayBar::isBarCovered(QPoint place) {
    const std::optional<xcb_window_t> active = x11::activeWindow();
    // Windows that are not full-screen, such as the desktop's own, are below the bars.
    if (!active || !x11::isFullScreen(*active)) return false;
    const std::optional<QRect> window = x11::rootGeometry(*active);
    const QRect bar = barAt(place);
    return window && !bar.isEmpty() && window->contains(bar);
}

std::optional<ColorScheme> TrayBar::schemeOf(const std::vector<std::uint32_t>& trayColors) {
    constexpr std::size_t fourColors = 12;
    if (trayColors.size() != fourColors) return std::nullopt;
    const auto channel = [&trayColors](std::size_t i) {
        return static_cast<int>((trayColors[i] >> 8U) & 0xFFU);
    };
    return qGray(channel(0), channel(1), channel(2)) > middle ? ColorScheme::dark : ColorScheme::light;
}

std::optional<ColorScheme> TrayBar::schemeAround(const QRect& icon, const QImage& bar) {
    int dark = 0;
    int all = 0;
    for (int y = 0; y < bar.height(); ++y) {
        for (int x = 0; x < bar.width(); ++x) {
            if (icon.contains(x, y)) continue;
            ++all;
            if (qGray(bar.pixel(x, y)) < middle) ++dark;
        }
    }
    if (all == 0) return std::nullopt;
    return 2 * dark > all ? ColorScheme::dark : ColorScheme::light;
}

void TrayBar::watch(xcb_window_t tray) {
    if (tray == tray_) return;
    tray_ = tray;
    x11::watchProperties(tray);
}

} // namespace corvane

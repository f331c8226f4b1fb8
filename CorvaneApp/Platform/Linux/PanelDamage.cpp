#include "Platform/Linux/PanelDamage.h"

#include "Platform/Linux/Compositing.h"
#include "Platform/Linux/X11.h"

#include <QWidget>

#include <charconv>
#include <string>
#include <system_error>

namespace corvane {

PanelDamage::PanelDamage()
    : PanelDamage([](const QWidget& window) {
        x11::reportDamage(static_cast<xcb_window_t>(window.internalWinId()),
                          (QSizeF(window.size()) * window.devicePixelRatioF()).toSize());
    }) {}

void PanelDamage::followCompositor() {
    const xcb_window_t compositor = Compositing::instance().manager();
    if (compositor_ == compositor) return;
    compositor_ = compositor;
    setVersion(compositor != XCB_WINDOW_NONE ? x11::text(compositor, "COMPTON_VERSION") : std::string());
}

void PanelDamage::reportAll() const {
    if (!isNeeded_) return;
    for (const QWidget* const window : windows_) {
        if (window->isVisible()) report_(*window);
    }
}

bool PanelDamage::erasesBetweenChanges(std::string_view version) {
    constexpr int firstFaulty = 12;
    if (version.empty()) return false;
    if (version.starts_with('v')) version.remove_prefix(1);
    int major = 0;
    const auto result = std::from_chars(version.data(), version.data() + version.size(), major);
    // A build from its repository has a commit hash as its version, and is most likely recent.
    return result.ec != std::errc{} || major >= firstFaulty;
}

} // namespace corvane

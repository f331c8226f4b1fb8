#pragma once

#include "Platform/Linux/DesktopLook.h"

#include <QObject>
#include <xcb/xcb.h>

#include <cstdint>
#include <string_view>

namespace corvane {

/// The settings that a desktop's settings manager publishes on its X server, as XFCE, MATE, Cinnamon and
/// GNOME do, kept up to date. Without a manager they are empty; one that starts later is detected.
class XSettings : public QObject {
    Q_OBJECT

  public:
    XSettings();

    [[nodiscard]] const XSettingsLook& look() const { return look_; }

    /// Parses the bytes of a manager's property; what cannot be parsed is left out.
    [[nodiscard]] static XSettingsLook parsed(std::string_view bytes);

  Q_SIGNALS:
    void changed();

  private:
    void findManager();
    void read();

    xcb_window_t manager_ = XCB_WINDOW_NONE;
    XSettingsLook look_;
};

} // namespace corvane

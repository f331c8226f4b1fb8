#pragma once

#include "Platform/Linux/WindowRaiser.h"

namespace corvane {

/// Raises X11 windows, as pagers do; works under every window manager, and in a Wayland session for the
/// windows that XWayland shows. Has its own connection: it works whatever window system Qt uses. Reports
/// immediately.
class XWindowRaiser : public WindowRaiser {
  public:
    void raise(const WindowSearch& search, QObject& context, Report report) override;
};

} // namespace corvane

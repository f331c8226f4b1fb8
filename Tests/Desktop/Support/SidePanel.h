#pragma once

#include "Desktop/Support/Picture.h"

#include <cstdint>
#include <string>

struct xcb_connection_t;

namespace corvane::test {

/// A panel at the top edge of the screen that reserves its area (a strut), as a desktop's task bar does; or
/// a desktop's own window, which reserves nothing and is below all others. It is removed with this object.
class SidePanel {
  public:
    enum class Type : std::uint8_t { dock, desktop };

    /// Covers `area`, which begins at the screen's top. Throws std::runtime_error when the X server on
    /// `display` does not respond.
    SidePanel(const std::string& display, Rect area, Type type = Type::dock);
    SidePanel(const SidePanel&) = delete;
    SidePanel& operator=(const SidePanel&) = delete;
    ~SidePanel();

  private:
    xcb_connection_t* connection_;
};

} // namespace corvane::test

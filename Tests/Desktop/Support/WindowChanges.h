#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

struct xcb_connection_t;

namespace corvane::test {

/// Counts how often top-level windows are moved, resized or restacked, over its own connection. A request
/// that changes nothing does not count.
class WindowChanges {
  public:
    /// `display` as in DISPLAY.
    explicit WindowChanges(const std::string& display);
    WindowChanges(const WindowChanges&) = delete;
    WindowChanges& operator=(const WindowChanges&) = delete;
    ~WindowChanges();

    /// The changes of each window since the last call.
    [[nodiscard]] std::map<std::uint32_t, std::size_t> take();

  private:
    xcb_connection_t* connection_;
};

} // namespace corvane::test

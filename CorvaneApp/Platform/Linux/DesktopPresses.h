#pragma once

#include <QObject>

#include <cstdint>

namespace corvane {

/// Reports presses on the bare desktop to a panel that closes when the user turns to something else. Few
/// window managers remove the focus from a window at such a press, and where the desktop is not a window, no
/// program receives it. So an invisible window below all others receives it. Main thread only.
class DesktopPresses : public QObject {
    Q_OBJECT

  public:
    DesktopPresses();
    ~DesktopPresses() override;

    /// Does nothing if already started, or where X11 does not receive such presses: in Wayland sessions other
    /// than GNOME's.
    void start();
    void stop();

  Q_SIGNALS:
    void pressed();

  private:
    std::uint32_t window_ = 0;
};

} // namespace corvane

#pragma once

#include <QObject>

#include <cstdint>

namespace corvane {

/// Reports presses on the bare desktop to a panel that closes when something else is used. Few window
/// managers take the focus from a window at such a press, and where the desktop is not a window, no program
/// gets it. So an unseen window lies below all others and takes it. Main thread only.
class DesktopPresses : public QObject {
    Q_OBJECT

  public:
    DesktopPresses();
    ~DesktopPresses() override;

    /// Does nothing if it is started, and where X11 cannot tell: in Wayland sessions other than GNOME's.
    void start();
    void stop();

  Q_SIGNALS:
    void pressed();

  private:
    std::uint32_t window_ = 0;
};

} // namespace corvane

#pragma once

#include <QObject>
#include <QPainterPath>
#include <QRect>

#include <memory>

class QWidget;

namespace corvane {

/// Puts a frameless top-level widget on the desktop that belongs to the status item and has the keyboard
/// while it is open. The application that was active stays so where the system keeps the two apart. Hiding
/// the widget takes it off the screen. Main thread only.
class PanelHost : public QObject {
    Q_OBJECT

  public:
    /// Where the window is on the desktop, or will be, in device-independent pixels with y growing downwards.
    /// `outline` is that of the card, in the window's coordinates.
    virtual void setGeometry(const QRect& geometry, const QPainterPath& outline) = 0;

    /// Shows the window in front, with the keyboard.
    virtual void present() = 0;

    [[nodiscard]] virtual bool hasKeyboard() const = 0;

  Q_SIGNALS:
    /// `hasKeyboard` may have another answer now.
    void keyboardChanged();

    /// A mouse button was pressed outside of the application, where that takes no keyboard away.
    void pressedElsewhere();
};

/// Creates panel hosts.
class PanelHosts {
  public:
    PanelHosts() = default;
    PanelHosts(const PanelHosts&) = delete;
    PanelHosts& operator=(const PanelHosts&) = delete;
    virtual ~PanelHosts() = default;

    /// For `window`, which has not been shown so far and outlives the host.
    [[nodiscard]] virtual std::unique_ptr<PanelHost> make(QWidget& window) = 0;
};

} // namespace corvane

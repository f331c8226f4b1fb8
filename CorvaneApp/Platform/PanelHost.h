#pragma once

#include <QObject>
#include <QPainterPath>
#include <QRect>

#include <memory>

class QWidget;

namespace corvane {

/// Shows a frameless top-level widget that belongs to the status item and has the keyboard focus while it is
/// open. The active application stays active where the system separates focus from activation. Hiding the
/// widget takes it off the screen. Main thread only.
class PanelHost : public QObject {
    Q_OBJECT

  public:
    /// Sets the window's place on the desktop, whether or not it is shown yet, in device-independent pixels
    /// with y growing downwards. `outline` is the card's, in the window's coordinates.
    virtual void setGeometry(const QRect& geometry, const QPainterPath& outline) = 0;

    /// Shows the window in front, with the keyboard focus.
    virtual void present() = 0;

    [[nodiscard]] virtual bool hasKeyboard() const = 0;

  Q_SIGNALS:
    /// Emitted when `hasKeyboard` may have changed.
    void keyboardChanged();

    /// A mouse button was pressed outside of the application without taking the keyboard focus away.
    void pressedElsewhere();
};

/// Creates panel hosts.
class PanelHosts {
  public:
    PanelHosts() = default;
    PanelHosts(const PanelHosts&) = delete;
    PanelHosts& operator=(const PanelHosts&) = delete;
    virtual ~PanelHosts() = default;

    /// `window` must not have been shown yet and must outlive the host.
    [[nodiscard]] virtual std::unique_ptr<PanelHost> make(QWidget& window) = 0;
};

} // namespace corvane

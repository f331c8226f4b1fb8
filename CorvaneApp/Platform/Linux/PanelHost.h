#pragma once

#include "Platform/Linux/DesktopPresses.h"
#include "Platform/Linux/PanelDamage.h"
#include "Platform/Shared/PlainPanelHost.h"

#include <QPoint>
#include <QString>
#include <QTimer>

#include <memory>
#include <optional>
#include <utility>

namespace corvane {

/// Keeps the window out of task bars and pagers, most of which list a tool window without a main window. Has
/// sway position it, since sway centres floating windows, wherever they request to be. Detects presses on the
/// bare desktop, most of which do not take the keyboard focus away. Reports changes of the window to
/// `PanelDamage`.
class LinuxPanelHost : public PlainPanelHost {
    Q_OBJECT

  public:
    /// `sway` is sway's socket, if sway runs and positions the window. `damage` must outlive the host.
    LinuxPanelHost(QWidget& window, Activation& activation, PanelDamage& damage, std::optional<QString> sway);
    LinuxPanelHost(const LinuxPanelHost&) = delete;
    LinuxPanelHost& operator=(const LinuxPanelHost&) = delete;
    ~LinuxPanelHost() override;

    void setGeometry(const QRect& geometry, const QPainterPath& outline) override;
    void present() override;

  protected:
    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    void placeBySway();
    void askSway();

    QWidget& window_;
    PanelDamage& damage_;
    std::optional<QString> sway_;
    QPoint place_;
    QTimer again_;
    QTimer second_;
    int requestsLeft_ = 0;
    DesktopPresses desktop_;
};

class LinuxPanelHosts : public PanelHosts {
  public:
    LinuxPanelHosts(Activation& activation, PanelDamage& damage, std::optional<QString> sway)
        : activation_(activation)
        , damage_(damage)
        , sway_(std::move(sway)) {}

    [[nodiscard]] std::unique_ptr<PanelHost> make(QWidget& window) override {
        return std::make_unique<LinuxPanelHost>(window, activation_, damage_, sway_);
    }

  private:
    Activation& activation_;
    PanelDamage& damage_;
    std::optional<QString> sway_;
};

} // namespace corvane

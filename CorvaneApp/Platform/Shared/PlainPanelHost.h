#pragma once

#include "Platform/Activation.h"
#include "Platform/PanelHost.h"

namespace corvane {

/// Leaves the window to Qt and to the window manager, which gives the keyboard focus to the active window.
class PlainPanelHost : public PanelHost {
    Q_OBJECT

  public:
    /// Both must outlive the host.
    PlainPanelHost(QWidget& window, Activation& activation);

    void setGeometry(const QRect& geometry, const QPainterPath& outline) override;
    void present() override;
    [[nodiscard]] bool hasKeyboard() const override;

  private:
    QWidget& window_;
    Activation& activation_;
};

class PlainPanelHosts : public PanelHosts {
  public:
    explicit PlainPanelHosts(Activation& activation)
        : activation_(activation) {}

    [[nodiscard]] std::unique_ptr<PanelHost> make(QWidget& window) override {
        return std::make_unique<PlainPanelHost>(window, activation_);
    }

  private:
    Activation& activation_;
};

} // namespace corvane

#pragma once

#include "Platform/PanelHost.h"

namespace corvane {

/// Leaves the window to Qt and to the window manager, which ties the keyboard to the active window.
class PlainPanelHost : public PanelHost {
    Q_OBJECT

  public:
    explicit PlainPanelHost(QWidget& window);

    void setGeometry(const QRect& geometry, const QPainterPath& outline) override;
    void present() override;
    [[nodiscard]] bool hasKeyboard() const override;

  private:
    QWidget& window_;
};

class PlainPanelHosts : public PanelHosts {
  public:
    [[nodiscard]] std::unique_ptr<PanelHost> make(QWidget& window) override {
        return std::make_unique<PlainPanelHost>(window);
    }
};

} // namespace corvane

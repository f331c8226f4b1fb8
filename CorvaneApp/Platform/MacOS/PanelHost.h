#pragma once

#include "Platform/Activation.h"
#include "Platform/MacOS/NativePanel.h"
#include "Platform/PanelHost.h"

#include <memory>

namespace corvane {

/// Puts the window into a panel that takes the keyboard and leaves the active application active. Presses in
/// other applications are heard by a monitor, since some of them, such as those on the menu bar's other
/// items, take no keyboard away.
class MacPanelHost : public PanelHost {
    Q_OBJECT

  public:
    explicit MacPanelHost(QWidget& window);
    ~MacPanelHost() override;

    void setGeometry(const QRect& geometry, const QPainterPath& outline) override;
    void present() override;
    [[nodiscard]] bool hasKeyboard() const override;

    [[nodiscard]] const NativePanel& panel() const { return panel_; }

  protected:
    /// Follows the window off the screen.
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    struct Monitor;

    QWidget& window_;
    NativePanel panel_;
    std::unique_ptr<Monitor> monitor_; // while the panel is open
    QRect geometry_;
    QPainterPath outline_;
    bool isHosted_ = false;
};

/// On Qt's "cocoa" platform; the others have no native views to put anywhere, and get plain hosts.
class MacPanelHosts : public PanelHosts {
  public:
    explicit MacPanelHosts(Activation& activation)
        : activation_(activation) {}

    [[nodiscard]] std::unique_ptr<PanelHost> make(QWidget& window) override;

  private:
    Activation& activation_;
};

} // namespace corvane

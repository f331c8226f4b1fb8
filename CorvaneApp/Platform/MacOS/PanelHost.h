#pragma once

#include "Platform/Activation.h"
#include "Platform/MacOS/NativePanel.h"
#include "Platform/PanelHost.h"

#include <memory>

namespace corvane {

/// Puts the window into a panel that takes the keyboard focus and leaves the active application active. An
/// event monitor catches presses in other applications, since some of them, such as those on the menu bar's
/// other items, do not take the focus away.
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
    /// Hides the panel when the window is hidden.
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

/// Creates native hosts on Qt's "cocoa" platform; the others have no native views and get plain hosts.
class MacPanelHosts : public PanelHosts {
  public:
    explicit MacPanelHosts(Activation& activation)
        : activation_(activation) {}

    [[nodiscard]] std::unique_ptr<PanelHost> make(QWidget& window) override;

  private:
    Activation& activation_;
};

} // namespace corvane

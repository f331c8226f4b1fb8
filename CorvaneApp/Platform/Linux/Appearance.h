#pragma once

#include "Platform/Appearance.h"
#include "Platform/Linux/DesktopLook.h"
#include "Platform/Linux/KdeSettings.h"
#include "Platform/Linux/LxqtSettings.h"
#include "Platform/Linux/PortalSettings.h"
#include "Platform/Linux/XSettings.h"

namespace corvane {

/// The user's preferences from all places where desktops keep them, kept up to date. Changes of the desktop's
/// own palette are noticed only if Qt is notified of them.
class LinuxAppearance : public Appearance {
    Q_OBJECT

  public:
    LinuxAppearance();

    [[nodiscard]] ColorScheme colorScheme() const override { return look_.scheme; }
    [[nodiscard]] bool reduceMotion() const override { return look_.reduceMotion; }
    [[nodiscard]] Contrast contrast() const override { return look_.contrast; }
    [[nodiscard]] double textScale() const override;

    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    [[nodiscard]] DesktopLook presentLook() const;
    void follow();
    void followPalette();

    PortalSettings portal_;
    KdeSettings kde_;
    LxqtSettings lxqt_;
    XSettings xsettings_;
    ColorScheme palette_;
    DesktopLook look_;
};

/// The part of the text scale `wanted` that windows of `devicePixelRatio` do not apply already. GNOME's
/// settings daemon also multiplies the resolution by the scale, so that Qt enlarges whole windows; the only
/// other factor in the ratio is then a whole number.
[[nodiscard]] double remainingTextScale(double wanted, double devicePixelRatio);

} // namespace corvane

#pragma once

#include "Platform/Appearance.h"

#include <QDBusVariant>
#include <QString>

#include <optional>

namespace corvane {

/// The user's settings from the desktop portal, kept up to date. Until it replies, or without it: the
/// lightness of the desktop's own palette, as far as Qt is notified of its changes, normal contrast, and text
/// as large as Qt makes it.
class LinuxAppearance : public Appearance {
    Q_OBJECT

  public:
    LinuxAppearance();

    [[nodiscard]] ColorScheme colorScheme() const override { return portalScheme_.value_or(paletteScheme_); }
    [[nodiscard]] bool reduceMotion() const override { return reduceMotion_; }
    [[nodiscard]] Contrast contrast() const override;
    [[nodiscard]] double textScale() const override;

    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    Q_SLOT void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

    void ask(const QString& group, const QString& key);
    void apply(const QString& group, const QString& key, QVariant value);
    void set(const QString& group, const QString& key, const QVariant& value);
    void followPalette();

    ColorScheme paletteScheme_;
    std::optional<ColorScheme> portalScheme_; // none if the portal leaves it to the application
    bool reduceMotion_ = false;
    // Newer portals report the contrast for all desktops, older ones pass on GNOME's own switch.
    bool portalWantsContrast_ = false;
    bool desktopWantsContrast_ = false;
    double textScalingFactor_ = 1;
};

/// The part of a text scale that windows of `devicePixelRatio` do not apply already. GNOME's settings daemon
/// also multiplies the resolution by the scale, by which Qt enlarges whole windows; the only other factor in
/// the ratio is then a whole number.
[[nodiscard]] double remainingTextScale(double wanted, double devicePixelRatio);

} // namespace corvane

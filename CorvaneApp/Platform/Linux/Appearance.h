#pragma once

#include "Platform/Appearance.h"

#include <QDBusVariant>
#include <QString>

#include <optional>

namespace corvane {

/// What the desktop portal says about the user's wishes, kept up to date; before its answer, and without one,
/// the lightness of the desktop's own palette, which is followed as far as Qt hears of its changes, ordinary
/// contrast and text as large as Qt makes it.
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
    std::optional<ColorScheme> portalScheme_; // none where the portal leaves it to the application
    bool reduceMotion_ = false;
    // Newer portals tell of the contrast for all desktops, older ones hand on GNOME's own switch.
    bool portalWantsContrast_ = false;
    bool desktopWantsContrast_ = false;
    double textScalingFactor_ = 1;
};

/// What is left to do of a text scale where windows have `devicePixelRatio`. GNOME's settings daemon puts the
/// scale into the resolution too, from which Qt enlarges whole windows; beside it there is only a whole
/// factor then.
[[nodiscard]] double remainingTextScale(double wanted, double devicePixelRatio);

} // namespace corvane

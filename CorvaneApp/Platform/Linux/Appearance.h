#pragma once

#include "Platform/Appearance.h"

#include <QDBusVariant>
#include <QString>

#include <optional>

namespace corvane {

/// What the desktop portal says about the user's wishes, kept up to date; before its answer, and without one,
/// the lightness of the desktop's own palette, which is followed as far as Qt hears of its changes.
class LinuxAppearance : public Appearance {
    Q_OBJECT

  public:
    LinuxAppearance();

    [[nodiscard]] ColorScheme colorScheme() const override { return portalScheme_.value_or(paletteScheme_); }
    [[nodiscard]] bool reduceMotion() const override { return reduceMotion_; }

    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    Q_SLOT void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

    void ask(const QString& group, const QString& key);
    void apply(const QString& group, const QString& key, QVariant value);
    void followPalette();

    ColorScheme paletteScheme_;
    std::optional<ColorScheme> portalScheme_; // none where the portal leaves it to the application
    bool reduceMotion_ = false;
};

} // namespace corvane

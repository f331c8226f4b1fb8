#pragma once

#include "Platform/Appearance.h"

#include <QDBusVariant>
#include <QString>

namespace corvane {

/// What the desktop portal says about the user's wishes, kept up to date; before its answer, and without one,
/// the lightness of the desktop's own palette.
class LinuxAppearance : public Appearance {
    Q_OBJECT

  public:
    LinuxAppearance();

    [[nodiscard]] ColorScheme colorScheme() const override { return scheme_; }
    [[nodiscard]] bool reduceMotion() const override { return reduceMotion_; }

  private:
    Q_SLOT void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

    void ask(const QString& group, const QString& key);
    void apply(const QString& group, const QString& key, QVariant value);

    ColorScheme paletteScheme_;
    ColorScheme scheme_;
    bool reduceMotion_ = false;
};

} // namespace corvane

#pragma once

#include "Platform/Linux/ConfigFiles.h"
#include "Platform/Linux/DesktopLook.h"

#include <QObject>
#include <QStringList>

#include <string_view>

namespace corvane {

/// KDE's settings for how programs look, kept up to date; empty in a session of another desktop.
class KdeSettings : public QObject {
    Q_OBJECT

  public:
    explicit KdeSettings(const QStringList& files = sessionFiles());

    [[nodiscard]] const KdeLook& look() const { return look_; }

    /// The files in which the running session keeps them; none if it is not a KDE session.
    [[nodiscard]] static QStringList sessionFiles();

    /// Parses a configuration file.
    [[nodiscard]] static KdeLook parsed(std::string_view text);

  Q_SIGNALS:
    void changed();

  private:
    void follow();

    ConfigFiles files_;
    KdeLook look_;
};

} // namespace corvane

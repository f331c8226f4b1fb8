#pragma once

#include "Platform/Linux/ConfigFiles.h"

#include <QObject>
#include <QStringList>

#include <optional>
#include <string_view>

namespace corvane {

/// LXQt's settings for how programs look, kept up to date; empty in a session of another desktop. Qt follows
/// them only where LXQt's plugin is installed for the same version of Qt.
class LxqtSettings : public QObject {
    Q_OBJECT

  public:
    explicit LxqtSettings(const QStringList& files = sessionFiles());

    /// The lightness of windows, 0 to 255; none where LXQt leaves it to Qt's style.
    [[nodiscard]] std::optional<int> windowLightness() const { return windowLightness_; }

    /// The files in which the running session keeps them; none if it is not an LXQt session.
    [[nodiscard]] static QStringList sessionFiles();

    /// Parses the lightness of windows from a configuration file.
    [[nodiscard]] static std::optional<int> parsed(std::string_view text);

  Q_SIGNALS:
    void changed();

  private:
    void follow();

    ConfigFiles files_;
    std::optional<int> windowLightness_;
};

} // namespace corvane

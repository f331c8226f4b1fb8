#pragma once

#include "Platform/Linux/ConfigFiles.h"

#include <QObject>
#include <QStringList>

#include <optional>
#include <string_view>

namespace corvane {

/// LXQt's configuration of how programs look, kept up to date; empty in a session of another desktop. Qt
/// follows it only where LXQt's plugin is installed for the same version of Qt.
class LxqtSettings : public QObject {
    Q_OBJECT

  public:
    explicit LxqtSettings(const QStringList& files = sessionFiles());

    /// The lightness of windows, 0 to 255; none where LXQt leaves that to Qt's style.
    [[nodiscard]] std::optional<int> windowLightness() const { return windowLightness_; }

    /// Where the running session keeps it; none if that is not LXQt's.
    [[nodiscard]] static QStringList sessionFiles();

    /// The lightness of windows that a configuration file says.
    [[nodiscard]] static std::optional<int> parsed(std::string_view text);

  Q_SIGNALS:
    void changed();

  private:
    void follow();

    ConfigFiles files_;
    std::optional<int> windowLightness_;
};

} // namespace corvane

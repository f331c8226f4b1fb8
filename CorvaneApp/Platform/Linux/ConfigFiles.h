#pragma once

#include <QFileSystemWatcher>
#include <QLatin1String>
#include <QObject>
#include <QStringList>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// The contents of a desktop's configuration files, kept up to date.
class ConfigFiles : public QObject {
    Q_OBJECT

  public:
    /// `files` are ordered from the user's own to the system's; each may be missing.
    explicit ConfigFiles(QStringList files);

    /// The contents of the readable files, in the same order.
    [[nodiscard]] const std::vector<std::string>& texts() const { return texts_; }

    /// The paths at which the running session keeps `file`; none unless it is a session of `desktop`, since
    /// the file may be left over from an earlier one.
    [[nodiscard]] static QStringList ofSession(QLatin1String desktop, QLatin1String file);

    /// The last value of `key` in `group` in a text of lines "[group]" and "key=value"; none without one.
    [[nodiscard]] static std::optional<std::string> value(std::string_view text, std::string_view group,
                                                          std::string_view key);

  Q_SIGNALS:
    void changed();

  private:
    void follow();
    void watch();

    QStringList files_;
    QFileSystemWatcher watcher_;
    std::vector<std::string> texts_;
};

} // namespace corvane

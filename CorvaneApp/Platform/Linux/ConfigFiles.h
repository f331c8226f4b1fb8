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
    /// `files` from the user's own to the system's, each of which may be missing.
    explicit ConfigFiles(QStringList files);

    /// Of the files that can be read, in their order.
    [[nodiscard]] const std::vector<std::string>& texts() const { return texts_; }

    /// Where the running session keeps the file of this name, if it is a session of `desktop`: of another
    /// one, the file may be left from earlier.
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

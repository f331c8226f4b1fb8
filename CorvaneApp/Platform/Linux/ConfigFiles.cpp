#include "Platform/Linux/ConfigFiles.h"

#include "Support/Text.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <cstddef>
#include <utility>

namespace corvane {

namespace {

// Far more than a desktop keeps in one of its files.
constexpr qint64 mostBytes = qint64{1} << 20U;

/// The name in "name[flags]=value" without its flags, such as the one that makes a value immutable.
std::string_view name(std::string_view key) {
    return text::trimmingWhitespace(key.substr(0, key.find('[')));
}

} // namespace

std::optional<std::string> ConfigFiles::value(std::string_view text, std::string_view group,
                                              std::string_view key) {
    std::optional<std::string> found;
    bool isInGroup = false;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = text::trimmingWhitespace(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.starts_with('['))
            isInGroup = line.substr(1, line.size() - 2) == group && line.ends_with(']');
        const std::size_t equals = line.find('=');
        if (isInGroup && equals != std::string_view::npos && name(line.substr(0, equals)) == key)
            found = text::trimmingWhitespace(line.substr(equals + 1));
    }
    return found;
}

QStringList ConfigFiles::ofSession(QLatin1String desktop, QLatin1String file) {
    if (!qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':').contains(desktop)) return {};
    QStringList files;
    for (const QString& folder : QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation))
        files.append(folder + u'/' + file);
    return files;
}

ConfigFiles::ConfigFiles(QStringList files)
    : files_(std::move(files)) {
    connect(&watcher_, &QFileSystemWatcher::fileChanged, this, &ConfigFiles::follow);
    connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, &ConfigFiles::follow);
    follow();
}

void ConfigFiles::follow() {
    // Before reading them: a change in between would never be noticed.
    watch();
    std::vector<std::string> texts;
    for (const QString& name : files_) {
        QFile file(name);
        // Opening a pipe would wait for its other end, and a device's data may never end.
        if (QFileInfo(name).isFile() && file.open(QIODevice::ReadOnly))
            texts.push_back(file.read(mostBytes).toStdString());
    }
    if (texts == texts_) return;
    texts_ = std::move(texts);
    Q_EMIT changed();
}

void ConfigFiles::watch() {
    // A file that is replaced is no longer watched, and the creation of a missing one is noticed only by
    // watching its folder.
    for (const QString& file : files_) {
        const QString folder = QFileInfo(file).path();
        const bool exists = QFileInfo::exists(file);
        if (exists && !watcher_.files().contains(file)) watcher_.addPath(file);
        const bool isFolderWatched = watcher_.directories().contains(folder);
        if (exists && isFolderWatched) watcher_.removePath(folder);
        if (!exists && !isFolderWatched && QFileInfo::exists(folder)) watcher_.addPath(folder);
    }
}

} // namespace corvane

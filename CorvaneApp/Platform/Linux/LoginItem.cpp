#include "Platform/Linux/LoginItem.h"

#include "Platform/Linux/DesktopEntry.h"
#include "Style/Translations.h"
#include "Support/Files.h"

#include <QCoreApplication>
#include <QStandardPaths>

#include <optional>
#include <string>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace corvane {

namespace fs = std::filesystem;

namespace {

std::optional<std::string> content(const fs::path& file) {
    try {
        return files::read(file).bytes;
    } catch (const files::FileError&) {
        return std::nullopt;
    }
}

std::string entry(const fs::path& program) {
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Name=Corvane\n"
           "Comment=Taps you on the shoulder when an AI coding agent needs you\n"
           "Exec=" +
           DesktopEntry::execArgument(program.string()) + ' ' + LinuxLoginItem::option +
           "\n"
           "Icon=corvane\n"
           "Terminal=false\n"
           "X-GNOME-Autostart-enabled=true\n";
}

} // namespace

LinuxLoginItem::LinuxLoginItem(fs::path file, fs::path program)
    : file_(std::move(file))
    , program_(std::move(program)) {}

fs::path LinuxLoginItem::standardFile() {
    const fs::path configuration =
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation).toStdString();
    return configuration / "autostart" / "corvane.desktop";
}

fs::path LinuxLoginItem::runningProgram() {
    // An AppImage is mounted at another path each time, so only the image itself can be started later.
    const QByteArray image = qgetenv("APPIMAGE");
    return image.isEmpty() ? fs::path(QCoreApplication::applicationFilePath().toStdString())
                           : fs::path(image.toStdString());
}

bool LinuxLoginItem::isEnabled() const {
    const std::optional<std::string> text = content(file_);
    if (!text || DesktopEntry::isDisabled(*text)) return false;
    const std::string program = DesktopEntry::execProgram(*text);
    return !program.empty() && (program.front() != '/' || access(program.c_str(), X_OK) == 0);
}

bool LinuxLoginItem::hasStartedThisProcess() const {
    return QCoreApplication::arguments().contains(QLatin1String(option));
}

void LinuxLoginItem::setEnabled(bool enabled) {
    try {
        if (enabled) {
            const std::string wanted = entry(program_);
            if (content(file_) != wanted) files::writeAtomically(file_, wanted);
            return;
        }
    } catch (const files::FileError& error) {
        throw LoginItemError(error.description(translations::words));
    }
    std::error_code error;
    fs::remove(file_, error);
    if (error) {
        throw LoginItemError(files::FileError(files::FileError::Operation::write, file_, error)
                                 .description(translations::words));
    }
}

} // namespace corvane

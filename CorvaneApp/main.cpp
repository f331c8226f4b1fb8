#include "CommandLine.h"
#include "CorvaneApp.h"
#include "Model/SettingsDefaults.h"
#include "Platform/Platform.h"
#include "Platform/Shared/UnixSignals.h"
#include "Platform/SingleInstance.h"
#include "Style/CorvaneStyle.h"
#include "Style/Translations.h"

#include <QApplication>
#include <QDir>
#include <QSettings>

#include <cstddef>
#include <cstdio>
#include <span>

int main(int argc, char** argv) {
    using namespace corvane;

    // First, since a start would bring a running instance's window forward.
    if (const auto text =
            commandline::answer(std::span(argv, static_cast<std::size_t>(argc)), CORVANE_VERSION)) {
        std::puts(text->c_str());
        return 0;
    }
    if (!Platform::prepareProcess()) return 1;
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Corvane"));
    QApplication::setOrganizationName(QStringLiteral("Corvane"));
    // On macOS Qt derives the settings' location from this and the name; it must match the bundle's
    // identifier.
    QApplication::setOrganizationDomain(QStringLiteral("corvane.org"));
    QApplication::setApplicationVersion(QStringLiteral(CORVANE_VERSION));
    QApplication::setStyle(new CorvaneStyle);
    translations::install(application);

    const std::unique_ptr<Platform> platform = Platform::make();
    const PlatformServices services = platform->services();
    if (!services.singleInstance.claim()) return 0;
    // Not earlier: while a second instance waits for the first one's reply, no event loop would handle a
    // signal.
    const UnixSignals signals;
    QObject::connect(&signals, &UnixSignals::received, &application, &QCoreApplication::quit);

    QSettings settings;
    SettingsDefaults defaults(settings);
    const AgentConnector connector(QDir::homePath().toStdString());
    Platform::protectSupportDirectory(connector.paths());
    CorvaneApp corvane(connector, defaults, services);
    corvane.launch();
    return QApplication::exec();
}

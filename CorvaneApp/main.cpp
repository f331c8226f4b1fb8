#include "AppModel.h"
#include "Connection/AgentConnector.h"
#include "Platform/Appearance.h"
#include "Platform/Platform.h"
#include "SettingsDefaults.h"
#include "Tokens.h"
#include "UnixSignals.h"

#include <QApplication>
#include <QDir>
#include <QSettings>

int main(int argc, char** argv) {
    using namespace corvane;

    if (!Platform::prepareProcess()) return 1;
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Corvane"));
    QApplication::setOrganizationName(QStringLiteral("Corvane"));
    QApplication::setQuitOnLastWindowClosed(false);

    const UnixSignals signals;
    QObject::connect(&signals, &UnixSignals::received, &application, &QCoreApplication::quit);

    const std::unique_ptr<Platform> platform = Platform::make();
    const Services services = platform->services();
    const auto followAppearance = [&services] {
        QApplication::setPalette(Tokens::palette(services.appearance.colorScheme()));
    };
    followAppearance();
    QObject::connect(&services.appearance, &Appearance::changed, &application, followAppearance);

    QSettings settings;
    SettingsDefaults defaults(settings);
    const AgentConnector connector(QDir::homePath().toStdString());
    Platform::protectSupportDirectory(connector.paths());
    const AppModel model(connector, defaults, services);

    return QApplication::exec();
}

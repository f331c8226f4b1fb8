#include "Platform/Platform.h"

#include "Platform/Linux/AccessibilityProbe.h"
#include "Platform/Linux/Activation.h"
#include "Platform/Linux/AgentProcesses.h"
#include "Platform/Linux/Announcer.h"
#include "Platform/Linux/Appearance.h"
#include "Platform/Linux/Applications.h"
#include "Platform/Linux/BannerPanel.h"
#include "Platform/Linux/BusProbe.h"
#include "Platform/Linux/FileBrowser.h"
#include "Platform/Linux/LoginItem.h"
#include "Platform/Linux/PanelDamage.h"
#include "Platform/Linux/PanelHost.h"
#include "Platform/Linux/Screens.h"
#include "Platform/Linux/SingleInstance.h"
#include "Platform/Linux/Sounds.h"
#include "Platform/Linux/StartupToken.h"
#include "Platform/Linux/StatusItem.h"
#include "Platform/Linux/SwayIpc.h"
#include "Platform/Linux/SystemSymbols.h"
#include "Platform/Linux/WindowShadow.h"
#include "Platform/Linux/X11.h"
#include "Platform/Shared/QtScheduler.h"

#include <QAccessible>
#include <QByteArray>
#include <QDBusConnection>
#include <QGuiApplication>
#include <QtGlobal>

#include <chrono>
#include <cstdio>
#include <optional>
#include <utility>

namespace corvane {

namespace {

constexpr const char* accessibilityVariable = "QT_LINUX_ACCESSIBILITY_ALWAYS_ON";
// On a machine that is busy with a login, a bus replies late.
constexpr std::chrono::seconds busPatience{5};

/// An environment variable that this process sets for itself until Qt has read it.
class OwnVariable {
  public:
    constexpr explicit OwnVariable(const char* name) noexcept
        : name_(name) {}

    [[nodiscard]] bool isEmpty() const { return qEnvironmentVariableIsEmpty(name_); }
    [[nodiscard]] bool isSet() const { return qEnvironmentVariableIsSet(name_); }

    void set(const char* value) {
        if (isSet()) inherited_ = qgetenv(name_);
        isOwn_ = true;
        qputenv(name_, value);
    }

    void restore() {
        if (!std::exchange(isOwn_, false)) return;
        if (inherited_) {
            qputenv(name_, *inherited_);
        } else {
            qunsetenv(name_);
        }
    }

  private:
    const char* name_;
    bool isOwn_ = false;
    std::optional<QByteArray> inherited_;
};

OwnVariable windowSystem{"QT_QPA_PLATFORM"};
OwnVariable refusedSharedMemory{"QT_XCB_NO_MITSHM"};
OwnVariable busAddress{"DBUS_SESSION_BUS_ADDRESS"};
OwnVariable accessibilityBusAddress{"AT_SPI_BUS_ADDRESS"};
// Nothing listens at the null device.
constexpr const char* noBus = "unix:path=/dev/null";
StartupToken ownStartup;

/// Qt's previous message handler.
QtMessageHandler printMessage = nullptr;

/// Prints Qt's messages except for two that are normal outside a login session and whose cause Qt works
/// around: a missing runtime folder, and (since Qt 6.8) a missing locale, instead of which it uses "C.UTF-8".
void takeMessage(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (!message.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR not set")) &&
        !message.startsWith(QLatin1String("Detected locale \"C\"")))
        printMessage(type, context, message);
}

class LinuxPlatform : public Platform {
  public:
    LinuxPlatform() {
        QObject::connect(&singleInstance_, &LinuxSingleInstance::startedWith, &singleInstance_,
                         [this](const StartupToken& startup) { activation_.setStartup(startup); });
    }

    PlatformServices services() override {
        return {
            .clock = [] { return Date::fromSystemClock(std::chrono::system_clock::now()); },
            .scheduler = scheduler_,
            .panels = panels_,
            .panelHosts = panelHosts_,
            .activation = activation_,
            .windowShadow = windowShadow_,
            .systemSymbols = systemSymbols_,
            .screens = screens_,
            .appearance = appearance_,
            .announcer = announcer_,
            .sounds = sounds_,
            .applications = applications_,
            .agentProcesses = agentProcesses_,
            .loginItem = loginItem_,
            .fileBrowser = fileBrowser_,
            .statusItem = statusItem_,
            .singleInstance = singleInstance_,
            .menuBars = MenuBars::ofWindows,
        };
    }

  private:
    PanelDamage damage_;
    LinuxBannerPanels panels_{damage_};
    LinuxScreens screens_;
    LinuxActivation activation_{screens_};
    LinuxWindowShadow windowShadow_;
    LinuxSystemSymbols systemSymbols_;
    LinuxPanelHosts panelHosts_{activation_, damage_,
                                x11::connection() != nullptr ? sway::socket() : std::nullopt};
    LinuxAppearance appearance_;
    LinuxAnnouncer announcer_;
    LinuxSounds sounds_;
    LinuxApplications applications_;
    LinuxAgentProcesses agentProcesses_;
    LinuxLoginItem loginItem_{LinuxLoginItem::standardFile(), LinuxLoginItem::runningProgram()};
    LinuxFileBrowser fileBrowser_;
    LinuxStatusItem statusItem_{appearance_};
    LinuxSingleInstance singleInstance_{ownStartup, loginItem_.hasStartedThisProcess()
                                                        ? LinuxSingleInstance::Start::atLogin
                                                        : LinuxSingleInstance::Start::byHand};
    // Created last and destroyed first: work that is still pending may hold a panel.
    QtScheduler scheduler_;
};

} // namespace

std::unique_ptr<Platform> Platform::make() {
    // The D-Bus library reads the address once, for the first connection.
    static_cast<void>(QDBusConnection::sessionBus());
    if (accessibilityHangs(busprobe::accessibilityAddress(), busPatience)) accessibilityBusAddress.set(noBus);
    // Qt reads that address on the first query about accessibility.
    static_cast<void>(QAccessible::isActive());
    // Child processes must not inherit these values.
    for (OwnVariable* const variable :
         {&windowSystem, &refusedSharedMemory, &busAddress, &accessibilityBusAddress})
        variable->restore();
    QGuiApplication::setDesktopFileName(QStringLiteral("corvane"));
    return std::make_unique<LinuxPlatform>();
}

bool Platform::prepareProcess() {
    const bool hasX = !qEnvironmentVariableIsEmpty("DISPLAY");
    const bool hasWayland = !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    const bool isChosen = !windowSystem.isEmpty();
    if (!hasX && !hasWayland && !isChosen) {
        std::fputs("corvane: no display to show banners on (neither DISPLAY nor WAYLAND_DISPLAY is set)\n",
                   stderr);
        return false;
    }
    ownStartup = StartupToken::fromEnvironment();
    printMessage = qInstallMessageHandler(takeMessage);
    // If there is no session bus, the D-Bus library would start one that outlives the application. If the bus
    // hangs, Qt would block for minutes without a window.
    const std::string bus = busprobe::sessionAddress();
    if (bus.empty() || busprobe::hangs(bus, busPatience)) busAddress.set(noBus);
    // Only X11, including XWayland, lets a window stay above others without the focus.
    if (hasX && !isChosen) windowSystem.set("xcb;wayland");
    // With images in shared memory, Qt waits for the X server before each repaint: each banner's clock would
    // wake the process two more times per second.
    if (!refusedSharedMemory.isSet()) refusedSharedMemory.set("1");
    // Without it, Qt serves only screen readers that were started earlier. It stays set, since Qt reads it
    // again whenever an accessibility bus appears.
    if (!qEnvironmentVariableIsSet(accessibilityVariable)) qputenv(accessibilityVariable, "1");
    return true;
}

} // namespace corvane

#include "Platform/Platform.h"

#include "Platform/MacOS/Activation.h"
#include "Platform/MacOS/Activity.h"
#include "Platform/MacOS/AgentProcesses.h"
#include "Platform/MacOS/Announcer.h"
#include "Platform/MacOS/Appearance.h"
#include "Platform/MacOS/ApplicationDelegate.h"
#include "Platform/MacOS/Applications.h"
#include "Platform/MacOS/BannerPanel.h"
#include "Platform/MacOS/FileBrowser.h"
#include "Platform/MacOS/LoginItem.h"
#include "Platform/MacOS/PanelHost.h"
#include "Platform/MacOS/Screens.h"
#include "Platform/MacOS/SingleInstance.h"
#include "Platform/MacOS/Sounds.h"
#include "Platform/MacOS/StatusItem.h"
#include "Platform/MacOS/SystemSymbols.h"
#include "Platform/MacOS/WindowShadow.h"
#include "Platform/Shared/QtScheduler.h"

#include <QtGlobal>

#import <AppKit/AppKit.h>
#include <chrono>

namespace corvane {

namespace {

class MacPlatform : public Platform {
  public:
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
            .menuBars = MenuBars::ofApplication,
        };
    }

  private:
    Activity activity_;
    MacBannerPanels panels_;
    MacActivation activation_;
    MacWindowShadow windowShadow_;
    MacSystemSymbols systemSymbols_;
    MacPanelHosts panelHosts_{activation_};
    MacScreens screens_;
    MacAppearance appearance_;
    MacAnnouncer announcer_;
    MacSounds sounds_;
    MacApplications applications_{scheduler_};
    MacAgentProcesses agentProcesses_;
    MacLoginItem loginItem_;
    MacFileBrowser fileBrowser_;
    MacStatusItem statusItem_;
    MacSingleInstance singleInstance_{MacSingleInstance::standardFolder()};
    // Created last and destroyed first: work that is still pending may hold a panel.
    QtScheduler scheduler_;
};

} // namespace

std::unique_ptr<Platform> Platform::make() {
    return std::make_unique<MacPlatform>();
}

bool Platform::prepareProcess() {
    // Otherwise Qt activates the application at every launch, even at login, and whenever a window is raised.
    qputenv("QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM", "1");
    qputenv("QT_MAC_SET_RAISE_PROCESS", "0");
    installApplicationDelegate();
    // A bundle declares its kind of application in its property list; a bare program cannot show windows
    // until it sets its activation policy.
    if (!NSBundle.mainBundle.bundleIdentifier)
        [NSApplication.sharedApplication setActivationPolicy:NSApplicationActivationPolicyAccessory];
    return true;
}

} // namespace corvane

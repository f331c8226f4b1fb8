#include "Platform/Platform.h"

#include "Platform/Linux/Announcer.h"
#include "Platform/Linux/Appearance.h"
#include "Platform/Linux/Applications.h"
#include "Platform/Linux/FloatingPanel.h"
#include "Platform/Linux/Screens.h"
#include "Platform/Linux/Sounds.h"
#include "QtScheduler.h"

#include <QtGlobal>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <system_error>

namespace corvane {

namespace {

class LinuxPlatform : public Platform {
  public:
    Services services() override {
        return {[] { return Date::fromSystemClock(std::chrono::system_clock::now()); },
                scheduler_,
                panels_,
                screens_,
                appearance_,
                announcer_,
                sounds_,
                applications_};
    }

  private:
    QtScheduler scheduler_;
    LinuxFloatingPanels panels_;
    LinuxScreens screens_;
    LinuxAppearance appearance_;
    LinuxAnnouncer announcer_;
    LinuxSounds sounds_;
    LinuxApplications applications_;
};

} // namespace

std::unique_ptr<Platform> Platform::make() {
    return std::make_unique<LinuxPlatform>();
}

bool Platform::prepareProcess() {
    const bool hasX = !qEnvironmentVariableIsEmpty("DISPLAY");
    const bool hasWayland = !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    const bool isChosen = !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
    if (!hasX && !hasWayland && !isChosen) {
        std::fputs("corvane: no display to show banners on (neither DISPLAY nor WAYLAND_DISPLAY is set)\n",
                   stderr);
        return false;
    }
    // Only X11, also as served inside a Wayland session, lets a window stand above others without the focus.
    if (hasX && !isChosen) qputenv("QT_QPA_PLATFORM", "xcb;wayland");
    return true;
}

void Platform::protectSupportDirectory(const CorvanePaths& paths) {
    std::error_code ignored;
    std::filesystem::create_directories(paths.support, ignored);
    std::filesystem::permissions(paths.support, std::filesystem::perms::owner_all, ignored);
}

} // namespace corvane

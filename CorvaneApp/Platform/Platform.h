#pragma once

#include "Support/CorvanePaths.h"
#include "Support/Date.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace corvane {

class Activation;
class AgentProcesses;
class Announcer;
class Appearance;
class Applications;
class FileBrowser;
class BannerPanels;
class LoginItem;
class PanelHosts;
class Scheduler;
class Screens;
class SingleInstance;
class Sounds;
class StatusItem;
class SystemSymbols;
class WindowShadow;

/// Returns the current time (wall clock).
using Clock = std::function<Date()>;

/// Where the system shows menus: in a bar of each main window, or in one that all of the application's
/// windows share.
enum class MenuBars : std::uint8_t { ofWindows, ofApplication };

/// Everything that the application needs from the system it runs on. The services must outlive every copy of
/// this.
struct PlatformServices {
    Clock clock;
    Scheduler& scheduler;
    BannerPanels& panels;
    PanelHosts& panelHosts;
    Activation& activation;
    WindowShadow& windowShadow;
    SystemSymbols& systemSymbols;
    Screens& screens;
    Appearance& appearance;
    Announcer& announcer;
    Sounds& sounds;
    Applications& applications;
    AgentProcesses& agentProcesses;
    LoginItem& loginItem;
    FileBrowser& fileBrowser;
    StatusItem& statusItem;
    SingleInstance& singleInstance;
    MenuBars menuBars;
};

/// The running system's own services. Created once, on the main thread, after the QApplication.
class Platform {
  public:
    Platform() = default;
    Platform(const Platform&) = delete;
    Platform& operator=(const Platform&) = delete;
    virtual ~Platform() = default;

    static std::unique_ptr<Platform> make();

    /// Prepares what must be decided before the QApplication is created, such as the window system to use. If
    /// nothing can be shown, prints why on standard error and returns false.
    [[nodiscard]] static bool prepareProcess();

    /// Creates the support directory and makes it unreadable for others, since event files hold the user's
    /// prompts and code. Best-effort.
    static void protectSupportDirectory(const CorvanePaths& paths);

    [[nodiscard]] virtual PlatformServices services() = 0;
};

} // namespace corvane

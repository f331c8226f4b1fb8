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
class FloatingPanels;
class LoginItem;
class PanelHosts;
class Scheduler;
class Screens;
class SingleInstance;
class Sounds;
class StatusItem;
class SystemSymbols;
class WindowShadow;

/// Tells the present time.
using Clock = std::function<Date()>;

/// Where the system shows menus: in a bar of each main window, or in one that all of the application's
/// windows share.
enum class MenuBars : std::uint8_t { ofWindows, ofApplication };

/// Everything that the application asks of the system it runs on. The referents outlive whoever holds this.
struct PlatformServices {
    Clock clock;
    Scheduler& scheduler;
    FloatingPanels& panels;
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

/// The running system's own services. Made once, on the main thread, after the QApplication.
class Platform {
  public:
    Platform() = default;
    Platform(const Platform&) = delete;
    Platform& operator=(const Platform&) = delete;
    virtual ~Platform() = default;

    static std::unique_ptr<Platform> make();

    /// What must be settled before the QApplication is made, such as the window system to use. Gives false
    /// after saying why on standard error when there is no way to show anything.
    [[nodiscard]] static bool prepareProcess();

    /// Makes the support directory and sees to it that nobody else can read it, since event files hold the
    /// user's prompts and code. What cannot be done is left.
    static void protectSupportDirectory(const CorvanePaths& paths);

    [[nodiscard]] virtual PlatformServices services() = 0;
};

} // namespace corvane

// The tray icon and its panel with real hosts: a fake one on the session bus, and trayer, which embeds
// windows.

#include "Connection/AgentConnector.h"
#include "Desktop/Support/DesktopSession.h"
#include "Desktop/Support/Starvation.h"
#include "Desktop/Tray/NotifierHost.h"
#include "Support/Date.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvane::test {
namespace {

using namespace std::chrono_literals;

constexpr Color surface{0xFFFFFF};

class Tray : public testing::Test {
  protected:
    explicit Tray(const std::string& windowManager = "openbox")
        : desktop(windowManager) {}

    [[nodiscard]] std::string bus() const {
        return "unix:path=" + (desktop.home().parent_path() / "run/bus").string();
    }

    bool eventually(const std::function<bool()>& condition) {
        return waitUntil(20s, [&] {
            QCoreApplication::processEvents();
            return condition();
        });
    }

    [[nodiscard]] bool isRegistered() {
        return eventually([this] { return host->items().size() == 1; });
    }

    /// The application's managed windows: the panel, the main window and the settings.
    [[nodiscard]] std::vector<std::uint32_t> windows() { return desktop.screen().managedWindows("corvane"); }
    [[nodiscard]] bool hasWindows(std::size_t count) {
        return eventually([this, count] { return windows().size() == count; });
    }
    /// Opens the panel through the host, and waits until it has the keyboard focus. It closes again if it
    /// loses the focus for longer than a window manager needs that is not delayed.
    [[nodiscard]] bool opensPanel() {
        constexpr int mostAttempts = 3;
        for (int attempt = 1;; ++attempt) {
            Starvation starvation(desktop.painters());
            host->activate(0, 0);
            const bool isOpen = panelHasKeyboard();
            if (isOpen || attempt == mostAttempts || starvation.soFar() < 100ms) return isOpen;
        }
    }
    [[nodiscard]] bool panelHasKeyboard() {
        return eventually([this] {
            const auto present = windows();
            return present.size() == 1 && desktop.screen().activeWindow() == present.front() &&
                   desktop.screen().hasFocus(present.front());
        });
    }

    /// Connects the agent, which has no configuration so far.
    void connect(AgentKind agent) {
        const AgentConnector connector(desktop.home());
        EXPECT_EQ(connector.connect(agent, Date::fromSystemClock(std::chrono::system_clock::now())),
                  std::nullopt);
    }

    void key(const char* name) { EXPECT_EQ(desktop.run({"xdotool", "key", name}, "xdotool")->wait(10s), 0); }

    DesktopSession desktop;
    std::unique_ptr<NotifierHost> host;
};

TEST_F(Tray, registersWithAWatcherAndShowsItsStateInTheToolTip) {
    connect(AgentKind::claude);
    host = std::make_unique<NotifierHost>(bus());
    host->start();
    desktop.startApplication();
    ASSERT_TRUE(isRegistered());
    EXPECT_EQ(host->property("Id").toString(), QStringLiteral("Corvane"));
    EXPECT_EQ(host->toolTip(), "Corvane");
    desktop.claude("Notification-permission_prompt", "a", "shop");
    EXPECT_TRUE(eventually([this] { return host->toolTip() == "1 agent waiting for you"; }));
}

TEST_F(Tray, appearsWhenTheWatcherStartsLater) {
    desktop.startApplication();
    host = std::make_unique<NotifierHost>(bus());
    host->start();
    EXPECT_TRUE(isRegistered());
}

TEST_F(Tray, appearsWhenTheWatcherGetsItsHostLater) {
    host = std::make_unique<NotifierHost>(bus());
    host->setHasHost(false);
    host->start();
    desktop.startApplication();
    desktop.codex("codex-tui", "shop");
    ASSERT_TRUE(desktop.shows(0, 1)) << "it works without any tray";
    EXPECT_TRUE(host->items().isEmpty());
    host->setHasHost(true);
    EXPECT_TRUE(isRegistered());
}

TEST_F(Tray, survivesTheRestartOfTheHost) {
    host = std::make_unique<NotifierHost>(bus());
    host->start();
    desktop.startApplication();
    ASSERT_TRUE(isRegistered());
    host->stop();
    QCoreApplication::processEvents();
    ASSERT_TRUE(host->items().isEmpty());
    host->start();
    EXPECT_TRUE(isRegistered());
}

TEST_F(Tray, movesToAWatcherThatTakesOverTheName) {
    host = std::make_unique<NotifierHost>(bus());
    host->start();
    desktop.startApplication();
    ASSERT_TRUE(isRegistered());
    NotifierHost next(bus());
    next.start();
    EXPECT_TRUE(eventually([&next] { return next.items().size() == 1; }));
}

TEST_F(Tray, appearsIfTheWatcherIsSlowToReply) {
    host = std::make_unique<NotifierHost>(bus());
    host->start();
    desktop.startApplication();
    // Longer than the application waits for it. It replies while the test's events are processed.
    waitUntil(4s, [] { return false; });
    ASSERT_TRUE(host->items().isEmpty());
    EXPECT_TRUE(isRegistered());
}

class ManagedTray : public Tray, public testing::WithParamInterface<std::string> {
  protected:
    ManagedTray()
        : Tray(GetParam()) {}
};

TEST_P(ManagedTray, aClickOpensThePanelAndAnotherOneClosesIt) {
    host = std::make_unique<NotifierHost>(bus());
    host->start();
    desktop.startApplication();
    ASSERT_TRUE(isRegistered());
    ASSERT_TRUE(opensPanel());
    const Rect panel = desktop.screen().geometry(windows().front());
    EXPECT_TRUE(eventually([&] {
        const Picture screen = desktop.screen().screen();
        return screen.share({panel.x + 24 + 12, panel.y + 16 + 12, 316, 18}, surface, 2) > 0.5;
    })) << "the panel's header";
    host->activate(0, 0);
    EXPECT_TRUE(hasWindows(0));
}

TEST_P(ManagedTray, thePanelClosesOnEscapeAndWhenItLosesTheFocus) {
    host = std::make_unique<NotifierHost>(bus());
    host->start();
    desktop.startApplication();
    ASSERT_TRUE(isRegistered());
    ASSERT_TRUE(opensPanel());
    key("Escape");
    ASSERT_TRUE(hasWindows(0));
    ASSERT_TRUE(opensPanel());
    desktop.startTerminal(false);
    EXPECT_TRUE(hasWindows(0));
}

TEST_F(Tray, theMenuIsSilentOnTheBusWhileItIsClosedAndRightWhenItOpens) {
    connect(AgentKind::claude);
    host = std::make_unique<NotifierHost>(bus());
    host->start();
    desktop.startApplication();
    ASSERT_TRUE(isRegistered());
    ASSERT_EQ(host->broadcasts(), 0);
    desktop.claude("Notification-permission_prompt", "a", "shop");
    EXPECT_TRUE(eventually([this] { return host->broadcasts() > 0; })) << "the session is reported";
    ASSERT_TRUE(desktop.shows(1, 0));
    ASSERT_TRUE(eventually([this] { return host->toolTip() == "1 agent waiting for you"; }));

    const auto pass = [](std::chrono::milliseconds time) {
        waitUntil(time, [] {
            QCoreApplication::processEvents();
            return false;
        });
    };
    pass(500ms);
    const int before = host->broadcasts();
    const auto session = [this] {
        const std::vector<NotifierHost::Entry> entries = host->menu();
        return entries.size() > 2 ? entries[2].label : std::string("none");
    };
    // The seconds of the clock at its end.
    const auto clock = [&session] {
        const std::string label = session();
        const std::size_t colon = label.rfind(':');
        const std::size_t space = label.rfind(' ', colon);
        if (colon == std::string::npos || space == std::string::npos) return -1;
        return std::stoi(label.substr(space + 1)) * 60 + std::stoi(label.substr(colon + 1));
    };
    const std::string atFirst = session();
    const int secondsAtFirst = clock();
    EXPECT_GE(secondsAtFirst, 0) << atFirst;
    pass(4s);
    EXPECT_EQ(host->broadcasts(), before);
    EXPECT_EQ(session(), atFirst);
    host->openMenu();
    EXPECT_GE(clock(), secondsAtFirst + 4) << session();
}

TEST_F(Tray, theMenuOpensTheWindowsAndQuits) {
    connect(AgentKind::claude);
    host = std::make_unique<NotifierHost>(bus());
    host->start();
    desktop.startApplication();
    ASSERT_TRUE(isRegistered());
    desktop.claude("Notification-permission_prompt", "a", "shop");
    ASSERT_TRUE(desktop.shows(1, 0));
    std::vector<std::string> labels;
    for (const auto& entry : host->menu())
        labels.push_back(entry.label.substr(0, entry.label.find(" · 0:")));
    EXPECT_EQ(labels,
              (std::vector<std::string>{"Open Corvane", "-", "\u2068shop\u2069 · Claude · Waiting for you",
                                        "-", "Quiet for 1 hour", "Settings…", "Quit"}));
    ASSERT_TRUE(host->choose("Open Corvane"));
    EXPECT_TRUE(hasWindows(1));
    ASSERT_TRUE(host->choose("Settings…"));
    EXPECT_TRUE(hasWindows(2));
    ASSERT_TRUE(host->choose("Quit"));
    EXPECT_EQ(desktop.application().wait(10s), 0);
    EXPECT_EQ(desktop.applicationOutput(), "");
}

TEST_P(ManagedTray, windowsOpenInTheMiddleOfTheWorkArea) {
    host = std::make_unique<NotifierHost>(bus());
    host->start();
    desktop.startApplication();
    ASSERT_TRUE(isRegistered());
    const Rect area = desktop.screen().workArea();
    std::vector<std::uint32_t> seen;
    for (const char* const entry : {"Open Corvane", "Settings…"}) {
        ASSERT_TRUE(host->choose(entry));
        ASSERT_TRUE(hasWindows(seen.size() + 1));
        const auto present = windows();
        const auto window = std::ranges::find_if(
            present, [&](std::uint32_t each) { return std::ranges::find(seen, each) == seen.end(); });
        ASSERT_NE(window, present.end());
        EXPECT_TRUE(eventually([&] {
            const Rect place = desktop.screen().geometry(*window);
            return std::abs(place.middleX() - area.middleX()) <= 8 &&
                   std::abs(place.middleY() - area.middleY()) <= 8;
        })) << entry
            << ": " << desktop.screen().geometry(*window).x << ", " << desktop.screen().geometry(*window).y;
        seen.push_back(*window);
    }
}

// A row of the panel leads to the terminal in which the session's agent runs.
TEST_P(ManagedTray, aRowOfThePanelActivatesItsTerminal) {
    connect(AgentKind::codex);
    host = std::make_unique<NotifierHost>(bus());
    host->start();
    desktop.startApplication();
    ASSERT_TRUE(isRegistered());
    // As installed: a program with its own name, here one that only reads.
    const std::filesystem::path agent = desktop.home() / "bin/codex";
    std::filesystem::create_directories(agent.parent_path());
    std::filesystem::copy_file("/bin/cat", agent);
    std::filesystem::create_directories(desktop.home() / "shop");
    const auto terminal = desktop.run({"xterm", "-e", "sh", "-c", "cd shop && exec ../bin/codex"}, "agent");
    std::uint32_t window = 0;
    ASSERT_TRUE(eventually([&] {
        const auto found = desktop.screen().managedWindows("xterm");
        window = found.empty() ? 0 : found.front();
        return window != 0 && desktop.screen().activeWindow() == window;
    }));
    ASSERT_TRUE(eventually([this] { return desktop.running("codex") == 1; }));
    const auto other = desktop.run({"xterm", "-e", "cat"}, "other");
    ASSERT_TRUE(eventually([&] {
        const std::uint32_t active = desktop.screen().activeWindow();
        return active != window && desktop.screen().managedWindows("xterm").size() == 2;
    }));
    desktop.codex("codex-tui", "shop", {"TERM_PROGRAM="});
    ASSERT_TRUE(desktop.shows(0, 1));
    ASSERT_TRUE(opensPanel());
    key("Down");
    key("space");
    EXPECT_TRUE(eventually([&] { return desktop.screen().activeWindow() == window; }));
    EXPECT_TRUE(hasWindows(0)) << "the panel closed";
}

INSTANTIATE_TEST_SUITE_P(WindowManagers, ManagedTray, testing::ValuesIn(focusingWindowManagers()),
                         [](const auto& manager) { return manager.param; });

class EmbeddingTray : public Tray {
  protected:
    void startTrayer(const std::vector<std::string>& further = {}) {
        // Of a fixed width: on request, it sometimes stays at zero width.
        std::vector<std::string> arguments{"trayer",      "--edge",        "top",     "--align", "right",
                                           "--widthtype", "pixel",         "--width", "120",     "--height",
                                           "24",          "--SetDockType", "true"};
        arguments.insert(arguments.end(), further.begin(), further.end());
        trayer = desktop.run(arguments, "trayer");
    }

    /// Whether the tray shows the bell, found by its colour; if so, `icon` is set to a point on it.
    [[nodiscard]] bool isEmbedded() {
        // A tray may move and resize its icons several times.
        int looks = 0;
        return eventually([this, &looks] {
            const std::optional<Rect> found = bell();
            looks = found && *found == icon ? looks + 1 : 0;
            icon = found.value_or(Rect());
            return looks == 30;
        });
    }

    [[nodiscard]] std::optional<Rect> bell() {
        const Picture screen = desktop.screen().screen();
        for (int x = screen.width - 200; x < screen.width; ++x) {
            for (int y = 0; y < 26; ++y) {
                if (screen.at(x, y).isNear(ink, 3)) return Rect{x, y, 2, 2};
            }
        }
        return std::nullopt;
    }

    std::unique_ptr<ChildProcess> trayer;
    Color ink{0x1D1D1F};
    Rect icon;
};

TEST_F(EmbeddingTray, showsTheBellAndAClickOpensThePanelBelowIt) {
    startTrayer();
    desktop.startApplication();
    ASSERT_TRUE(isEmbedded());
    desktop.click(icon);
    ASSERT_TRUE(panelHasKeyboard());
    const Rect panel = desktop.screen().geometry(windows().front());
    EXPECT_GT(panel.y + 16, 20) << "the card is below the bar";
    EXPECT_LT(panel.y + 16, 60);
    EXPECT_LE(panel.x + 24 + 340, 1280) << "the card is on the screen";
    desktop.click(icon);
    EXPECT_TRUE(hasWindows(0));
}

TEST_F(EmbeddingTray, theBellIsLightOnADarkBarOfALightDesktop) {
    startTrayer({"--transparent", "true", "--tint", "0x202024", "--alpha", "0"});
    desktop.startApplication();
    ink = {0xF2F2F7};
    EXPECT_TRUE(isEmbedded());
}

TEST_F(EmbeddingTray, appearsWhenTheHostStartsLaterAndSurvivesItsRestart) {
    desktop.startApplication();
    startTrayer();
    ASSERT_TRUE(isEmbedded());
    trayer->stop();
    trayer.reset();
    startTrayer();
    EXPECT_TRUE(isEmbedded());
}

TEST_F(EmbeddingTray, aWatcherThatDoesNotReplyBlocksNothing) {
    host = std::make_unique<NotifierHost>(bus());
    host->setHasHost(false);
    host->start();
    startTrayer();
    desktop.startApplication({}, DesktopSession::Start::byHand);
    EXPECT_TRUE(waitUntil(20s, [this] { return windows().size() == 1; })) << "there is no icon so far";
    desktop.codex("codex-tui", "shop");
    EXPECT_TRUE(desktop.shows(0, 1));
    // Not by a reply that it has no host: some versions of Qt ask only for the watcher.
    host.reset();
    EXPECT_TRUE(isEmbedded());
}

} // namespace
} // namespace corvane::test

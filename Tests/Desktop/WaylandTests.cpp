// The banners and the jump in Wayland sessions without a screen, with native terminals.

#include "Desktop/Support/BannerLook.h"
#include "Desktop/Support/DesktopSession.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvane::test {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

/// A session with a folder for each of two projects, and the application.
class WaylandSession : public testing::Test {
  protected:
    void begin(const std::string& compositor) {
        desktop = std::make_unique<DesktopSession>(compositor);
        const fs::path agent = desktop->home() / "bin/claude";
        // A process has the name of its program's file, even of a script.
        writeFile(agent, "#!/bin/sh\nwhile read -r line; do :; done\n");
        fs::permissions(agent, fs::perms::owner_all);
        for (const char* const folder : {"shop", "blog"})
            fs::create_directories(desktop->home() / folder);
        desktop->startApplication();
    }

    /// The cards of the banners, the highest first.
    [[nodiscard]] std::vector<Rect> cards() {
        std::vector<Rect> result;
        for (const Banner& banner : desktop->screen().banners())
            result.push_back(banner.card);
        return result;
    }

    void alert(const std::string& project) {
        desktop->claude("Notification-permission_prompt", project, project, {"TERM_PROGRAM="});
    }

    void goToTerminal(const std::string& project) {
        desktop->pointAway();
        alert(project);
        ASSERT_TRUE(waitUntil(10s, [&] { return desktop->screen().banners().size() == 1; }));
        desktop->click(primaryButton(desktop->screen().banners().front()));
        EXPECT_TRUE(waitUntil(10s, [&] { return desktop->screen().banners().empty(); }));
    }

    std::unique_ptr<DesktopSession> desktop;
    std::vector<std::unique_ptr<ChildProcess>> programs;
};

class Sway : public WaylandSession {
  protected:
    void SetUp() override {
        if (!canStartSway())
            GTEST_SKIP() << "root cannot become an ordinary user here, and sway refuses root";
        begin("sway");
    }

    /// Runs a command of sway's.
    void command(const std::string& text) {
        EXPECT_EQ(desktop->run({"swaymsg", text}, "swaymsg")->wait(10s), 0) << text;
    }

    /// What sway reports to a query.
    [[nodiscard]] QJsonDocument query(const std::string& what) {
        EXPECT_EQ(
            desktop->run({"sh", "-c", "swaymsg -r -t " + what + " >\"$HOME/reply\""}, "swaymsg")->wait(10s),
            0);
        const std::string bytes = fileBytes(desktop->home() / "reply").value_or("");
        return QJsonDocument::fromJson(QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size())));
    }

    /// The process of the focused window; 0 where none has the focus.
    [[nodiscard]] pid_t focused() {
        std::vector<QJsonObject> nodes{query("get_tree").object()};
        while (!nodes.empty()) {
            const QJsonObject node = nodes.back();
            nodes.pop_back();
            if (node["focused"].toBool()) return static_cast<pid_t>(node["pid"].toInt());
            for (const char* const list : {"nodes", "floating_nodes"}) {
                for (const QJsonValue child : node[list].toArray())
                    nodes.push_back(child.toObject());
            }
        }
        return 0;
    }

    /// The name of the workspace that has the focus.
    [[nodiscard]] std::string workspace() {
        for (const QJsonValue space : query("get_workspaces").array()) {
            if (space["focused"].toBool()) return space["name"].toString().toStdString();
        }
        return {};
    }

    /// The upper edge of an output's work area, in logical pixels; -1 without such an output.
    [[nodiscard]] int freeTop(const QString& output = QStringLiteral("HEADLESS-1")) {
        for (const QJsonValue space : query("get_workspaces").array()) {
            if (space["output"].toString() == output && space["visible"].toBool())
                return space["rect"].toObject()["y"].toInt();
        }
        return -1;
    }

    /// A native terminal with a shell command in it, which gets the focus.
    ChildProcess& openFoot(const std::string& shellCommand) {
        programs.push_back(desktop->run({"foot", "-c", "/dev/null", "sh", "-c", shellCommand}, "foot"));
        ChildProcess& foot = *programs.back();
        EXPECT_TRUE(waitUntil(20s, [&] { return focused() == foot.id(); })) << "no window of foot";
        return foot;
    }
};

TEST_F(Sway, theJumpActivatesTheAgentsNativeTerminalOnItsWorkspace) {
    const ChildProcess& shop = openFoot("cd shop && exec ../bin/claude");
    const ChildProcess& blog = openFoot("cd blog && exec ../bin/claude");
    ASSERT_TRUE(waitUntil(20s, [&] { return desktop->running("claude") == 2; }));
    command("workspace 2");
    openFoot("exec cat");
    goToTerminal("shop");
    EXPECT_TRUE(waitUntil(10s, [&] { return focused() == shop.id(); }));
    EXPECT_EQ(workspace(), "1");
    goToTerminal("blog");
    EXPECT_TRUE(waitUntil(10s, [&] { return focused() == blog.id(); }));
    EXPECT_EQ(desktop->applicationOutput(), "");
}

TEST_F(Sway, bannersAvoidTheBarOfTheFocusedOutput) {
    constexpr int margin = 8;
    constexpr Rect size{0, 0, 520, 96};
    const auto place = [&](int left, int width, int barHeight) {
        return Rect{left + (width - size.width) / 2, barHeight + margin, size.width, size.height};
    };
    ASSERT_TRUE(waitUntil(10s, [&] { return freeTop() > 0; })) << "there should be a bar";
    const int barHeight = freeTop();
    alert("shop");
    EXPECT_TRUE(waitUntil(10s, [&] { return cards() == std::vector<Rect>{place(0, 1280, barHeight)}; }));

    command("create_output");
    command("output HEADLESS-2 resolution 1000x700 position 1280 0");
    command("focus output HEADLESS-2");
    ASSERT_TRUE(waitUntil(10s, [&] { return freeTop("HEADLESS-2") == barHeight; }));
    alert("blog");
    const Rect second = place(1280, 1000, barHeight);
    EXPECT_TRUE(waitUntil(10s, [&] { return !cards().empty() && cards()[0] == second; }));

    // The bar is hidden while banners are shown; the next one takes the freed place.
    command("bar bar-0 mode invisible");
    ASSERT_TRUE(waitUntil(10s, [&] { return freeTop("HEADLESS-2") == 0; }));
    alert("third");
    EXPECT_TRUE(waitUntil(10s, [&] { return !cards().empty() && cards()[0] == place(1280, 1000, 0); }));
}

TEST_F(Sway, bannersAvoidTheBarOfAScaledOutput) {
    command("output HEADLESS-1 scale 1.5");
    const auto screen = [this] { return XObserver(desktop->display()).screenArea(); };
    ASSERT_TRUE(waitUntil(10s, [&] { return screen().width < 1280; }));
    // The bar's height in logical pixels does not depend on the scale.
    ASSERT_TRUE(waitUntil(10s, [&] { return freeTop() > 0; }));
    const int barHeight = freeTop();
    alert("shop");
    EXPECT_TRUE(waitUntil(10s, [&] { return cards().size() == 1 && cards()[0].y == barHeight + 8; }));
    // Until 22, XWayland rounded the width of a mode down to a multiple of 8.
    const int width = screen().width;
    EXPECT_THAT(cards().at(0).middleX(), testing::AnyOf((width - width % 8) / 2, width / 2));
}

TEST_F(Sway, aJumpThatFindsNothingShowsANotice) {
    ChildProcess& other = openFoot("exec cat");
    goToTerminal("shop");
    ASSERT_TRUE(waitUntil(10s, [&] { return desktop->screen().menus().size() == 1; }));
    EXPECT_TRUE(waitUntil(10s, [&] { return desktop->screen().menus().empty(); }));
    EXPECT_EQ(focused(), other.id());
}

/// Needs what ./test --desktops installs.
class WaylandKWin : public WaylandSession {
  protected:
    void SetUp() override {
        const std::vector<std::string> managers = windowManagers();
        if (std::find(managers.begin(), managers.end(), "kwin_x11") == managers.end())
            GTEST_SKIP() << "KWin is not among the window managers to test under";
        begin("kwin_wayland");
    }

    /// The process of the active window, which a script in KWin prints; 0 where there is none.
    [[nodiscard]] pid_t active() {
        const std::string mark = "active " + std::to_string(++scripts) + " ";
        writeFile(desktop->home() / "active.js",
                  "var w = workspace.activeWindow || workspace.activeClient; print('" + mark +
                      "' + (w ? w.pid : 0) + ';');");
        const std::string call = "gdbus call --session --dest org.kde.KWin --object-path ";
        EXPECT_EQ(desktop
                      ->run({"sh", "-c",
                             "n=$(" + call + "/Scripting --method org.kde.kwin.Scripting.loadScript " +
                                 "\"$HOME/active.js\" " + std::to_string(scripts) + " | tr -dc 0-9) && { " +
                                 call + "/$n --method org.kde.kwin.Script.run || " + call +
                                 "/Scripting/Script$n --method org.kde.kwin.Script.run; }"},
                            "gdbus")
                      ->wait(10s),
                  0);
        std::string output;
        std::size_t at = std::string::npos;
        EXPECT_TRUE(waitUntil(10s, [&] {
            output = desktop->windowManagerOutput();
            at = output.find(mark);
            return at != std::string::npos && output.find(';', at) != std::string::npos;
        })) << output;
        return at == std::string::npos ? 0 : static_cast<pid_t>(std::stol(output.substr(at + mark.size())));
    }

    /// A native terminal with a shell command in it, which becomes active.
    ChildProcess& openTerminal(const std::string& shellCommand) {
        programs.push_back(desktop->run({"qterminal", "-e", "sh", "-c", shellCommand}, "qterminal",
                                        {"QT_QPA_PLATFORM=wayland"}));
        ChildProcess& terminal = *programs.back();
        EXPECT_TRUE(waitUntil(20s, [&] { return active() == terminal.id(); })) << "no window of the terminal";
        return terminal;
    }

    int scripts = 0;
};

TEST_F(WaylandKWin, theJumpActivatesTheAgentsNativeTerminal) {
    const std::string folder = desktop->home().string();
    const ChildProcess& shop = openTerminal("cd " + folder + "/shop && exec ../bin/claude");
    const ChildProcess& blog = openTerminal("cd " + folder + "/blog && exec ../bin/claude");
    ASSERT_TRUE(waitUntil(20s, [&] { return desktop->running("claude") == 2; }));
    openTerminal("exec cat");
    goToTerminal("shop");
    EXPECT_TRUE(waitUntil(10s, [&] { return active() == shop.id(); }));
    goToTerminal("blog");
    EXPECT_TRUE(waitUntil(10s, [&] { return active() == blog.id(); }));
    EXPECT_EQ(desktop->applicationOutput(), "");
}

} // namespace

} // namespace corvane::test

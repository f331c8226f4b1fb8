// The tray icon as hosts of StatusNotifierItems see it, and the panel and menu that they ask for.

#include "Connection/AgentConnector.h"
#include "Desktop/Support/DesktopSession.h"
#include "Desktop/Support/SidePanel.h"
#include "Desktop/Tray/NotifierHost.h"
#include "Support/Date.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace corvane::test {
namespace {

using namespace std::chrono_literals;

class NotifierIcon : public testing::Test {
  protected:
    void SetUp() override {
        const AgentConnector connector(desktop.home());
        ASSERT_EQ(
            connector.connect(AgentKind::claude, Date::fromSystemClock(std::chrono::system_clock::now())),
            std::nullopt);
    }

    void start(const std::string& desktopName = {}, std::vector<std::string> variables = {}) {
        host.start();
        variables.push_back("XDG_CURRENT_DESKTOP=" + desktopName);
        desktop.startApplication(variables);
        ASSERT_TRUE(isRegistered());
    }

    static bool eventually(const std::function<bool()>& condition) {
        return waitUntil(20s, [&] {
            QCoreApplication::processEvents();
            return condition();
        });
    }
    [[nodiscard]] bool isRegistered() {
        return eventually([this] { return host.items().size() == 1; });
    }

    [[nodiscard]] std::vector<std::uint32_t> windows() { return desktop.screen().managedWindows("corvane"); }
    /// The open panel's card without its shadow, once it stays at its place.
    [[nodiscard]] std::optional<Rect> panel() {
        Rect whole;
        int looks = 0;
        if (!eventually([&] {
                const auto present = windows();
                const Rect now = present.size() == 1 ? desktop.screen().geometry(present.front()) : Rect();
                looks = now.width > 300 && now == whole ? looks + 1 : 0;
                whole = now;
                return looks == 20;
            }))
            return std::nullopt;
        return Rect{whole.x + 24, whole.y + 16, whole.width - 48, whole.height - 48};
    }
    /// Whether the panel is left out of task bars, within the time limit.
    [[nodiscard]] bool isLeftOut() {
        return eventually([this] {
            const auto present = windows();
            return present.size() == 1 && desktop.screen().isLeftOutOfTaskBars(present.front());
        });
    }
    /// Whether a bar of this height reserves the upper edge.
    [[nodiscard]] bool hasBar(int height) {
        return eventually([this, height] { return desktop.screen().workArea().y == height; });
    }

    std::string text(const char* property) { return host.property(property).toString().toStdString(); }

    DesktopSession desktop;
    NotifierHost host{"unix:path=" + (desktop.home().parent_path() / "run/bus").string()};
};

TEST_F(NotifierIcon, asksForAttentionWhileSomethingWaits) {
    start();
    EXPECT_EQ(text("Status"), "Active");
    EXPECT_EQ(text("Category"), "ApplicationStatus");
    EXPECT_FALSE(host.property("ItemIsMenu").toBool());
    desktop.claude("Notification-permission_prompt", "a", "shop");
    EXPECT_TRUE(eventually([this] { return text("Status") == "NeedsAttention"; }));
    EXPECT_EQ(text("AttentionAccessibleDesc"), "1 agent waiting for you");
    desktop.claude("UserPromptSubmit", "a", "shop");
    EXPECT_TRUE(eventually([this] { return text("Status") == "Active"; }));
}

TEST_F(NotifierIcon, namesADrawingForEachNumberIfTheBarFillsIt) {
    start("KDE");
    const auto file = [this](const char* size) {
        return std::filesystem::path(text("IconThemePath")) / "hicolor" / size / "status" /
               (text("IconName") + ".svg");
    };
    EXPECT_EQ(text("IconName"), "corvane-bell-symbolic");
    for (const char* const size : {"16x16", "22x22", "24x24", "scalable"})
        EXPECT_TRUE(std::filesystem::exists(file(size))) << file(size);
    desktop.claude("Notification-permission_prompt", "a", "shop");
    desktop.claude("Notification-permission_prompt", "b", "shop");
    EXPECT_TRUE(eventually([this] { return text("IconName") == "corvane-bell-2-symbolic"; }));
    EXPECT_EQ(text("AttentionIconName"), "corvane-bell-2-symbolic");
    EXPECT_TRUE(std::filesystem::exists(file("22x22")));
}

TEST_F(NotifierIcon, namesNoFolderWhereDesktopsLookForIconsAnyway) {
    const std::filesystem::path prefix = std::filesystem::path(CORVANE_PROGRAM).parent_path().parent_path();
    start("KDE", {"XDG_DATA_DIRS=/usr/share:" + (prefix / "share").string()});
    EXPECT_EQ(text("IconName"), "corvane-bell-symbolic");
    EXPECT_EQ(text("IconThemePath"), "");
}

/// The opaque pixels of the picture of this side: how many have the colour.
int pixels(const std::vector<NotifierHost::Picture>& pictures, int side, Color color) {
    int found = 0;
    for (const NotifierHost::Picture& picture : pictures) {
        if (picture.side != side || picture.pixels.size() != qsizetype{side} * side * 4) continue;
        for (qsizetype i = 0; i < picture.pixels.size(); i += 4) {
            const auto byte = [&](qsizetype at) {
                return static_cast<std::uint32_t>(static_cast<std::uint8_t>(picture.pixels.at(i + at)));
            };
            if (byte(0) == 0xFF && (byte(1) << 16 | byte(2) << 8 | byte(3)) == color.rgb) ++found;
        }
    }
    return found;
}

TEST_F(NotifierIcon, isAPictureForTheBarThatTheScreenShowsElsewhere) {
    // Dark, on a light desktop.
    const SidePanel bar(desktop.display(), {0, 0, 1280, 30});
    ASSERT_TRUE(hasBar(30));
    start("LXQt");
    EXPECT_EQ(text("IconName"), "");
    for (const int side : {16, 22, 24, 32, 48, 64})
        EXPECT_GT(pixels(host.pictures("IconPixmap"), side, {0x1D1D1F}) +
                      pixels(host.pictures("IconPixmap"), side, {0xF2F2F7}),
                  side / 2)
            << side;
    EXPECT_TRUE(eventually([this] { return pixels(host.pictures("IconPixmap"), 22, {0xF2F2F7}) > 11; }))
        << "the bar is dark";
    desktop.claude("Notification-permission_prompt", "a", "shop");
    EXPECT_TRUE(eventually([this] {
        return pixels(host.pictures("AttentionIconPixmap"), 22, {0xFFC15A}) > 20;
    })) << "with its badge";
}

TEST_F(NotifierIcon, samplesTheBarOnceNoWindowCoversIt) {
    const SidePanel bar(desktop.display(), {0, 0, 1280, 30});
    ASSERT_TRUE(hasBar(30));
    {
        const auto video = desktop.run({"xterm", "-bg", "white", "-fullscreen", "-e", "cat"}, "video");
        // It covers the bar, also in the window manager's stacking order.
        ASSERT_TRUE(eventually([this] {
            const auto terminals = desktop.screen().managedWindows("xterm");
            return terminals.size() == 1 && desktop.screen().activeWindow() == terminals.front() &&
                   desktop.screen().geometry(terminals.front()) == desktop.screen().screenArea() &&
                   desktop.screen().screen({640, 15, 1, 1}).at(0, 0) == Color{0xFFFFFF};
        }));
        start("LXQt");
        waitUntil(3s, [] {
            QCoreApplication::processEvents();
            return false;
        });
        EXPECT_EQ(pixels(host.pictures("IconPixmap"), 22, {0xF2F2F7}), 0);
    }
    EXPECT_TRUE(eventually([this] { return pixels(host.pictures("IconPixmap"), 22, {0xF2F2F7}) > 11; }));
}

TEST_F(NotifierIcon, samplesTheBarAboveAnActiveDesktopWindow) {
    const SidePanel bar(desktop.display(), {0, 0, 1280, 30});
    ASSERT_TRUE(hasBar(30));
    const SidePanel background(desktop.display(), desktop.screen().screenArea(), SidePanel::Type::desktop);
    ASSERT_TRUE(eventually([this] {
        desktop.click({600, 400, 2, 2});
        const auto active = desktop.screen().activeWindow();
        return active != 0 && desktop.screen().geometry(active) == desktop.screen().screenArea();
    }));
    start("LXQt");
    EXPECT_TRUE(eventually([this] { return pixels(host.pictures("IconPixmap"), 22, {0xF2F2F7}) > 11; }));
}

TEST_F(NotifierIcon, theToolTipsFurtherLinesAreItsText) {
    start();
    EXPECT_EQ(host.toolTip(), "Corvane");
    EXPECT_EQ(host.toolTipText(), "");
    ASSERT_TRUE(host.choose("Quiet for 1 hour"));
    EXPECT_TRUE(eventually([this] { return host.toolTipText().starts_with("Quiet until "); }));
    EXPECT_EQ(host.toolTip(), "Corvane");
}

TEST_F(NotifierIcon, thePanelOpensWhereTheHostReportsTheClick) {
    start();
    host.activate(500, 790);
    const std::optional<Rect> card = panel();
    ASSERT_TRUE(card);
    EXPECT_NEAR(card->middleX(), 500, 1);
    EXPECT_GT(card->y + card->height, 760);
    EXPECT_LE(card->y + card->height, 778) << "it keeps clear of the icon";
    EXPECT_TRUE(isLeftOut());
    // Each time.
    host.activate(500, 790);
    ASSERT_TRUE(eventually([this] { return windows().empty(); }));
    host.activate(300, 10);
    const std::optional<Rect> upper = panel();
    ASSERT_TRUE(upper);
    EXPECT_NEAR(upper->middleX(), 300, 1);
    EXPECT_LT(upper->y, 40);
    EXPECT_TRUE(isLeftOut());
}

TEST_F(NotifierIcon, thePanelOpensInTheBarsCornerIfTheHostReportsNoPlace) {
    const SidePanel bar(desktop.display(), {0, 0, 1280, 40});
    ASSERT_TRUE(hasBar(40));
    start();
    desktop.point({400, 500, 2, 2});
    host.activate(0, 0);
    const std::optional<Rect> card = panel();
    ASSERT_TRUE(card);
    EXPECT_EQ(card->x + card->width, 1280 - 4);
    EXPECT_EQ(card->y, 40 + 4);
}

TEST_F(NotifierIcon, aHostWithoutMenusGetsOursAtTheClickAndThePanelCloses) {
    start();
    host.activate(500, 300);
    ASSERT_TRUE(panel());
    host.requestMenu(500, 300);
    ASSERT_TRUE(eventually([this] { return desktop.screen().menus().size() == 1; }));
    EXPECT_TRUE(eventually([this] {
        const std::vector<Rect> menus = desktop.screen().menus();
        if (menus.size() != 1) return false;
        const Rect menu = menus.front();
        return menu.x <= 500 && 500 <= menu.x + menu.width && menu.y <= 300 && 300 <= menu.y + menu.height;
    }));
    EXPECT_TRUE(eventually([this] { return windows().empty(); }));
}

TEST_F(NotifierIcon, namesInTheMenuAreNoMnemonics) {
    start();
    desktop.claude("Notification-permission_prompt", "a", "my_old_shop");
    EXPECT_TRUE(eventually([this] {
        const auto entries = host.menu();
        return std::any_of(entries.begin(), entries.end(), [](const NotifierHost::Entry& entry) {
            return entry.label.find("my__old__shop") != std::string::npos;
        });
    }));
}

TEST_F(NotifierIcon, movesFromATrayThatEmbedsItToAHostThatStartsLater) {
    const auto trayer = desktop.run({"trayer", "--edge", "top", "--align", "right", "--widthtype", "pixel",
                                     "--width", "120", "--height", "24", "--SetDockType", "true"},
                                    "trayer");
    const auto isEmbedded = [this] {
        const Picture screen = desktop.screen().screen({1100, 0, 180, 26});
        for (int y = 0; y < screen.height; ++y) {
            for (int x = 0; x < screen.width; ++x) {
                if (screen.at(x, y).isNear({0x1D1D1F}, 3)) return true;
            }
        }
        return false;
    };
    desktop.startApplication();
    ASSERT_TRUE(eventually(isEmbedded));
    host.start();
    EXPECT_TRUE(isRegistered());
    EXPECT_TRUE(eventually([&] { return !isEmbedded(); }));
    host.stop();
    EXPECT_TRUE(eventually(isEmbedded)) << "and back";
}

TEST_F(NotifierIcon, registersAgainAtAWatcherThatDropsItButNotForever) {
    start();
    for (int drop = 0; drop < 3; ++drop) {
        host.drop();
        ASSERT_TRUE(isRegistered()) << drop;
    }
    host.drop();
    EXPECT_FALSE(waitUntil(3s, [this] {
        QCoreApplication::processEvents();
        return !host.items().empty();
    })) << "a watcher that does not want it is left alone";
    host.stop();
    host.start();
    EXPECT_TRUE(isRegistered()) << "another watcher";
}

TEST_F(NotifierIcon, withoutATrayAStartByHandOpensTheMainWindow) {
    desktop.startApplication({}, DesktopSession::Start::byHand);
    EXPECT_TRUE(windows().empty());
    ASSERT_TRUE(eventually([this] { return windows().size() == 1; }));
    EXPECT_GT(desktop.screen().geometry(windows().front()).width, 500);
}

TEST_F(NotifierIcon, withoutATrayTheStartAtLoginOpensNothing) {
    desktop.startApplication();
    EXPECT_TRUE(desktop.staysEmpty(7s));
}

} // namespace
} // namespace corvane::test

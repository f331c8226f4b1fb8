// An agent that exists only in the tests, from its descriptor to everything that users see of it.

#include "Agents/EventPayload.h"
#include "Agents/HookScript.h"
#include "App/Support/AppModelSupport.h"
#include "BannerViews.h"
#include "Controls/AgentGlyph.h"
#include "Controls/Paragraph.h"
#include "MenuBar/SessionList.h"
#include "MenuBar/TrayMenu.h"
#include "MenuBarView.h"
#include "OnboardingView.h"
#include "Settings/AgentCard.h"
#include "Settings/AgentsTab.h"
#include "SettingsView.h"
#include "Support/HookRunner.h"

#include <array>

namespace corvane {
namespace {

// The descriptor

constexpr std::array<std::string_view, 4> payloadNames{"state", "session", "folder", "text"};

std::optional<AgentReport> report(const EventPayload& payload) {
    const std::string state = payload.string("state").value_or("");
    const bool asks = state == "asks";
    const bool works = state == "works";
    if (!asks && !works && state != "done") return std::nullopt;
    return AgentReport{asks    ? EventKind::needsInput
                       : works ? EventKind::running
                               : EventKind::finished,
                       payload.string("session"), payload.string("folder").value_or(""),
                       payload.string("text").value_or("")};
}

bool canHoldPath(std::string_view path) {
    return path.find('\n') == std::string_view::npos;
}

std::string uninstall(std::string_view hooks) {
    std::string kept;
    while (!hooks.empty()) {
        const std::string_view line = hooks.substr(0, hooks.find('\n') + 1);
        if (line.find(HookScript::marker) == std::string_view::npos) kept += line;
        hooks.remove_prefix(line.size());
    }
    return kept;
}

std::string install(std::optional<std::string_view> hooks, const CorvanePaths& paths);

bool isInstalled(std::string_view hooks) {
    return hooks.find(HookScript::marker) != std::string_view::npos;
}

constinit const AgentDescriptor gullDescriptor{
    .rawValue = "gull",
    .displayName = "Gull",
    .badge = "G",

    .payloadNames = payloadNames,
    .report = report,
    .minWorkForDoneAlert = Seconds(5),

    .configFile = ".gull/hooks",
    .canHoldPath = canHoldPath,
    .install = install,
    .uninstall = uninstall,
    .isInstalled = isInstalled,

    .cardTitle = {"Gull", "Gull Agent"},
    .cardOffer = {"Gull", "Adds one line to %1."},
    .cardSummary = {"Gull", "Alerts when Gull asks or finishes. %1"},
    .cardRunningAgents = {"Gull", "Gulls that fly already report too."},
};

constexpr AgentKind gull(gullDescriptor);
constexpr std::array agents{AgentKind::claude, AgentKind::codex, gull};

std::string install(std::optional<std::string_view> hooks, const CorvanePaths& paths) {
    return uninstall(hooks.value_or("")) + HookScript::command(gull, paths) + '\n';
}

// Its effects

class ThirdAgent : public test::AppModelTest {
  protected:
    ThirdAgent() {
        test::writeFile(claudeFile_, claudeBytes);
        test::writeFile(codexFile_, codexBytes);
        model_.emplace(AgentConnector(home_.path(), paths_), defaults_, banners_, platform_.services(),
                       agents);
        pass();
    }

    /// Makes the agent run the only line of its configuration, as it does when something happens.
    void reports(const std::string& payload) {
        const std::string line = test::fileBytes(gullFile_).value_or("exit 1");
        test::HookRunner runner(scratch_.path());
        EXPECT_EQ(runner.run({{"/bin/sh", "-c", line}, payload, {{"HOME", home_.path().string()}}}),
                  (test::Outcome{0, "", ""}));
        for (const auto& file : std::filesystem::directory_iterator(paths_.events()))
            test::setModificationDate(file.path(), platform_.time.now());
        pass();
    }

    static QAbstractButton& button(const QWidget& view, const char* text) {
        for (auto* const button : view.findChildren<QAbstractButton*>()) {
            if (button->text() == QLatin1String(text) && !button->isHidden()) return *button;
        }
        throw std::runtime_error(std::string("no button ") + text);
    }

    static std::vector<std::string> texts(const AgentCard& card) {
        std::vector<std::string> result{card.findChild<AgentGlyph*>()->letter().toStdString()};
        for (const auto* const paragraph : card.findChildren<Paragraph*>()) {
            if (!paragraph->isHidden()) result.push_back(paragraph->text().toStdString());
        }
        return result;
    }

    void expectOthersUntouched() const {
        EXPECT_EQ(test::fileBytes(claudeFile_), claudeBytes);
        EXPECT_EQ(test::fileBytes(codexFile_), codexBytes);
        // No backups either, which would reveal a change that was reverted.
        for (const std::filesystem::path& file : {claudeFile_, codexFile_}) {
            const std::filesystem::directory_iterator folder(file.parent_path());
            EXPECT_EQ(std::distance(begin(folder), end(folder)), 1) << file;
        }
    }

    static constexpr const char* claudeBytes = "{\"hooks\": {},\n \"model\": \"opus\"}";
    static constexpr const char* codexBytes = "model = \"o3\"\n";
    test::ScratchFolder scratch_;
    std::filesystem::path claudeFile_ = home_ / ".claude/settings.json";
    std::filesystem::path codexFile_ = home_ / ".codex/config.toml";
    std::filesystem::path gullFile_ = home_ / ".gull/hooks";
};

TEST_F(ThirdAgent, isConnectedAndRemovedByItsCardInItsOwnFileOnly) {
    test::writeFile(gullFile_, "a line of the user's\n");
    const OnboardingView view(model(), [](const QUrl& /*url*/) {});
    const QList<AgentCard*> cards = view.findChildren<AgentCard*>();
    ASSERT_EQ(cards.size(), 3);
    EXPECT_EQ(cards[0]->agent(), AgentKind::claude);
    EXPECT_EQ(cards[1]->agent(), AgentKind::codex);
    EXPECT_EQ(texts(*cards[2]),
              (std::vector<std::string>{"G", "Gull Agent", "Adds one line to ~/.gull/hooks."}));

    button(*cards[2], "Connect").click();
    EXPECT_EQ(model().connectError(), std::nullopt);
    EXPECT_EQ(test::fileBytes(gullFile_),
              "a line of the user's\n\"" + paths_.hookScript().string() + "\" gull\n");
    EXPECT_EQ(model().connected(), (std::unordered_map<AgentKind, bool>{
                                       {AgentKind::claude, false}, {AgentKind::codex, false}, {gull, true}}));
    EXPECT_EQ(texts(*cards[2]),
              (std::vector<std::string>{"G", "Gull Agent", "Alerts when Gull asks or finishes. ~/.gull/hooks",
                                        "Gulls that fly already report too.", "Connected"}));
    ASSERT_TRUE(model().lastBackup().has_value());
    EXPECT_EQ(model().lastBackup()->parent_path(), gullFile_.parent_path());
    expectOthersUntouched();

    button(*cards[2], "Remove").click();
    EXPECT_EQ(test::fileBytes(gullFile_), "a line of the user's\n");
    EXPECT_FALSE(model().connected().at(gull));
    expectOthersUntouched();
}

TEST_F(ThirdAgent, isLeftAloneWhenTheOthersAreConnected) {
    test::writeFile(gullFile_, "a line of the user's\n");
    model().connectAgent(AgentKind::claude);
    model().connectAgent(AgentKind::codex);
    EXPECT_TRUE(model().connected().at(AgentKind::claude));
    EXPECT_TRUE(model().connected().at(AgentKind::codex));
    EXPECT_FALSE(model().connected().at(gull));
    EXPECT_EQ(test::fileBytes(gullFile_), "a line of the user's\n");
}

TEST_F(ThirdAgent, hasACardInTheSettingsThatFits) {
    SettingsView view(
        model(), platform_.fileBrowser, [] { return true; }, [](const QUrl& /*url*/) {});
    view.resize(SettingsView::contentSize);
    (void)view.grab(); // lays out what is not shown
    auto* const tab = view.findChild<AgentsTab*>();
    const QList<AgentCard*> cards = tab->findChildren<AgentCard*>();
    ASSERT_EQ(cards.size(), 3);
    EXPECT_EQ(cards[2]->agent(), gull);
    EXPECT_GT(cards[2]->y(), cards[1]->geometry().bottom());
    EXPECT_TRUE(tab->rect().contains(button(*tab, "Try a test alert").geometry()));
}

TEST_F(ThirdAgent, reportsThroughItsHookLineAndAppearsOnBannerPanelAndMenu) {
    model().connectAgent(gull);
    reports(R"({"state": "asks", "session": "s1", "folder": "/w/shop", "text": "Deploy now?"})");

    ASSERT_EQ(model().board().sessions().size(), 1U);
    const AgentSession session = model().board().sessions().front();
    EXPECT_EQ(session.agent, gull);
    EXPECT_EQ(session.id(), "gull:s1");
    EXPECT_EQ(session.status, SessionStatus::waiting(EventKind::needsInput, session.lastEvent));

    ASSERT_EQ(visible(), 1U);
    const QWidget& banner = *platform_.panels.visible().front()->content;
    EXPECT_EQ(banner.accessibleName().toStdString(), "Gull is waiting for your reply, shop · Deploy now?");
    EXPECT_EQ(banner.findChild<AgentGlyph*>()->letter().toStdString(), "G");
    EXPECT_EQ(banner.findChild<AgentGlyph*>()->accessibleName().toStdString(), "Gull");

    const MenuBarView panel(model(), {[] {}, [](const QUrl& /*url*/) {}, [] {}});
    const std::vector<SessionRow*>& rows = panel.findChild<SessionList*>()->rows();
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows.front()->spokenText().toStdString(), "shop, Gull, Waiting for your reply · 0:01");

    const TrayMenu menu(model(), {[] {}, [] {}, [] {}});
    EXPECT_EQ(menu.actions().at(3)->text().toStdString(),
              "\u2068shop\u2069 · Gull · Waiting for your reply · 0:01");

    // The terminal is searched for by the program's name.
    button(banner, "Go to Terminal").click();
    EXPECT_EQ(platform_.applications.searched,
              (std::vector<std::pair<std::string, std::string>>{{"gull", "/w/shop"}}));
}

TEST_F(ThirdAgent, alertsToAFinishAfterItsOwnMinimumWork) {
    model().connectAgent(gull);
    const auto finishesAfter = [this](int seconds) {
        reports(R"({"state": "works", "session": "s1", "folder": "/w/shop"})");
        pass(seconds - 1);
        reports(R"({"state": "done", "session": "s1"})");
    };
    finishesAfter(4);
    EXPECT_EQ(visible(), 0U);
    finishesAfter(5);
    ASSERT_EQ(visible(), 1U);
    EXPECT_EQ(platform_.panels.visible().front()->content->accessibleName().toStdString(),
              "Gull finished, shop");
}

TEST_F(ThirdAgent, isIgnoredByAnInboxThatDoesNotKnowIt) {
    const std::string file = "corvane-event 1\nsource=gull\n---\n{\"state\": \"done\"}\n";
    EXPECT_EQ(AgentEvent::parse(file, Date()), std::nullopt);
    const std::optional<AgentEvent> event = AgentEvent::parse(file, Date(), agents);
    ASSERT_TRUE(event.has_value());
    EXPECT_EQ(event->source, gull);
    EXPECT_EQ(event->kind, EventKind::finished);
}

} // namespace
} // namespace corvane

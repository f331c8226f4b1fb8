// Many agents, and a user who responds to them, for a long time through the real inbox folder, with the clock
// running as fast as it can: after every pass the board must equal the naive implementation of its rules, and
// in the end the process must be no larger than after its first tenth.
//
// CORVANE_SOAK_EVENTS sets how many events the agents send; a million are a fortnight of twenty agents.

#include "App/Support/AppModelSupport.h"
#include "BannerViews.h"
#include "BoardDescription.h"
#include "MenuBar/TrayMenu.h"
#include "MenuBarView.h"

#include <QApplication>
#include <QCoreApplication>
#include <QEvent>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <random>
#include <string>
#include <unistd.h>
#include <vector>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using test::buttonOf;
using test::date;
using test::described;
using test::NaiveBoard;
using test::NaiveEvent;
using test::Nanoseconds;

constexpr std::int64_t shortRun = 2'500;
constexpr std::int64_t warmUp = 100'000; // events
constexpr int agentCount = 20;
constexpr std::size_t backlog = 200;

std::int64_t wantedEvents() {
    const char* const wanted = std::getenv("CORVANE_SOAK_EVENTS");
    return wanted == nullptr ? shortRun : std::strtoll(wanted, nullptr, 10);
}

/// What must not grow.
struct Usage {
    double mebibytes = 0; // resident
    std::int64_t descriptors = 0;
    std::int64_t widgets = 0;
};

Usage usage() {
    Usage now;
    std::int64_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages >> pages;
    now.mebibytes = static_cast<double>(pages * sysconf(_SC_PAGESIZE)) / (1 << 20);
    now.descriptors = std::distance(fs::directory_iterator("/proc/self/fd"), {});
    now.widgets = QApplication::allWidgets().size();
    return now;
}

/// One agent: what it is doing, and what it does next.
struct Agent {
    std::string kind;
    std::string sessionID;
    std::string state = "new";
};

class SoakTest : public test::AppModelTest {
  protected:
    SoakTest() {
        for (int i = 0; i < agentCount; ++i)
            agents_.push_back({i % 4 == 0 ? "codex" : "claude", newSessionID(), "new"});
    }

    std::size_t below(std::size_t count) { return static_cast<std::size_t>(engine_() % count); }
    bool isChance(std::size_t in) { return below(in) == 0; }
    std::string newSessionID() { return "session-" + std::to_string(++sessionCount_); }

    /// The next event of an agent, with a payload as it would write it.
    void send(std::size_t number) {
        Agent& agent = agents_[number];
        NaiveEvent event;
        event.agent = agent.kind;
        event.sessionID = agent.sessionID;
        event.cwd = isChance(20) ? "" : "/home/you/project-" + std::to_string(number % 7);
        event.program = isChance(3) ? "" : "ghostty";
        std::string payload;
        if (agent.kind == "codex") {
            event.kind = "finished";
            event.message = words();
            payload = R"({"type":"agent-turn-complete","thread-id":")" + event.sessionID +
                      R"(","last-assistant-message":")" + event.message + '"';
        } else {
            payload = claudePayload(agent, event);
        }
        write(event, payload + R"(,"cwd":")" + event.cwd + "\"}");
        if (event.kind == "ended" || (agent.kind == "codex" && isChance(50)))
            agent = {agent.kind, newSessionID(), "new"};
    }

    std::string claudePayload(Agent& agent, NaiveEvent& event) {
        std::string name = "PostToolUse";
        std::string type;
        event.kind = "running";
        if (agent.state == "new" || agent.state == "finished") {
            name = isChance(12) ? "SessionEnd" : "UserPromptSubmit";
            agent.state = "works";
        } else if (agent.state == "asks") {
            name = isChance(10) ? "Notification" : isChance(15) ? "SessionEnd" : "PostToolUse";
            agent.state = "works";
        } else if (isChance(6)) {
            name = "Notification";
        } else if (isChance(8)) {
            name = "Stop";
            agent.state = "finished";
        }
        if (name == "SessionEnd") event.kind = "ended";
        if (name == "Stop") event.kind = "finished";
        if (name == "Notification") {
            agent.state = "asks";
            type = isChance(3) ? "idle_prompt" : "permission_prompt";
            event.kind = type == "idle_prompt" ? "needsInput" : "needsPermission";
        }
        event.message = isChance(4) ? "" : words();
        return R"({"hook_event_name":")" + name + R"(","session_id":")" + event.sessionID +
               R"(","notification_type":")" + type + R"(","message":")" + event.message + '"';
    }

    std::string words() {
        static constexpr std::array texts{"Claude needs your permission to use Bash",
                                          "Claude is waiting for your input", "Which colour?",
                                          "Ünïcödé 👩‍👩‍👧 text", "Done."};
        std::string text = texts.at(below(texts.size()));
        if (isChance(100)) text.append(below(10'000), 'x');
        return text;
    }

    /// As a hook does. Every file has a date of its own.
    void write(NaiveEvent& event, const std::string& payload) {
        event.date = std::max(test::nanoseconds(platform_.time.now()), lastDate_ + 1);
        lastDate_ = event.date;
        const fs::path hidden = paths_.events() / ".new.tmp";
        test::writeFile(hidden, "corvane-event 1\nsource=" + event.agent + "\nterm=" + event.program +
                                    "\nbundle=\n---\n" + payload);
        test::setModificationDate(hidden, date(event.date));
        fs::rename(hidden, paths_.events() / (std::to_string(++sent_) + "-1.event"));
        pending_.push_back(std::move(event));
    }

    /// A pass of the loop, and the same by the naive rules.
    void passBoth() {
        pass();
        const Nanoseconds now = test::nanoseconds(model().now());
        const std::size_t surplus = pending_.size() - std::min(pending_.size(), backlog);
        dropped_ += surplus;
        for (std::size_t i = surplus; i < pending_.size(); ++i)
            static_cast<void>(naive_.apply(pending_[i]));
        pending_.clear();
        reminders_ += naive_.dueReminders(now, model().prefs().reminderMinutes * 60 * test::second).size();
        ++passes_;
        if (passes_ % 60 == 0) naive_.prune(now);
    }

    [[nodiscard]] bool agrees() {
        return described(model().board().sessions()) == naive_.list() &&
               described(model().board().sorted()) == naive_.sorted() &&
               model().board().waitingCount() == naive_.waitingCount();
    }

    /// What a user does now and then.
    void act() {
        if (isChance(20'000)) model().quietForAnHour();
        if (isChance(5'000)) model().resumeAlerts();
        if (isChance(5'000)) {
            AlertPreferences preferences = model().prefs();
            preferences.reminderMinutes = AlertPreferences::reminderChoices.at(below(4));
            model().setPrefs(preferences);
        }
        const auto visible = platform_.panels.visible();
        ASSERT_LE(visible.size(), 3U);
        if (visible.empty() || !isChance(20)) return;
        const auto* const banner = dynamic_cast<const WaitingBanner*>(visible.front()->content.get());
        if (banner == nullptr) return;
        switch (below(4)) {
        case 0:
            buttonOf(*banner, "Go to Terminal").click();
            break;
        case 1:
            buttonOf(*banner, "Close").click();
            break;
        default:
            snoozeTopBanner();
        }
    }

    /// The naive board learns from the model's board whose banner it was.
    void snoozeTopBanner() {
        std::vector<std::string> before;
        for (const AgentSession& session : model().board().sessions())
            before.push_back(session.snoozedUntil == model().now() + AppModel::snoozeDuration ? session.id()
                                                                                              : "");
        click("Snooze");
        const std::vector<AgentSession>& after = model().board().sessions();
        std::size_t snoozed = 0;
        for (std::size_t i = 0; i < after.size(); ++i) {
            if (after[i].snoozedUntil != model().now() + AppModel::snoozeDuration) continue;
            if (before[i] == after[i].id()) continue;
            naive_.snooze(after[i].id(), test::nanoseconds(model().now()) + 300 * test::second);
            ++snoozed;
        }
        EXPECT_LE(snoozed, 1U);
        snoozes_ += snoozed;
    }

    /// Forgets what the fake platform has recorded, and deletes what waits for the event loop.
    void tidyUp() {
        std::erase_if(platform_.panels.all, [this](const std::shared_ptr<recording::PanelRecord>& record) {
            if (record->orderOutCount == 0) return false;
            std::erase(platform_.panels.stacking, record.get());
            return true;
        });
        platform_.announcer.spoken = {};
        platform_.sounds.played = {};
        platform_.applications.activated = {};
        QCoreApplication::sendPostedEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    std::mt19937_64 engine_{20'261'122};
    std::vector<Agent> agents_;
    std::vector<NaiveEvent> pending_;
    NaiveBoard naive_;
    Nanoseconds lastDate_ = 0;
    std::int64_t sessionCount_ = 0;
    std::int64_t sent_ = 0;
    std::int64_t passes_ = 0;
    std::size_t dropped_ = 0;
    std::size_t reminders_ = 0;
    std::size_t snoozes_ = 0;
};

TEST_F(SoakTest, aLongRunLeaksNothingAndTheBoardNeverDeviates) {
    const std::int64_t wanted = wantedEvents();
    model().connectAgent(AgentKind::claude);
    std::optional<TrayMenu> menu;
    std::optional<MenuBarView> panel;

    Usage early;
    while (sent_ < wanted) {
        // Each agent sends an event every 17 seconds, or when the user answers; but for a few hours of
        // silence a day, in which sessions grow old, and some seconds in which they all send at once.
        const bool isNight = passes_ % 86'400 > 61'200;
        for (std::size_t i = 0; i < agents_.size(); ++i) {
            if (isChance(isNight ? 20'000 : agents_[i].state == "asks" ? 200 : 17)) send(i);
        }
        if (passes_ % 20'000 == 1'000) {
            for (int i = 0; i < 300; ++i)
                send(below(agents_.size()));
        }
        passBoth();
        ASSERT_TRUE(agrees()) << "after " << sent_ << " events and " << passes_ << " passes";
        act();
        if (passes_ % 500 == 0) {
            tidyUp();
            menu.emplace(model(), TrayMenu::Actions{[] {}, [] {}, [] {}});
            panel.emplace(model(), MenuBarView::Actions{[] {}, [](const QUrl& /*url*/) {}, [] {}});
            panel->show();
        } else if (passes_ % 500 == 30) {
            menu.reset();
            panel.reset();
        }
        if (early.widgets == 0 && sent_ >= std::min(wanted / 2, warmUp)) early = usage();
    }
    menu.reset();
    panel.reset();
    tidyUp();
    const Usage late = usage();
    std::printf("%lld events, %lld passes, %zu dropped, %zu reminders, %zu snoozes\n"
                "first: %.1f MiB, %lld descriptors, %lld widgets; at the end: %.1f MiB, %lld, %lld\n",
                static_cast<long long>(sent_), static_cast<long long>(passes_), dropped_, reminders_,
                snoozes_, early.mebibytes, static_cast<long long>(early.descriptors),
                static_cast<long long>(early.widgets), late.mebibytes,
                static_cast<long long>(late.descriptors), static_cast<long long>(late.widgets));
#if !defined(__SANITIZE_ADDRESS__)
    // AddressSanitizer quarantines freed memory.
    EXPECT_LE(late.mebibytes, early.mebibytes + 4);
#endif
    EXPECT_EQ(late.descriptors, early.descriptors);
    EXPECT_LE(late.widgets, early.widgets + 100) << "rows and banners are created and destroyed";
    EXPECT_GT(dropped_, 0U);
    EXPECT_GT(reminders_, 0U);
    EXPECT_GT(snoozes_, 0U);
}

} // namespace
} // namespace corvane

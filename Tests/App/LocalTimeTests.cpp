// Times on the screen while the local time jumps: daylight saving begins or ends, or the user travels.

#include "App/Support/MenuBarSupport.h"
#include "App/Support/ToolTips.h"
#include "Controls/Labels.h"
#include "MenuBar/SessionList.h"
#include "MenuBar/TrayMenu.h"
#include "MenuBarView.h"
#include "Sessions/AlertText.h"
#include "Style/Times.h"
#include "Support/TimeZone.h"

#include <QAction>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace corvane {
namespace {

using namespace std::chrono_literals;

constexpr const char* centralEurope = "CET-1CEST,M3.5.0,M10.5.0/3";

Date utc(std::chrono::year_month_day day, std::chrono::seconds time) {
    return Date::fromSystemClock(std::chrono::sys_days(day) + time);
}

std::string shown(Date date) {
    return times::shortTime(date, QLocale::c()).toStdString();
}

struct ZoneCase {
    const char* zone;
    std::chrono::year_month_day day;
    std::chrono::seconds time; ///< UTC
    const char* shown;
};

void PrintTo(const ZoneCase& zone, std::ostream* out) {
    *out << zone.zone << " at " << zone.shown;
}

class ShortTime : public testing::TestWithParam<ZoneCase> {};

TEST_P(ShortTime, isTheWallClockOfThatZone) {
    const test::TimeZone zone(GetParam().zone);
    EXPECT_EQ(shown(utc(GetParam().day, GetParam().time)), GetParam().shown);
}

using std::chrono::January;
using std::chrono::March;
using std::chrono::November;
using std::chrono::October;
using std::chrono::September;

INSTANTIATE_TEST_SUITE_P(
    HalfHours, ShortTime,
    testing::Values(
        ZoneCase{"IST-5:30", September / 21 / 2026, 14h + 13min + 20s, "19:43"},
        ZoneCase{"<+0545>-5:45", September / 21 / 2026, 14h + 13min + 20s, "19:58"},
        ZoneCase{"NST3:30NDT,M3.2.0,M11.1.0", January / 5 / 2026, 1h + 10min, "21:40"},
        ZoneCase{"NST3:30NDT,M3.2.0,M11.1.0", September / 21 / 2026, 1h + 10min, "22:40"},
        ZoneCase{"<+1245>-12:45<+1345>,M9.5.0/2:45,M4.1.0/3:45", January / 5 / 2026, 11h, "00:45"},
        // Its summer time is half an hour ahead.
        ZoneCase{"<+1030>-10:30<+11>-11,M10.1.0,M4.1.0", January / 5 / 2026, 2h + 45min, "13:45"},
        ZoneCase{"<+1030>-10:30<+11>-11,M10.1.0,M4.1.0", September / 21 / 2026, 2h + 45min, "13:15"}));

INSTANTIATE_TEST_SUITE_P(AroundTheChanges, ShortTime,
                         testing::Values(ZoneCase{centralEurope, March / 29 / 2026, 59min + 59s, "01:59"},
                                         ZoneCase{centralEurope, March / 29 / 2026, 1h, "03:00"},
                                         ZoneCase{centralEurope, October / 25 / 2026, 59min + 59s, "02:59"},
                                         ZoneCase{centralEurope, October / 25 / 2026, 1h, "02:00"},
                                         ZoneCase{"EST5EDT,M3.2.0,M11.1.0", March / 8 / 2026, 7h, "03:00"},
                                         ZoneCase{"EST5EDT,M3.2.0,M11.1.0", November / 1 / 2026, 6h,
                                                  "01:00"}));

/// A change of the local time, and when it happens.
struct ChangeCase {
    const char* name;
    const char* zone;
    std::chrono::year_month_day day;
    std::chrono::seconds time;         ///< UTC
    const char* anHourFromBefore;      ///< the local time an hour after half an hour before the change
    const char* fiveMinutesFromBefore; ///< and five minutes after two minutes before it
};

void PrintTo(const ChangeCase& change, std::ostream* out) {
    *out << change.name;
}

class LocalTimeChange : public testing::TestWithParam<ChangeCase> {
  protected:
    /// Sets the clock so that the change happens after that time.
    void begin(Seconds before) {
        const Date change = utc(GetParam().day, GetParam().time);
        world_.platform.time.setWallClock(change - before);
        world_.connect();
    }

    /// Runs the passes one by one and checks that no session ever shows a negative time.
    void passAndWatch(int seconds) {
        for (int i = 0; i < seconds; ++i) {
            world_.pass();
            for (const AgentSession& session : world_.model().board().sorted()) {
                const std::string line = AlertText::statusLine(session, world_.model().now());
                ASSERT_EQ(line.find('-'), std::string::npos) << line;
            }
        }
    }

    [[nodiscard]] std::size_t alerts() const { return world_.platform.sounds.played.size(); }

    /// The status of each session, as the tray's menu shows it.
    std::vector<std::string> statusLines() {
        std::vector<std::string> lines;
        for (const AgentSession& session : world_.model().board().sorted())
            lines.push_back(AlertText::statusLine(session, world_.model().now()));
        return lines;
    }

    /// Whether a line of a visible banner has this text.
    bool aBannerSays(const char* text) {
        for (const auto& panel : world_.platform.panels.visible()) {
            for (const auto* const line : panel->content->findChildren<LineLabel*>()) {
                if (line->text() == QString::fromUtf8(text)) return true;
            }
        }
        return false;
    }

    MenuBarView& view() {
        if (!view_) {
            view_ = std::make_unique<MenuBarView>(world_.model(),
                                                  MenuBarView::Actions{[] {}, [](const QUrl&) {}, [] {}});
            view_->show();
        }
        return *view_;
    }

    bool panelSays(const std::string& text) {
        for (const auto* const line : view().findChildren<LineLabel*>()) {
            if (line->isVisible() && line->text() == QString::fromStdString(text)) return true;
        }
        return false;
    }

    test::MenuBarWorld world_;

  private:
    test::TimeZone zone_{GetParam().zone};
    std::unique_ptr<MenuBarView> view_;
};

TEST_P(LocalTimeChange, aQuietHourLastsAnHourAndShowsItsEnd) {
    begin(30min);
    world_.model().quietForAnHour();
    const std::string line = std::string("Quiet until ") + GetParam().anHourFromBefore;
    const TrayMenu menu(world_.model(), {[] {}, [] {}, [] {}});
    const auto menuSays = [&] {
        return std::ranges::any_of(menu.actions(), [&](const QAction* entry) {
            return entry->isVisible() && entry->text() == QString::fromStdString(line);
        });
    };
    for (const int seconds : {0, 1799, 1, 1, 1798}) {
        world_.pass(seconds);
        ASSERT_TRUE(panelSays(line)) << seconds;
        ASSERT_TRUE(menuSays()) << seconds;
    }
    world_.pass();
    EXPECT_FALSE(world_.model().quietUntil()) << "3600 seconds have passed";
    EXPECT_FALSE(panelSays(line));
    EXPECT_FALSE(menuSays());
}

TEST_P(LocalTimeChange, nothingAlertsInAQuietHourAndItsDeferredReminderFiresOnceAfterwards) {
    begin(30min);
    world_.waits("a");
    ASSERT_EQ(alerts(), 1U);
    world_.model().quietForAnHour();
    passAndWatch(3599);
    EXPECT_EQ(alerts(), 1U);
    passAndWatch(121);
    EXPECT_EQ(alerts(), 2U);
}

TEST_P(LocalTimeChange, waitingTimesAreUnaffected) {
    begin(Seconds(121));
    world_.waits("a"); // a second later
    view();
    passAndWatch(119);
    EXPECT_EQ(statusLines(), std::vector<std::string>{"Waiting for you · 2:00"});
    EXPECT_TRUE(panelSays("Claude · Waiting for you · 2:00"));
    passAndWatch(1);
    EXPECT_EQ(alerts(), 2U) << "the reminder";
    EXPECT_TRUE(aBannerSays("waiting 2:00") || aBannerSays("waiting 2:01"));
    passAndWatch(179);
    EXPECT_EQ(statusLines(), std::vector<std::string>{"Waiting for you · 5:00"});
    EXPECT_TRUE(panelSays("Claude · Waiting for you · 5:00"));
}

TEST_P(LocalTimeChange, remindersKeepTheirInterval) {
    begin(Seconds(30 * 60 + 1));
    world_.waits("a");
    passAndWatch(60);
    world_.waits("b");
    ASSERT_EQ(alerts(), 2U);
    // Each every two minutes, and so one of them every minute.
    for (std::size_t minute = 1; minute <= 60; ++minute) {
        passAndWatch(60);
        ASSERT_LE(alerts(), 2 + minute) << minute;
        ASSERT_GE(alerts() + 1, 2 + minute) << minute;
    }
}

TEST_P(LocalTimeChange, aSnoozeLastsFiveMinutesAndShowsItsEnd) {
    begin(Seconds(121));
    world_.waits("a");
    (void)view().grab();
    world_.model().snooze(world_.model().board().sessions().at(0));
    const std::string note = std::string("Snoozed until ") + GetParam().fiveMinutesFromBefore;
    const auto toolTip = [&] { return test::toolTip(*view().list().rows().at(0)); };
    EXPECT_EQ(toolTip(), note);
    passAndWatch(299);
    EXPECT_EQ(toolTip(), note);
    EXPECT_EQ(alerts(), 1U);
    passAndWatch(1);
    EXPECT_EQ(toolTip(), "");
    EXPECT_EQ(alerts(), 2U);
}

TEST_P(LocalTimeChange, finishedSessionsStayForTheUsualTime) {
    begin(Seconds(121));
    world_.codexDone("a", "shop");
    passAndWatch(58); // a second has passed since
    EXPECT_EQ(statusLines(), std::vector<std::string>{"Done just now"});
    passAndWatch(241);
    EXPECT_EQ(statusLines(), std::vector<std::string>{"Done 5 min ago"});
}

INSTANTIATE_TEST_SUITE_P(
    All, LocalTimeChange,
    testing::Values(ChangeCase{"summerTimeBegins", centralEurope, March / 29 / 2026, 1h, "03:30", "03:03"},
                    ChangeCase{"summerTimeEnds", centralEurope, October / 25 / 2026, 1h, "02:30", "02:03"},
                    ChangeCase{"summerTimeOfHalfAnHourBegins", "<+1030>-10:30<+11>-11,M10.1.0,M4.1.0",
                               October / 3 / 2026, 15h + 30min, "03:00", "02:33"},
                    ChangeCase{"summerTimeOfHalfAnHourEnds", "<+1030>-10:30<+11>-11,M10.1.0,M4.1.0",
                               std::chrono::April / 4 / 2026, 15h, "02:00", "01:33"}),
    [](const auto& change) { return std::string(change.param.name); });

/// The user travels: the time zone changes while the process runs.
TEST(LocalTime, anotherZoneChangesTheTimesAndNothingElse) {
    const test::TimeZone home("UTC0");
    test::MenuBarWorld world;
    world.platform.time.setWallClock(utc(September / 21 / 2026, 13h));
    world.connect();
    MenuBarView view(world.model(), {[] {}, [](const QUrl&) {}, [] {}});
    view.show();
    const auto says = [&](const char* text) {
        const auto lines = view.findChildren<LineLabel*>();
        return std::ranges::any_of(lines, [&](const LineLabel* line) {
            return line->isVisible() && line->text() == QString::fromUtf8(text);
        });
    };
    world.waits("a"); // a second later
    world.model().quietForAnHour();
    EXPECT_TRUE(says("Quiet until 14:00"));
    {
        const test::TimeZone abroad("IST-5:30");
        world.pass(299);
        EXPECT_TRUE(says("Quiet until 19:30"));
        EXPECT_TRUE(says("Claude · Waiting for you · 5:00"));
        world.pass(3300);
        EXPECT_TRUE(world.model().quietUntil());
        world.pass();
        EXPECT_FALSE(world.model().quietUntil());
        world.pass(121);
    }
    EXPECT_EQ(world.platform.sounds.played.size(), 2U) << "the alert, and the reminder that was held back";
}

} // namespace
} // namespace corvane

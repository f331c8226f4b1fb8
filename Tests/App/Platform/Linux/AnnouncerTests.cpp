// What assistive technology finds in the banners on Linux. Events are tested on an accessibility bus.

#include "App/Support/Sessions.h"
#include "App/Support/Waiting.h"
#include "BannerViews.h"
#include "Controls/Labels.h"
#include "Controls/SecondHand.h"
#include "Platform/Linux/Announcer.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace corvane {
namespace {

using test::doneSession;
using test::waitingSession;

const Date start{1'790'000'000, 0};
const std::string waitingWords = "Claude is waiting for you, shop · wants to use Bash";

/// An element as assistive technology finds it.
struct Element {
    QAccessible::Role role = QAccessible::NoRole;
    std::string name;

    bool operator==(const Element&) const = default;
};

void PrintTo(const Element& element, std::ostream* stream) {
    *stream << "{role " << element.role << ", \"" << element.name << "\"}";
}

Element elementOf(QAccessibleInterface* interface) {
    return {interface->role(), interface->text(QAccessible::Name).toStdString()};
}

class AnnouncerTest : public testing::Test {
  protected:
    [[nodiscard]] std::unique_ptr<WaitingBanner>
    waitingBanner(const AgentSession& session = waitingSession("s", start)) {
        return std::make_unique<WaitingBanner>(
            session, [this] { return now_; }, [this] { calls_ += "jump "; }, [this] { calls_ += "snooze "; },
            [this] { calls_ += "close "; });
    }
    [[nodiscard]] std::unique_ptr<DoneBanner> doneBanner() {
        return std::make_unique<DoneBanner>(doneSession("s", start, AgentKind::codex),
                                            [this] { calls_ += "close "; });
    }

    static QAccessibleInterface* interfaceOf(QWidget& widget) {
        return QAccessible::queryAccessibleInterface(&widget);
    }
    static std::vector<Element> children(QWidget& widget) {
        std::vector<Element> result;
        QAccessibleInterface* const interface = interfaceOf(widget);
        for (int i = 0; i < interface->childCount(); ++i)
            result.push_back(elementOf(interface->child(i)));
        return result;
    }

    Date now_ = start;
    std::string calls_;
    LinuxAnnouncer announcer_;
};

TEST_F(AnnouncerTest, aBannerIsANotificationNamedByTitleAndSubtitle) {
    const auto waiting = waitingBanner();
    EXPECT_EQ(elementOf(interfaceOf(*waiting)), (Element{QAccessible::Notification, waitingWords}));
    const auto done = doneBanner();
    EXPECT_EQ(elementOf(interfaceOf(*done)), (Element{QAccessible::Notification, "Codex finished, shop"}));
}

TEST_F(AnnouncerTest, aWaitingBannersPartsAreInReadingOrder) {
    now_ = start + Seconds(42);
    EXPECT_EQ(children(*waitingBanner()),
              (std::vector<Element>{{QAccessible::Graphic, "Claude"},
                                    {QAccessible::StaticText, "Claude is waiting for you"},
                                    {QAccessible::StaticText, "shop · wants to use Bash"},
                                    {QAccessible::Clock, "waiting 0:42"},
                                    {QAccessible::Button, "Go to Terminal"},
                                    {QAccessible::Button, "Snooze"},
                                    {QAccessible::Button, "Close"}}));
}

TEST_F(AnnouncerTest, theBadgeIsNamedByItsAgent) {
    const auto banner = waitingBanner(waitingSession("s", start, AgentKind::codex));
    EXPECT_EQ(children(*banner).at(0), (Element{QAccessible::Graphic, "Codex"}));
}

TEST_F(AnnouncerTest, aDoneBannerHidesItsCheckMark) {
    EXPECT_EQ(children(*doneBanner()), (std::vector<Element>{{QAccessible::StaticText, "Codex finished"},
                                                             {QAccessible::StaticText, "shop"},
                                                             {QAccessible::Button, "Close"}}));
}

// A screen reader leaves out what the notification's own name contains.
TEST_F(AnnouncerTest, theBannersNameContainsItsLinesWhole) {
    AgentSession session = waitingSession("s", start);
    session.cwd = "/w/R&D <b>two\nlines, a project with a name too long for any banner to show it whole";
    const auto banner = waitingBanner(session);
    const std::string name = elementOf(interfaceOf(*banner)).name;
    const std::vector<Element> parts = children(*banner);
    EXPECT_EQ(name, parts.at(1).name + ", " + parts.at(2).name);
    EXPECT_NE(name.find("R&D <b>two\nlines, a project"), std::string::npos) << name;
}

TEST_F(AnnouncerTest, everyButtonIsPressedByItsAction) {
    const auto banner = waitingBanner();
    banner->show();
    QAccessibleInterface* const interface = interfaceOf(*banner);
    for (const int index : {4, 5, 6}) {
        QAccessibleActionInterface* const action = interface->child(index)->actionInterface();
        ASSERT_NE(action, nullptr);
        ASSERT_TRUE(action->actionNames().contains(QAccessibleActionInterface::pressAction()));
        auto* const button = qobject_cast<QAbstractButton*>(interface->child(index)->object());
        ASSERT_NE(button, nullptr);
        QSignalSpy clicks(button, &QAbstractButton::clicked);
        action->doAction(QAccessibleActionInterface::pressAction());
        EXPECT_TRUE(clicks.count() == 1 || clicks.wait(test::longestWait));
    }
    EXPECT_EQ(calls_, "jump snooze close ");
}

TEST_F(AnnouncerTest, theClockIsNamedByItsTime) {
    const auto banner = waitingBanner();
    banner->show();
    now_ = start + Seconds(7);
    Q_EMIT SecondHand::instance().ticked();
    EXPECT_EQ(children(*banner).at(3).name, "waiting 0:07");
}

} // namespace
} // namespace corvane

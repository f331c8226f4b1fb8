#include "Platform/Linux/NotifierMenu.h"

#include <QAction>
#include <QCoreApplication>
#include <QMenu>
#include <QPixmap>
#include <QSignalSpy>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace corvane {
namespace {

class NotifierMenuTest : public testing::Test {
  protected:
    /// The labels that a host gets, "-" for a divider, in parentheses where they are hidden.
    std::vector<std::string> fetched() {
        std::vector<std::string> result;
        uint revision = 0;
        for (const QDBusVariant& child : menu.layout(0, -1, {}, revision).children) {
            const auto entry = child.variant().value<NotifierMenuLayout>();
            const bool isDivider =
                entry.properties.value(QStringLiteral("type")) == QStringLiteral("separator");
            std::string label =
                isDivider ? "-" : entry.properties.value(QStringLiteral("label")).toString().toStdString();
            if (!entry.properties.value(QStringLiteral("visible"), true).toBool()) label = "(" + label + ")";
            result.push_back(label);
        }
        return result;
    }

    int idOf(const QString& label) {
        for (const NotifierMenuEntry& entry : menu.properties({}, {})) {
            if (entry.properties.value(QStringLiteral("label")) == label) return entry.id;
        }
        return -1;
    }

    static void settle() { QCoreApplication::processEvents(); }

    QMenu actions;
    NotifierMenu menu{actions};
    QSignalSpy updates{&menu, &NotifierMenu::propertiesUpdated};
    QSignalSpy layouts{&menu, &NotifierMenu::layoutUpdated};
};

TEST_F(NotifierMenuTest, aHostGetsTheEntriesInOrder) {
    actions.addAction(QStringLiteral("Open"));
    actions.addSeparator();
    actions.addAction(QStringLiteral("Resume"))->setVisible(false);
    QAction* const until = actions.addAction(QStringLiteral("Until"));
    until->setEnabled(false);
    QPixmap dot(16, 16);
    dot.fill(Qt::red);
    until->setIcon(dot);
    EXPECT_EQ(fetched(), (std::vector<std::string>{"Open", "-", "(Resume)", "Until"}));
    const NotifierMenuEntries entry = menu.properties({idOf(QStringLiteral("Until"))}, {});
    ASSERT_EQ(entry.size(), 1);
    EXPECT_EQ(entry.front().properties.value(QStringLiteral("enabled")), false);
    EXPECT_TRUE(
        entry.front().properties.value(QStringLiteral("icon-data")).toByteArray().startsWith("\x89PNG"));
}

TEST_F(NotifierMenuTest, aHostGetsOnlyWhatItRequests) {
    actions.addAction(QStringLiteral("Open"))->setEnabled(false);
    uint revision = 0;
    const NotifierMenuLayout closed = menu.layout(0, 0, {}, revision);
    EXPECT_TRUE(closed.children.isEmpty());
    EXPECT_EQ(closed.properties.value(QStringLiteral("children-display")), QStringLiteral("submenu"));
    const int id = idOf(QStringLiteral("Open"));
    EXPECT_EQ(menu.layout(id, -1, {QStringLiteral("label")}, revision).properties,
              (QVariantMap{{QStringLiteral("label"), QStringLiteral("Open")}}));
    EXPECT_EQ(menu.properties({id}, {QStringLiteral("enabled")}).front().properties,
              (QVariantMap{{QStringLiteral("enabled"), false}}));
}

TEST_F(NotifierMenuTest, labelsArePlainText) {
    EXPECT_EQ(NotifierMenu::label(QStringLiteral("R&&D")), QStringLiteral("R&D"));
    EXPECT_EQ(NotifierMenu::label(QStringLiteral("my_old_shop")), QStringLiteral("my__old__shop"));
    EXPECT_EQ(NotifierMenu::label(QStringLiteral("&Open")), QStringLiteral("Open"));
    EXPECT_EQ(NotifierMenu::label(QStringLiteral("a && b_&&")), QStringLiteral("a & b__&"));
    EXPECT_EQ(NotifierMenu::label(QStringLiteral("end &")), QStringLiteral("end "));
    EXPECT_EQ(NotifierMenu::label(QStringLiteral("<b>&&lt;")), QStringLiteral("<b>&lt;"));
}

TEST_F(NotifierMenuTest, nothingIsEmittedBeforeAHostHasQueried) {
    actions.addAction(QStringLiteral("Open"))->setText(QStringLiteral("Close"));
    settle();
    EXPECT_EQ(updates.count() + layouts.count(), 0);
}

TEST_F(NotifierMenuTest, simultaneousChangesAreCoalescedAndNothingElseIsReported) {
    QAction* const first = actions.addAction(QStringLiteral("a"));
    QAction* const second = actions.addAction(QStringLiteral("b"));
    second->setEnabled(false);
    ASSERT_EQ(fetched().size(), 2U);
    settle();
    ASSERT_EQ(updates.count() + layouts.count(), 0);

    first->setText(QStringLiteral("c"));
    first->setText(QStringLiteral("d"));
    second->setEnabled(true);
    settle();
    ASSERT_EQ(updates.count(), 1);
    EXPECT_EQ(layouts.count(), 0);
    const auto updated = updates.front().at(0).value<NotifierMenuEntries>();
    ASSERT_EQ(updated.size(), 1);
    EXPECT_EQ(updated.front().properties, (QVariantMap{{QStringLiteral("label"), QStringLiteral("d")}}));
    const auto removed = updates.front().at(1).value<NotifierMenuRemovals>();
    ASSERT_EQ(removed.size(), 1);
    EXPECT_EQ(removed.front().id, idOf(QStringLiteral("b")));
    EXPECT_EQ(removed.front().names, QStringList{QStringLiteral("enabled")});

    first->setText(QStringLiteral("x"));
    first->setText(QStringLiteral("d"));
    settle();
    EXPECT_EQ(updates.count(), 1) << "as the host knows it";

    actions.removeAction(first);
    settle();
    EXPECT_EQ(updates.count(), 1);
    EXPECT_EQ(layouts.count(), 1);
    EXPECT_EQ(fetched(), std::vector<std::string>{"b"});
}

TEST_F(NotifierMenuTest, itIsUpdatedWhenAHostIsAboutToShowIt) {
    QAction* const entry = actions.addAction(QStringLiteral("0:01"));
    QString time = QStringLiteral("0:01");
    QObject::connect(&actions, &QMenu::aboutToShow, entry, [&] { entry->setText(time); });
    ASSERT_EQ(fetched(), std::vector<std::string>{"0:01"});
    EXPECT_FALSE(menu.prepareToShow());
    time = QStringLiteral("0:09");
    EXPECT_FALSE(menu.prepareToShow()) << "the layout is the same";
    ASSERT_EQ(updates.count(), 1) << "before the reply";
    EXPECT_EQ(updates.front().at(0).value<NotifierMenuEntries>().front().properties,
              (QVariantMap{{QStringLiteral("label"), QStringLiteral("0:09")}}));
    settle();
    EXPECT_EQ(updates.count() + layouts.count(), 1);
    actions.addAction(QStringLiteral("new"));
    EXPECT_TRUE(menu.prepareToShow());
    EXPECT_EQ(layouts.count(), 1);
    settle();
    EXPECT_EQ(updates.count() + layouts.count(), 2);
}

// GNOME's and Cinnamon's hosts ask for the properties of an entry once, when it is new to them.
TEST_F(NotifierMenuTest, aMovedEntryKeepsItsIdAndItsChangesAreReported) {
    QAction* const first = actions.addAction(QStringLiteral("a · Running"));
    QAction* const second = actions.addAction(QStringLiteral("b · Running"));
    ASSERT_EQ(fetched().size(), 2U);
    const int id = idOf(QStringLiteral("a · Running"));
    second->setText(QStringLiteral("b · Waiting"));
    actions.insertAction(nullptr, first);
    (void)fetched();
    settle();
    EXPECT_EQ(fetched(), (std::vector<std::string>{"b · Waiting", "a · Running"}));
    EXPECT_EQ(idOf(QStringLiteral("a · Running")), id);
    EXPECT_TRUE(menu.handle(id, QStringLiteral("hovered")));
    EXPECT_EQ(layouts.count(), 1);
    ASSERT_EQ(updates.count(), 1) << "although the layout was asked for in between";
    EXPECT_EQ(updates.front().at(0).value<NotifierMenuEntries>().front().properties,
              (QVariantMap{{QStringLiteral("label"), QStringLiteral("b · Waiting")}}));
}

TEST_F(NotifierMenuTest, aHostThatOnlyReportsTheOpeningIsSentTheChanges) {
    QAction* const entry = actions.addAction(QStringLiteral("0:01"));
    QObject::connect(&actions, &QMenu::aboutToShow, entry, [&] { entry->setText(QStringLiteral("0:09")); });
    QSignalSpy hidden(&actions, &QMenu::aboutToHide);
    ASSERT_EQ(fetched(), std::vector<std::string>{"0:01"});
    EXPECT_TRUE(menu.handle(0, QStringLiteral("opened")));
    settle();
    EXPECT_EQ(updates.count(), 1);
    EXPECT_TRUE(menu.handle(0, QStringLiteral("closed")));
    EXPECT_EQ(hidden.count(), 1);
}

TEST_F(NotifierMenuTest, aClickTriggersItsEntryAfterTheReply) {
    QAction* const entry = actions.addAction(QStringLiteral("Quit"));
    actions.addAction(QStringLiteral("Other"));
    QSignalSpy triggered(entry, &QAction::triggered);
    const int id = idOf(QStringLiteral("Quit"));
    EXPECT_TRUE(menu.handle(id, QStringLiteral("hovered")));
    settle();
    EXPECT_EQ(triggered.count(), 0);
    EXPECT_TRUE(menu.handle(id, QStringLiteral("clicked")));
    EXPECT_EQ(triggered.count(), 0);
    settle();
    EXPECT_EQ(triggered.count(), 1);
    EXPECT_FALSE(menu.handle(99, QStringLiteral("clicked")));
}

TEST_F(NotifierMenuTest, anEntrysIdIsNotReused) {
    QAction* const first = actions.addAction(QStringLiteral("a"));
    const int id = idOf(QStringLiteral("a"));
    actions.removeAction(first);
    delete first;
    actions.addAction(QStringLiteral("b"));
    EXPECT_NE(idOf(QStringLiteral("b")), id);
    EXPECT_FALSE(menu.handle(id, QStringLiteral("clicked")));
}

} // namespace
} // namespace corvane

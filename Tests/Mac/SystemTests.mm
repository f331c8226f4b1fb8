#include "Platform/MacOS/Applications.h"
#include "Platform/MacOS/LoginItem.h"
#include "Platform/MacOS/LoginItemStatus.h"
#include "Platform/MacOS/Screens.h"
#include "Platform/MacOS/Sounds.h"
#include "Platform/MacOS/SystemSymbols.h"
#include "Platform/Shared/QtScheduler.h"
#include "Sessions/AlertPreferences.h"

#include <QGuiApplication>
#include <QScreen>
#include <gtest/gtest.h>

#import <AppKit/AppKit.h>
#import <ServiceManagement/ServiceManagement.h>
#include <algorithm>

namespace corvane {
namespace {

TEST(MacSounds, areAllAvailableByTheirNames) {
    for (const auto& name : AlertPreferences::soundChoices) {
        const QString text = QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
        EXPECT_TRUE([NSSound soundNamed:text.toNSString()] != nil) << name;
    }
}

TEST(MacSounds, playNothingForAnUnknownName) {
    ASSERT_TRUE([NSSound soundNamed:@"Corvane has no such sound"] == nil);
    MacSounds sounds;
    sounds.play("Corvane has no such sound");
    sounds.play("");
}

TEST(MacLoginItem, knowsTheSystemsStatusValues) {
    using loginitem::Status;
    EXPECT_EQ(loginitem::status(SMAppServiceStatusNotRegistered), Status::notRegistered);
    EXPECT_EQ(loginitem::status(SMAppServiceStatusEnabled), Status::enabled);
    EXPECT_EQ(loginitem::status(SMAppServiceStatusRequiresApproval), Status::requiresApproval);
    EXPECT_EQ(loginitem::status(SMAppServiceStatusNotFound), Status::notFound);
}

TEST(MacLoginItem, isOffForAProgramThatIsNoBundleAndStaysOff) {
    MacLoginItem item;
    ASSERT_FALSE(item.isEnabled());
    EXPECT_NO_THROW(item.setEnabled(false));
    EXPECT_FALSE(item.isEnabled());
}

TEST(MacApplications, doNothingForAnUnknownIdentifier) {
    QtScheduler scheduler;
    MacApplications applications(scheduler);
    NSRunningApplication* const before = NSWorkspace.sharedWorkspace.frontmostApplication;
    int foundCount = 0;
    const auto report = [&](bool isFound) { foundCount += isFound ? 1 : 0; };
    Terminal terminal;
    applications.activate(terminal, report);
    terminal.bundleID = "";
    applications.activate(terminal, report);
    terminal.bundleID = "org.corvane.no-such-application";
    applications.activate(terminal, report);
    EXPECT_EQ(foundCount, 0);
    NSRunningApplication* const after = NSWorkspace.sharedWorkspace.frontmostApplication;
    EXPECT_EQ(before.processIdentifier, after.processIdentifier);
}

TEST(MacScreens, haveTheFreeAreaThatQtReports) {
    const MacScreens screens;
    const std::optional<QRect> frame = screens.mainVisibleFrame();
    ASSERT_TRUE(frame.has_value());
    const QList<QScreen*> all = QGuiApplication::screens();
    EXPECT_TRUE(std::any_of(all.begin(), all.end(),
                            [&](const QScreen* screen) { return screen->availableGeometry() == *frame; }));
}

TEST(MacScreens, haveAFreeAreaForEachPlaceAndThePrimaryOnesElsewhere) {
    const MacScreens screens;
    for (const QScreen* const screen : QGuiApplication::screens())
        EXPECT_EQ(screens.visibleFrameAt(screen->geometry().center()), screen->availableGeometry());
    EXPECT_EQ(screens.visibleFrameAt({-100000, -100000}),
              QGuiApplication::primaryScreen()->availableGeometry());
}

TEST(MacScreens, reportAChange) {
    MacScreens screens;
    int changes = 0;
    QObject::connect(&screens, &Screens::changed, &screens, [&] { ++changes; });
    [NSNotificationCenter.defaultCenter
        postNotificationName:NSApplicationDidChangeScreenParametersNotification
                      object:NSApp];
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(changes, 1);
}

TEST(MacSymbols, areCentredInTheirBox) {
    for (const char* const name :
         {"bell", "bell.badge.fill", "terminal", "xmark", "checkmark.circle.fill", "info.circle"}) {
        QImage image(40, 40, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        ASSERT_TRUE(MacSystemSymbols().draw(image, QString::fromLatin1(name), QRectF(10, 4, 20, 20))) << name;
        int inside = 0;
        int outside = 0;
        for (int y = 0; y < 40; ++y) {
            for (int x = 0; x < 40; ++x) {
                if (qAlpha(image.pixel(x, y)) == 0) continue;
                ++(QRect(9, 3, 22, 22).contains(x, y) ? inside : outside);
            }
        }
        EXPECT_GT(inside, 10) << name;
        EXPECT_EQ(outside, 0) << name;
    }
}

TEST(MacSymbols, areOurOwnForAnUnknownName) {
    QImage image(20, 20, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    const QImage before = image;
    EXPECT_FALSE(MacSystemSymbols().draw(image, QStringLiteral("corvane.no.such.symbol"), image.rect()));
    EXPECT_EQ(image, before);
}

} // namespace
} // namespace corvane

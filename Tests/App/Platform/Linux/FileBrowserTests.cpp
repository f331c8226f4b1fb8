// The requests to a file manager, which the test fakes on its own session bus.

#include "App/Platform/Linux/FakeFileManager.h"
#include "App/Platform/Linux/PrivateBus.h"
#include "App/Support/Waiting.h"
#include "Platform/Linux/FileBrowser.h"

#include <QDBusConnection>
#include <QDesktopServices>
#include <QStringList>
#include <QtTest/QTest>
#include <gtest/gtest.h>

#include <memory>

namespace corvane {
namespace {

// One test, since a process has one session bus.
TEST(LinuxFileBrowser, theFileManagerShowsTheFileOrElseTheFolderIsOpened) {
    test::FakeFileManager manager;
    QDesktopServices::setUrlHandler(QStringLiteral("file"), &manager, "open");
    auto bus = std::make_unique<test::PrivateBus>();
    const QString name = QStringLiteral("file manager");
    {
        QDBusConnection connection = QDBusConnection::connectToBus(bus->address(), name);
        ASSERT_TRUE(connection.registerObject(QStringLiteral("/org/freedesktop/FileManager1"), &manager,
                                              QDBusConnection::ExportScriptableInvokables));
        ASSERT_TRUE(connection.registerService(QStringLiteral("org.freedesktop.FileManager1")));
    }
    LinuxFileBrowser browser;
    const auto reveal = [&browser] { browser.reveal("/home/Zoë/.claude/settings #1 100%.json"); };
    const auto isOpened = [&manager] { return !manager.opened.isEmpty(); };

    reveal();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !manager.shown.isEmpty(); }, test::longestWait));
    EXPECT_EQ(manager.shown,
              QStringList(QStringLiteral("file:///home/Zo%C3%AB/.claude/settings%20%231%20100%25.json")));
    EXPECT_FALSE(isOpened());

    QDBusConnection::disconnectFromBus(name);
    reveal();
    EXPECT_TRUE(QTest::qWaitFor(isOpened, test::longestWait)) << "without a file manager on the bus";
    EXPECT_EQ(manager.opened.toLocalFile(), QStringLiteral("/home/Zoë/.claude"));

    manager.opened.clear();
    bus.reset();
    ASSERT_TRUE(
        QTest::qWaitFor([] { return !QDBusConnection::sessionBus().isConnected(); }, test::longestWait));
    reveal();
    EXPECT_TRUE(isOpened()) << "without a bus, at once";
    EXPECT_EQ(manager.opened.toLocalFile(), QStringLiteral("/home/Zoë/.claude"));
    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
}

} // namespace
} // namespace corvane

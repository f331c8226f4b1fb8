// What is said to a file manager on a session bus of the tests' own, where the test plays the file manager.

#include "App/Platform/Linux/FakeFileManager.h"
#include "App/Platform/Linux/Windows/PrivateBus.h"
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

class LinuxFileBrowserTest : public testing::Test {
  protected:
    static void SetUpTestSuite() { bus = std::make_unique<test::PrivateBus>(); }
    static void TearDownTestSuite() {
        QDBusConnection::disconnectFromBus(QDBusConnection::sessionBus().name());
        bus.reset();
    }

    void SetUp() override { QDesktopServices::setUrlHandler(QStringLiteral("file"), &manager, "open"); }
    void TearDown() override {
        QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
        QDBusConnection::disconnectFromBus(QStringLiteral("file manager"));
    }

    void startFileManager() {
        QDBusConnection connection =
            QDBusConnection::connectToBus(bus->address(), QStringLiteral("file manager"));
        ASSERT_TRUE(connection.registerObject(QStringLiteral("/org/freedesktop/FileManager1"), &manager,
                                              QDBusConnection::ExportScriptableInvokables));
        ASSERT_TRUE(connection.registerService(QStringLiteral("org.freedesktop.FileManager1")));
    }

    static std::unique_ptr<test::PrivateBus> bus;
    test::FakeFileManager manager;
    LinuxFileBrowser browser;
};

std::unique_ptr<test::PrivateBus> LinuxFileBrowserTest::bus;

TEST_F(LinuxFileBrowserTest, theFileManagerShowsTheFile) {
    startFileManager();
    browser.reveal("/home/Zoë/.claude/settings #1 100%.json");
    EXPECT_TRUE(QTest::qWaitFor([&] { return !manager.shown.isEmpty(); }, test::longestWait));
    EXPECT_EQ(manager.shown,
              QStringList(QStringLiteral("file:///home/Zo%C3%AB/.claude/settings%20%231%20100%25.json")));
    EXPECT_TRUE(manager.opened.isEmpty());
}

TEST_F(LinuxFileBrowserTest, withoutAFileManagerOnTheBusTheFolderIsOpened) {
    browser.reveal("/home/Zoë/.claude/settings #1 100%.json");
    EXPECT_TRUE(QTest::qWaitFor([&] { return !manager.opened.isEmpty(); }, test::longestWait));
    EXPECT_EQ(manager.opened.toLocalFile(), QStringLiteral("/home/Zoë/.claude"));
}

} // namespace
} // namespace corvane

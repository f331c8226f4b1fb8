// How the first instance learns of further starts, and the lock that ensures one instance per user where
// there is no session bus.

#include "App/Support/Waiting.h"
#include "Platform/Linux/SingleInstance.h"
#include "Platform/Linux/SingleInstanceLock.h"
#include "Support/TestSupport.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <optional>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using test::ScratchFolder;

TEST(SingleInstanceLock, theFirstClaimSucceeds) {
    const ScratchFolder scratch("single-instance");
    SingleInstanceLock lock(scratch.path());
    EXPECT_TRUE(lock.claim());
}

TEST(SingleInstanceLock, laterClaimsFailAndTheFirstIsNotified) {
    const ScratchFolder scratch("single-instance");
    SingleInstanceLock first(scratch.path());
    ASSERT_TRUE(first.claim());
    QSignalSpy asked(&first, &SingleInstanceLock::asked);
    SingleInstanceLock second(scratch.path());
    EXPECT_FALSE(second.claim());
    SingleInstanceLock third(scratch.path());
    EXPECT_FALSE(third.claim());
    while (asked.count() < 2)
        ASSERT_TRUE(asked.wait(test::longestWait));
}

TEST(SingleInstanceLock, theFirstReceivesTheMessagesOfTheOthersInOrder) {
    const ScratchFolder scratch("single-instance");
    SingleInstanceLock first(scratch.path());
    ASSERT_TRUE(first.claim("not sent to anybody"));
    std::vector<std::string> heard;
    QObject::connect(&first, &SingleInstanceLock::asked, &first,
                     [&heard](const std::string& message) { heard.push_back(message); });
    for (const char* const message : {"one", "", "three"})
        EXPECT_FALSE(SingleInstanceLock(scratch.path()).claim(message));
    QSignalSpy asked(&first, &SingleInstanceLock::asked);
    ASSERT_TRUE(asked.wait(test::longestWait));
    EXPECT_EQ(heard, (std::vector<std::string>{"one", "", "three"}));
}

TEST(SingleInstanceLock, aClaimWithoutAMessageLeavesTheFirstAlone) {
    const ScratchFolder scratch("single-instance");
    SingleInstanceLock first(scratch.path());
    ASSERT_TRUE(first.claim());
    std::vector<std::string> heard;
    QObject::connect(&first, &SingleInstanceLock::asked, &first,
                     [&heard](const std::string& message) { heard.push_back(message); });
    EXPECT_FALSE(SingleInstanceLock(scratch.path()).claim(std::nullopt));
    EXPECT_FALSE(SingleInstanceLock(scratch.path()).claim("later"));
    QSignalSpy asked(&first, &SingleInstanceLock::asked);
    ASSERT_TRUE(asked.wait(test::longestWait));
    EXPECT_EQ(heard, std::vector<std::string>{"later"});
}

TEST(SingleInstanceLock, aClaimSucceedsOnceTheFirstIsDestroyed) {
    const ScratchFolder scratch("single-instance");
    {
        SingleInstanceLock first(scratch.path());
        ASSERT_TRUE(first.claim());
    }
    SingleInstanceLock second(scratch.path());
    EXPECT_TRUE(second.claim());
}

TEST(SingleInstanceLock, theSocketOfAKilledProcessIsNoObstacle) {
    const ScratchFolder scratch("single-instance");
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        SingleInstanceLock lock(scratch.path());
        if (!lock.claim()) _exit(1);
        raise(SIGKILL);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));
    ASSERT_TRUE(fs::exists(scratch / "corvane.socket")) << "the child should have left its socket";

    SingleInstanceLock lock(scratch.path());
    ASSERT_TRUE(lock.claim());
    QSignalSpy asked(&lock, &SingleInstanceLock::asked);
    SingleInstanceLock second(scratch.path());
    EXPECT_FALSE(second.claim());
    EXPECT_TRUE(asked.count() == 1 || asked.wait(test::longestWait));
}

TEST(SingleInstanceLock, pathsLongerThanASocketsAddressAreNoObstacle) {
    const ScratchFolder scratch("single-instance");
    const fs::path deep = scratch / std::string(100, 'a') / std::string(100, 'b');
    fs::create_directories(deep);
    SingleInstanceLock first(deep);
    ASSERT_TRUE(first.claim());
    SingleInstanceLock second(deep);
    EXPECT_FALSE(second.claim());
}

TEST(SingleInstanceLock, anUnusableFolderDoesNotPreventTheStart) {
    const ScratchFolder scratch("single-instance");
    SingleInstanceLock nowhere{fs::path()};
    EXPECT_TRUE(nowhere.claim());
    SingleInstanceLock missing(scratch / "missing");
    EXPECT_TRUE(missing.claim());
}

void restore(const char* name, const QByteArray& value) {
    if (value.isNull()) {
        qunsetenv(name);
    } else {
        qputenv(name, value);
    }
}

class SingleInstanceFolder : public testing::Test {
  protected:
    void SetUp() override {
        runtime = qgetenv("XDG_RUNTIME_DIR");
        temporary = qgetenv("TMPDIR");
        qputenv("TMPDIR", scratch.path().c_str());
    }
    void TearDown() override {
        restore("XDG_RUNTIME_DIR", runtime);
        restore("TMPDIR", temporary);
    }

    ScratchFolder scratch{"single-instance"};
    const fs::path own = scratch / ("corvane-" + std::to_string(getuid()));
    QByteArray runtime;
    QByteArray temporary;
};

TEST_F(SingleInstanceFolder, isTheSessionsRuntimeFolder) {
    const fs::path folder = scratch / "runtime";
    fs::create_directory(folder);
    fs::permissions(folder, fs::perms::owner_all);
    qputenv("XDG_RUNTIME_DIR", folder.c_str());
    EXPECT_EQ(SingleInstanceLock::standardFolder(), folder);
}

TEST_F(SingleInstanceFolder, isAPrivateTemporaryOneWithoutARuntimeFolder) {
    qunsetenv("XDG_RUNTIME_DIR");
    EXPECT_EQ(SingleInstanceLock::standardFolder(), own);
    EXPECT_EQ(fs::status(own).permissions(), fs::perms::owner_all);
    EXPECT_EQ(SingleInstanceLock::standardFolder(), own) << "it may be there already";
}

TEST_F(SingleInstanceFolder, isNeverOneThatOthersCanWrite) {
    const fs::path folder = scratch / "runtime";
    fs::create_directory(folder);
    fs::permissions(folder, fs::perms::all);
    qputenv("XDG_RUNTIME_DIR", folder.c_str());
    EXPECT_EQ(SingleInstanceLock::standardFolder(), own);
    fs::permissions(own, fs::perms::all);
    EXPECT_EQ(SingleInstanceLock::standardFolder(), fs::path());
}

TEST_F(SingleInstanceFolder, isNoLinkThatSomebodyPlacedThere) {
    qunsetenv("XDG_RUNTIME_DIR");
    fs::create_directory(scratch / "elsewhere");
    fs::create_directory_symlink(scratch / "elsewhere", own);
    EXPECT_EQ(SingleInstanceLock::standardFolder(), fs::path());
}

TEST_F(SingleInstanceFolder, isNoneThatAnotherUserCreatedFirst) {
    if (getuid() != 0) GTEST_SKIP() << "only root can make a folder of another user";
    constexpr uid_t other = 12345;
    qunsetenv("XDG_RUNTIME_DIR");
    fs::create_directory(own);
    fs::permissions(own, fs::perms::owner_all);
    ASSERT_EQ(chown(own.c_str(), other, other), 0);
    EXPECT_EQ(SingleInstanceLock::standardFolder(), fs::path());
}

class LinuxSingleInstanceTest : public testing::Test {
  protected:
    void listen() {
        QObject::connect(&instance, &SingleInstance::reopened, &instance, [this] { ++heard; });
    }

    LinuxSingleInstance instance;
    int heard = 0;
};

TEST_F(LinuxSingleInstanceTest, aSecondStartIsReportedAtOnce) {
    listen();
    instance.Activate({});
    EXPECT_EQ(heard, 1);
    instance.Open({QStringLiteral("file:///notes")}, {});
    instance.ActivateAction(QStringLiteral("new-window"), {}, {});
    EXPECT_EQ(heard, 3);
}

TEST_F(LinuxSingleInstanceTest, theSecondStartsTokenIsReportedBeforeIt) {
    std::vector<std::string> heardInOrder;
    QObject::connect(&instance, &LinuxSingleInstance::startedWith, &instance,
                     [&](const StartupToken& startup) { heardInOrder.push_back(startup.startupId); });
    QObject::connect(&instance, &SingleInstance::reopened, &instance,
                     [&] { heardInOrder.emplace_back("reopened"); });
    instance.Activate({{QStringLiteral("desktop-startup-id"), QStringLiteral("id_TIME1")}});
    EXPECT_EQ(heardInOrder, (std::vector<std::string>{"id_TIME1", "reopened"}));
}

TEST_F(LinuxSingleInstanceTest, aSecondStartIsQueuedUntilAListenerConnects) {
    instance.Activate({});
    instance.Activate({});
    listen();
    EXPECT_EQ(heard, 0) << "whoever connects may not be ready yet";
    QCoreApplication::processEvents();
    EXPECT_EQ(heard, 1);
}

TEST_F(LinuxSingleInstanceTest, aDeliveredStartIsNotReportedToLaterListeners) {
    listen();
    instance.Activate({});
    QSignalSpy later(&instance, &SingleInstance::reopened);
    QCoreApplication::processEvents();
    EXPECT_EQ(heard, 1);
    EXPECT_EQ(later.count(), 0);
}

TEST_F(LinuxSingleInstanceTest, connectingAListenerReportsNothing) {
    listen();
    QCoreApplication::processEvents();
    EXPECT_EQ(heard, 0);
}

} // namespace
} // namespace corvane

#include "Intake/EventInbox.h"
#include "Support/TestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <fcntl.h>
#include <fstream>
#include <set>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

namespace fs = std::filesystem;

using corvane::AgentEvent;
using corvane::Date;
using corvane::EventInbox;
using corvane::test::setModificationDate;
using corvane::test::writeFile;

std::string eventText(std::string_view sessionID) {
    return "corvane-event 1\nsource=claude\nterm=\nbundle=\n---\n"
           R"({"hook_event_name":"Stop","session_id":")" +
           std::string(sessionID) + "\"}\n";
}

class EventInboxTest : public testing::Test {
  protected:
    [[nodiscard]] fs::path path(std::string_view name) const { return inbox.directory / name; }

    void addEvent(std::string_view name, Date date) const {
        writeFile(path(name), eventText(name));
        setModificationDate(path(name), date);
    }

    [[nodiscard]] std::vector<std::string> drainedSessions() const {
        std::vector<std::string> sessions;
        for (const AgentEvent& event : inbox.drain())
            sessions.push_back(event.sessionID);
        return sessions;
    }

    /// The names of all entries in the inbox, including hidden ones.
    [[nodiscard]] std::set<std::string> names() const {
        std::set<std::string> result;
        for (const auto& entry : fs::directory_iterator(inbox.directory))
            result.insert(entry.path().filename());
        return result;
    }

    /// Whether `check` holds in a child process that drops root's privileges.
    template <typename Check>
    [[nodiscard]] bool holdsForAnOrdinaryUser(Check check) const {
        fs::permissions(scratch.path().parent_path(), fs::perms(0755));
        const pid_t child = fork();
        if (child == 0) {
            constexpr uid_t nobody = 65534;
            if (geteuid() == 0 && setuid(nobody) != 0) _exit(2);
            _exit(check() ? 0 : 1);
        }
        int status = 0;
        return child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status) &&
               WEXITSTATUS(status) == 0;
    }

    corvane::test::ScratchFolder scratch;
    EventInbox inbox{scratch / "events"};

  private:
    void SetUp() override { fs::create_directory(inbox.directory); }
};

using Names = std::vector<std::string>;

TEST(EventInbox, deliversNothingFromAMissingDirectoryAndCreatesNothing) {
    const corvane::test::ScratchFolder scratch;
    EXPECT_TRUE(EventInbox{scratch / "absent"}.drain().empty());
    EXPECT_FALSE(fs::exists(scratch / "absent"));
}

TEST(EventInbox, deliversNothingFromAFileInTheDirectorysPlace) {
    const corvane::test::ScratchFolder scratch;
    writeFile(scratch / "events", "text");
    EXPECT_TRUE(EventInbox{scratch / "events"}.drain().empty());
    EXPECT_EQ(corvane::test::fileBytes(scratch / "events"), "text");
}

TEST_F(EventInboxTest, deliversAFileOnceWithItsDateToTheNanosecond) {
    const Date date(1'700'000'000, 123'456'789);
    addEvent("a.event", date);
    const std::vector<AgentEvent> events = inbox.drain();
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events.front(), AgentEvent::parse(eventText("a.event"), date));
    EXPECT_TRUE(names().empty());
    EXPECT_TRUE(inbox.drain().empty());
}

TEST_F(EventInboxTest, deliversOldestFirstWhateverTheNames) {
    addEvent("b.event", {1'700'000'002, 0});
    addEvent("c.event", {1'700'000'001, 0});
    addEvent("a.event", {1'700'000'003, 0});
    addEvent("d.event", {-5, 0});
    EXPECT_EQ(drainedSessions(), (Names{"d.event", "c.event", "b.event", "a.event"}));
}

TEST_F(EventInboxTest, keepsTheOrderOfEventsAMillisecondApart) {
    addEvent("a.event", {1'700'000'000, 3'000'000});
    addEvent("b.event", {1'700'000'000, 2'000'000});
    addEvent("c.event", {1'700'000'000, 1'999'999});
    EXPECT_EQ(drainedSessions(), (Names{"c.event", "b.event", "a.event"}));
}

TEST_F(EventInboxTest, ordersEqualDatesByPlainComparisonOfNames) {
    const Date date(1'700'000'000, 5);
    const Names sorted{"10-9.event", "9-10.event", "9-2.event", "Z.event", "a.event", "ä.event"};
    for (const std::size_t i : {3U, 5U, 0U, 4U, 2U, 1U})
        addEvent(sorted[i], date);
    EXPECT_EQ(drainedSessions(), sorted);
}

TEST_F(EventInboxTest, dropsTheOldestOfMoreThanTwoHundredUnread) {
    for (int i = 0; i < 205; ++i)
        addEvent(std::to_string(1000 - i) + ".event", {1'700'000'000 + i, 0});
    Names expected;
    for (int i = 5; i < 205; ++i)
        expected.push_back(std::to_string(1000 - i) + ".event");
    EXPECT_EQ(drainedSessions(), expected);
    EXPECT_TRUE(names().empty());
}

TEST_F(EventInboxTest, dropsNoneOfExactlyTwoHundred) {
    for (int i = 0; i < 200; ++i)
        addEvent(std::to_string(i) + ".event", {1'700'000'000 + i, 0});
    EXPECT_EQ(drainedSessions().size(), 200U);
    EXPECT_TRUE(names().empty());
}

TEST_F(EventInboxTest, countsMalformedFilesTowardsTheBacklogToo) {
    for (int i = 0; i < 200; ++i) {
        const std::string name = "bad" + std::to_string(i) + ".event";
        writeFile(path(name), "no event");
        setModificationDate(path(name), {1'700'000'100 + i, 0});
    }
    addEvent("old.event", {1'700'000'000, 0});
    EXPECT_EQ(drainedSessions(), Names{});
    EXPECT_TRUE(names().empty());
}

TEST_F(EventInboxTest, touchesNoFileWithAnotherNameOrAHiddenOne) {
    const std::set<std::string> others{"a.EVENT",  "b.Event",  "c.event.tmp", ".4711.1700000000.tmp",
                                       ".event",   ".d.event", "event",       "e.events",
                                       "f.event ", "g.event~"};
    for (const std::string& name : others)
        addEvent(name, {1'700'000'000, 0});
    addEvent("x..event", {1'700'000'000, 0});
    addEvent("with space.y.event", {1'700'000'001, 0});
    EXPECT_EQ(drainedSessions(), (Names{"x..event", "with space.y.event"}));
    EXPECT_EQ(names(), others);
    for (const std::string& name : others)
        EXPECT_EQ(corvane::test::fileBytes(path(name)), eventText(name));
}

TEST_F(EventInboxTest, deletesMalformedFilesAndDeliversTheOthers) {
    addEvent("1.event", {1'700'000'001, 0});
    writeFile(path("2.event"), "");
    writeFile(path("3.event"), eventText("\xFF"));
    writeFile(path("4.event"), eventText("s").substr(0, 60));
    writeFile(path("5.event"), "corvane-event 1\nsource=claude\n---\n" + std::string(100'000, '['));
    for (const char digit : std::string("2345")) {
        setModificationDate(path(std::string(1, digit) + ".event"), {1'700'000'000 + (digit - '0'), 0});
    }
    addEvent("6.event", {1'700'000'006, 0});
    EXPECT_EQ(drainedSessions(), (Names{"1.event", "6.event"}));
    EXPECT_TRUE(names().empty());
}

TEST_F(EventInboxTest, leavesDirectoriesAloneAndDoesNotCountThem) {
    for (int i = 0; i < 5; ++i) {
        fs::create_directory(path("folder" + std::to_string(i) + ".event"));
        setModificationDate(path("folder" + std::to_string(i) + ".event"), {1'800'000'000, 0});
    }
    writeFile(path("folder0.event/inner.event"), eventText("inner"));
    for (int i = 0; i < 200; ++i)
        addEvent(std::to_string(i) + ".event", {1'700'000'000 + i, 0});
    EXPECT_EQ(drainedSessions().size(), 200U);
    EXPECT_EQ(names().size(), 5U);
    EXPECT_TRUE(fs::exists(path("folder0.event/inner.event")));
}

TEST_F(EventInboxTest, deletesPipesAndSocketsWithoutWaiting) {
    ASSERT_EQ(mkfifo(path("pipe.event").c_str(), 0600), 0);
    const int server = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_GE(server, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string_view name = "socket.event";
    std::copy(name.begin(), name.end(), address.sun_path);
    // By its file name only: an address holds about a hundred bytes, and the folder's path may be longer.
    const fs::path before = fs::current_path();
    fs::current_path(inbox.directory);
    const int bound = bind(server, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    fs::current_path(before);
    ASSERT_EQ(bound, 0);
    ASSERT_TRUE(fs::is_socket(path("socket.event")));
    addEvent("z.event", {1'900'000'000, 0});
    EXPECT_EQ(drainedSessions(), Names{"z.event"});
    EXPECT_TRUE(names().empty());
    close(server);
}

TEST_F(EventInboxTest, deletesDevicesUnread) {
    struct stat zero {};
    ASSERT_EQ(stat("/dev/zero", &zero), 0);
    if (mknod(path("device.event").c_str(), S_IFCHR | 0600, zero.st_rdev) != 0) {
        GTEST_SKIP() << "making a device needs rights that this user lacks";
    }
    addEvent("z.event", {1'900'000'000, 0});
    EXPECT_EQ(drainedSessions(), Names{"z.event"});
    EXPECT_TRUE(names().empty());
}

TEST_F(EventInboxTest, deletesLinksAndLeavesTheirTargets) {
    writeFile(scratch / "outside.event", eventText("outside"));
    fs::create_directory(scratch / "folder");
    fs::create_symlink(scratch / "outside.event", path("file.event"));
    fs::create_directory_symlink(scratch / "folder", path("folder.event"));
    fs::create_symlink(scratch / "nowhere", path("dangling.event"));
    fs::create_symlink("loop.event", path("loop.event"));
    fs::create_symlink("/dev/zero", path("endless.event"));
    addEvent("z.event", {1'900'000'000, 0});
    EXPECT_EQ(drainedSessions(), Names{"z.event"});
    EXPECT_TRUE(names().empty());
    EXPECT_EQ(corvane::test::fileBytes(scratch / "outside.event"), eventText("outside"));
    EXPECT_TRUE(fs::is_directory(scratch / "folder"));
}

TEST(EventInbox, hasItsPublishedLimits) {
    EXPECT_EQ(EventInbox::maxFileSize, 67'108'864U);
    EXPECT_EQ(EventInbox::maxBacklog, 200U);
}

TEST_F(EventInboxTest, deletesAFileAboveTheLimitAndReadsOneOfExactlyThatSize) {
    const std::string head = eventText("large");
    for (const std::uintmax_t size : {EventInbox::maxFileSize + 1, EventInbox::maxFileSize * 1024}) {
        writeFile(path("huge.event"), head);
        fs::resize_file(path("huge.event"), size); // sparse
        EXPECT_EQ(drainedSessions(), Names{}) << size;
        EXPECT_TRUE(names().empty()) << size;
    }
    std::string whole = head + std::string(EventInbox::maxFileSize - head.size(), ' ');
    writeFile(path("large.event"), whole);
    EXPECT_EQ(drainedSessions(), Names{"large"});
    EXPECT_TRUE(names().empty());
    writeFile(path("larger.event"), whole + " ");
    EXPECT_EQ(drainedSessions(), Names{});
}

TEST_F(EventInboxTest, readsLargeAndSmallFilesInTurn) {
    const auto text = [](std::size_t padding) {
        return "corvane-event 1\nsource=claude\n---\n{\"hook_event_name\":\"Stop\",\"message\":\"" +
               std::string(padding, 'x') + "\"}";
    };
    const std::vector<std::size_t> sizes{10, 3'000'000, 1, 65'536, 65'535, 70'000, 0};
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        writeFile(path(std::to_string(i) + ".event"), text(sizes[i]));
        setModificationDate(path(std::to_string(i) + ".event"),
                            {1'700'000'000 + static_cast<std::int64_t>(i), 0});
    }
    std::vector<std::size_t> drained;
    for (const AgentEvent& event : inbox.drain())
        drained.push_back(event.message.size());
    EXPECT_EQ(drained, sizes);
}

TEST_F(EventInboxTest, deliversFilesAgainThatItCannotDelete) {
    addEvent("a.event", {1'700'000'000, 0});
    fs::permissions(inbox.directory, fs::perms(0555));
    EXPECT_TRUE(holdsForAnOrdinaryUser(
        [this] { return drainedSessions() == Names{"a.event"} && drainedSessions() == Names{"a.event"}; }));
    EXPECT_EQ(names(), std::set<std::string>{"a.event"});
}

TEST_F(EventInboxTest, deletesFilesThatItMayNotRead) {
    addEvent("a.event", {1'700'000'000, 0});
    fs::permissions(path("a.event"), fs::perms::none);
    addEvent("b.event", {1'700'000'001, 0});
    fs::permissions(inbox.directory, fs::perms(0777));
    EXPECT_TRUE(holdsForAnOrdinaryUser([this] { return drainedSessions() == Names{"b.event"}; }));
    EXPECT_TRUE(names().empty());
}

TEST_F(EventInboxTest, leavesFilesThatItCanListButNotReach) {
    addEvent("a.event", {1'700'000'000, 0});
    fs::permissions(inbox.directory, fs::perms(0666));
    const bool gaveNothing = holdsForAnOrdinaryUser([this] { return inbox.drain().empty(); });
    fs::permissions(inbox.directory, fs::perms(0755));
    EXPECT_TRUE(gaveNothing);
    EXPECT_EQ(drainedSessions(), Names{"a.event"});
}

TEST_F(EventInboxTest, deliversNothingFromAFolderItMayNotList) {
    addEvent("a.event", {1'700'000'000, 0});
    fs::permissions(inbox.directory, fs::perms(0333));
    const bool gaveNothing = holdsForAnOrdinaryUser([this] { return inbox.drain().empty(); });
    fs::permissions(inbox.directory, fs::perms(0755));
    EXPECT_TRUE(gaveNothing);
    EXPECT_EQ(drainedSessions(), Names{"a.event"});
}

TEST_F(EventInboxTest, leavesNoDescriptorOpen) {
    const auto lowestFree = [] {
        const int descriptor = open("/dev/null", O_RDONLY | O_CLOEXEC);
        close(descriptor);
        return descriptor;
    };
    const int before = lowestFree();
    for (int round = 0; round < 3; ++round) {
        addEvent("good.event", {1'700'000'000, 0});
        writeFile(path("bad.event"), "bad");
        writeFile(path("huge.event"), "");
        fs::resize_file(path("huge.event"), EventInbox::maxFileSize + 1);
        ASSERT_EQ(mkfifo(path("pipe.event").c_str(), 0600), 0);
        EXPECT_EQ(drainedSessions(), Names{"good.event"});
        EXPECT_TRUE(EventInbox{path("absent")}.drain().empty());
    }
    EXPECT_EQ(lowestFree(), before);
}

/// Calls `drain()` until `writer` has ended and the inbox is empty; returns all sessions seen.
template <typename Writer>
Names drainWhile(const EventInbox& inbox, Writer write) {
    std::atomic<bool> finished = false;
    std::thread writer([&] {
        write();
        finished = true;
    });
    Names sessions;
    bool wasFinished = false;
    while (!wasFinished) {
        wasFinished = finished;
        for (const AgentEvent& event : inbox.drain())
            sessions.push_back(event.sessionID);
        std::this_thread::yield();
    }
    writer.join();
    return sessions;
}

TEST_F(EventInboxTest, deliversEachEventExactlyOnceWhileHooksKeepWriting) {
    // The writer waits when a backlog builds up, since more than two hundred are rightly dropped.
    constexpr int count = 5000;
    std::atomic<int> written = 0;
    std::atomic<int> delivered = 0;
    std::atomic<bool> finished = false;
    std::thread writer([&] {
        for (int i = 0; i < count; ++i) {
            while (written - delivered >= 100)
                std::this_thread::yield();
            const fs::path hidden = path(std::string(".").append(std::to_string(i)));
            writeFile(hidden, eventText(std::to_string(i)));
            fs::rename(hidden, path(std::to_string(i) + ".event"));
            ++written;
        }
        finished = true;
    });
    std::set<int> sessions;
    bool wasFinished = false;
    while (!wasFinished) {
        wasFinished = finished;
        for (const AgentEvent& event : inbox.drain()) {
            EXPECT_TRUE(sessions.insert(std::stoi(event.sessionID)).second) << event.sessionID;
            ++delivered;
        }
        std::this_thread::yield();
    }
    writer.join();
    EXPECT_EQ(sessions.size(), static_cast<std::size_t>(count));
    EXPECT_TRUE(names().empty());
}

TEST_F(EventInboxTest, toleratesFilesThatGrowShrinkAndVanish) {
    const std::string text = eventText("s");
    const Names sessions = drainWhile(inbox, [&] {
        for (int i = 0; i < 500; ++i) {
            std::ofstream file(path("a.event"), std::ios::binary);
            file << text << std::flush;
            file << std::string(static_cast<std::size_t>(i % 7) * 20'000, ' ') << std::flush;
            std::error_code ignored;
            if (i % 3 == 0) fs::resize_file(path("a.event"), static_cast<std::uintmax_t>(i % 50), ignored);
            if (i % 5 == 0) fs::remove(path("a.event"), ignored);
        }
    });
    for (const std::string& session : sessions)
        EXPECT_EQ(session, "s");
    EXPECT_TRUE(names().empty());
}

TEST_F(EventInboxTest, toleratesNamesThatChangeTheirFileType) {
    writeFile(scratch / "outside", eventText("outside"));
    const Names sessions = drainWhile(inbox, [&] {
        for (int i = 0; i < 600; ++i) {
            std::error_code ignored;
            const fs::path hidden = path(".new");
            if (i % 3 == 0) fs::create_symlink(scratch / "outside", hidden, ignored);
            if (i % 3 == 1) mkfifo(hidden.c_str(), 0600);
            if (i % 3 == 2) writeFile(hidden, eventText("inside"));
            fs::rename(hidden, path("a.event"), ignored);
        }
    });
    for (const std::string& session : sessions)
        EXPECT_EQ(session, "inside");
    EXPECT_TRUE(names().empty());
    EXPECT_EQ(corvane::test::fileBytes(scratch / "outside"), eventText("outside"));
}

} // namespace

#include "InboxFolder.h"
#include "Intake/EventInbox.h"
#include "Intake/InboxReader.h"
#include "Support/FileDescriptor.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using test::sessionIDs;

using Names = std::vector<std::string>;

class InboxReaderTest : public testing::Test {
  protected:
    /// A whole pass; returns the sessions of its events. `steps_` counts its steps.
    Names pass(const InboxReader::Share& share = {}) {
        std::vector<AgentEvent> events;
        reader_.begin();
        steps_ = 1;
        while (reader_.step(events, share))
            ++steps_;
        return sessionIDs(events);
    }

    test::InboxFolder inbox_;
    InboxReader reader_{inbox_.path()};
    int steps_ = 0;
};

TEST_F(InboxReaderTest, aSmallInboxTakesOneStep) {
    EXPECT_EQ(pass(), Names());
    EXPECT_EQ(steps_, 1);
    for (int i = 0; i < 200; ++i)
        inbox_.add(std::to_string(i) + ".event", {1'700'000'000 + i, 0});
    EXPECT_EQ(pass().size(), 200U);
    EXPECT_EQ(steps_, 1);
    EXPECT_FALSE(reader_.wasLarge());
    EXPECT_EQ(inbox_.count(), 0U);
}

TEST_F(InboxReaderTest, largeFilesTakeAStepEachAndArriveInOrder) {
    for (const int i : {3, 1, 4, 2})
        inbox_.add(std::to_string(i) + ".event", {1'700'000'000 + i, 0}, 5'000'000);
    EXPECT_EQ(pass(), (Names{"1.event", "2.event", "3.event", "4.event"}));
    EXPECT_EQ(steps_, 4);
    EXPECT_TRUE(reader_.wasLarge());
    EXPECT_EQ(pass(), Names());
    EXPECT_FALSE(reader_.wasLarge()) << "that was the pass before";
}

TEST_F(InboxReaderTest, everyShareOfTheWorkDeliversTheSameEvents) {
    constexpr InboxReader::Share shares[]{
        {1, 1, 1}, {1000, 1, 500}, {7, 1000, 1'000'000}, {7, 3, 500}, {1000, 1000, 1}};
    for (const InboxReader::Share& share : shares) {
        Names expected;
        for (int i = 0; i < 211; ++i) {
            const std::string name = std::to_string(1000 - i) + ".event";
            inbox_.add(name, {1'700'000'000 + i, 0});
            if (i >= 11) expected.push_back(name);
        }
        EXPECT_EQ(pass(share), expected) << share.names;
        EXPECT_GT(steps_, 1) << share.names;
        EXPECT_EQ(inbox_.count(), 0U);
    }
}

TEST_F(InboxReaderTest, aFileReplacedByAPipeAfterTheListingIsDeletedUnread) {
    inbox_.add("a.event", {1'700'000'000, 0});
    inbox_.add("b.event", {1'700'000'001, 0});
    std::vector<AgentEvent> events;
    reader_.begin();
    ASSERT_TRUE(reader_.step(events, {.bytes = 0})) << "it only lists";
    fs::remove(inbox_ / "a.event");
    ASSERT_EQ(mkfifo((inbox_ / "a.event").c_str(), 0600), 0);
    // While a pipe has a writer, reading it fails like a file that can perhaps be read later.
    const files::FileDescriptor writer(open((inbox_ / "a.event").c_str(), O_RDWR | O_CLOEXEC));
    ASSERT_TRUE(writer.isOpen());
    while (reader_.step(events)) {
    }
    EXPECT_EQ(sessionIDs(events), Names{"b.event"});
    EXPECT_EQ(inbox_.count(), 0U);
}

TEST_F(InboxReaderTest, filesThatArriveDuringAPassWaitForTheNextAndCountTowardsItsBacklog) {
    for (int i = 0; i < 200; ++i)
        inbox_.add("a" + std::to_string(i) + ".event", {1'700'000'000 + i, 0});
    std::vector<AgentEvent> events;
    reader_.begin();
    // The listing is complete, and one file is read.
    ASSERT_TRUE(reader_.step(events, {1000, 1000, 1}));
    ASSERT_EQ(events.size(), 1U);
    for (int i = 0; i < 200; ++i)
        inbox_.add("b" + std::to_string(i) + ".event", {1'600'000'000 + i, 0});
    while (reader_.step(events)) {
    }
    EXPECT_EQ(events.size(), 200U) << "none of the first two hundred is dropped for those";
    EXPECT_EQ(events.back().sessionID, "a199.event");
    EXPECT_EQ(pass().size(), 200U);
}

TEST_F(InboxReaderTest, theNewestFilesOfAVeryLargeInboxAreRead) {
    for (int i = 0; i < 1'000; ++i)
        inbox_.add(std::to_string(i) + ".event", {1'700'000'000 + i, 0});
    const Names read = pass({100, 100, 1'000'000});
    ASSERT_EQ(read.size(), EventInbox::maxBacklog);
    EXPECT_EQ(read.front(), "800.event");
    EXPECT_EQ(read.back(), "999.event");
    // Ten for the names and one that finds no more, which begins to delete; the last deletes and reads.
    EXPECT_EQ(steps_, 18);
    EXPECT_EQ(inbox_.count(), 0U);
}

TEST_F(InboxReaderTest, anInboxThatDisappearsReturnsOrChangesItsTypeIsTolerated) {
    inbox_.add("a.event", {1'700'000'000, 0});
    fs::rename(inbox_.path(), inbox_.scratch() / "moved");
    EXPECT_EQ(pass(), Names());
    EXPECT_FALSE(reader_.wasLarge());
    test::writeFile(inbox_.path(), "a file");
    EXPECT_EQ(pass(), Names());
    EXPECT_EQ(test::fileBytes(inbox_.path()), "a file");
    fs::remove(inbox_.path());
    fs::create_symlink(inbox_.scratch() / "nowhere", inbox_.path());
    EXPECT_EQ(pass(), Names());
    fs::remove(inbox_.path());
    fs::rename(inbox_.scratch() / "moved", inbox_.path());
    EXPECT_EQ(pass(), Names{"a.event"});
}

TEST_F(InboxReaderTest, anInboxThatIsRemovedDuringAPassEndsIt) {
    for (int i = 0; i < 20; ++i)
        inbox_.add(std::to_string(i) + ".event", {1'700'000'000 + i, 0});
    std::vector<AgentEvent> events;
    reader_.begin();
    ASSERT_TRUE(reader_.step(events, {1000, 1000, 1}));
    fs::remove_all(inbox_.path());
    while (reader_.step(events)) {
    }
    EXPECT_EQ(sessionIDs(events), Names{"0.event"});
    EXPECT_EQ(reader_.undeletableCount(), 0U) << "they are gone";
}

} // namespace
} // namespace corvane

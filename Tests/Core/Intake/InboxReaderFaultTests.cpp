#include "InboxFolder.h"
#include "Intake/InboxReader.h"
#include "Support/FaultInjection.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {
namespace {

namespace faults = test::faults;
using test::sessionIDs;

using Names = std::vector<std::string>;

constexpr Date noon(1'700'000'000, 0);
constexpr int all = 1; // with `keepFailing`

class InboxReaderFaults : public testing::Test {
  protected:
    Names pass(InboxReader& reader) {
        std::vector<AgentEvent> events;
        reader.begin();
        while (reader.step(events)) {
        }
        return sessionIDs(events);
    }

    /// A pass in which all calls of `failing` fail; for `name` only, if given.
    Names failingPass(std::string_view failing, int error, std::string_view name = {}) {
        faults::arm({all,
                     faults::Action::keepFailing,
                     error,
                     {},
                     [=](std::string_view function, std::string_view path) {
                         return function == failing && (name.empty() || path == name);
                     }});
        Names read = pass(reader_);
        calls_ = faults::disarm();
        return read;
    }

    test::InboxFolder inbox_;
    InboxReader reader_{inbox_.path()};
    int calls_ = 0;
};

TEST_F(InboxReaderFaults, aFileThatCannotBeDeletedIsDeliveredOnce) {
    for (const int error : {EACCES, EROFS, EPERM, EIO}) {
        inbox_.add("a.event", noon);
        inbox_.add("b.event", noon);
        EXPECT_EQ(failingPass("unlinkat", error), (Names{"a.event", "b.event"}));
        EXPECT_EQ(reader_.undeletableCount(), 2U);
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(failingPass("unlinkat", error), Names()) << error;
            EXPECT_EQ(calls_, 2) << "each is tried once";
        }
        EXPECT_EQ(inbox_.count(), 2U);
        EXPECT_EQ(pass(reader_), Names());
        EXPECT_EQ(inbox_.count(), 0U) << "deleted as soon as that is possible, and not read again";
        EXPECT_EQ(reader_.undeletableCount(), 0U);
    }
}

TEST_F(InboxReaderFaults, aFileOfTheSameNameWithAnotherDateIsAnotherEvent) {
    inbox_.add("a.event", noon);
    EXPECT_EQ(failingPass("unlinkat", EACCES), Names{"a.event"});
    inbox_.add("a.event", {noon.seconds(), 1});
    EXPECT_EQ(failingPass("unlinkat", EACCES), Names{"a.event"});
    EXPECT_EQ(failingPass("unlinkat", EACCES), Names());
    EXPECT_EQ(reader_.undeletableCount(), 1U);
}

TEST_F(InboxReaderFaults, filesRemovedByOthersAreForgotten) {
    inbox_.add("a.event", noon);
    EXPECT_EQ(failingPass("unlinkat", EACCES), Names{"a.event"});
    std::filesystem::remove(inbox_ / "a.event");
    EXPECT_EQ(failingPass("unlinkat", EACCES), Names());
    EXPECT_EQ(reader_.undeletableCount(), 0U);
}

TEST_F(InboxReaderFaults, laterPassesRetryOnlyAFewFailedDeletions) {
    for (int i = 0; i < 100; ++i)
        inbox_.add(std::to_string(i) + ".event", noon);
    EXPECT_EQ(failingPass("unlinkat", EROFS).size(), 100U);
    EXPECT_EQ(failingPass("unlinkat", EROFS), Names());
    EXPECT_EQ(calls_, 8);
}

TEST_F(InboxReaderFaults, anUndeletableFileDoesNotDelayOthers) {
    for (const char* const name : {"a.event", "b.event", "c.event"})
        inbox_.add(name, noon);
    EXPECT_EQ(failingPass("unlinkat", EROFS).size(), 3U);
    EXPECT_EQ(failingPass("unlinkat", EPERM, "a.event"), Names());
    EXPECT_EQ(inbox_.count(), 1U);
    EXPECT_EQ(reader_.undeletableCount(), 1U);
}

TEST_F(InboxReaderFaults, aFileWhoseDateIsTemporarilyUnreadableIsStillKnown) {
    inbox_.add("a.event", noon);
    EXPECT_EQ(failingPass("unlinkat", EROFS), Names{"a.event"});
    faults::arm({all, faults::Action::failEach, EIO, {}, [](std::string_view function, std::string_view) {
                     return function == "fstatat" || function == "unlinkat";
                 }});
    EXPECT_EQ(pass(reader_), Names());
    EXPECT_GT(faults::disarm(), 1);
    EXPECT_EQ(pass(reader_), Names());
    EXPECT_EQ(inbox_.count(), 0U);
}

TEST_F(InboxReaderFaults, aFileThatCouldNeitherBeReadNorDeletedIsReadLater) {
    inbox_.add("a.event", noon);
    for (int i = 0; i < 12; ++i) {
        faults::arm({all, faults::Action::failEach, EIO, {}, [](std::string_view function, std::string_view) {
                         return function == "openat" || function == "unlinkat";
                     }});
        EXPECT_EQ(pass(reader_), Names());
        static_cast<void>(faults::disarm());
        ASSERT_EQ(inbox_.count(), 1U) << i;
    }
    EXPECT_EQ(reader_.undeletableCount(), 0U);
    EXPECT_EQ(pass(reader_), Names{"a.event"});
    EXPECT_EQ(inbox_.count(), 0U);
}

TEST_F(InboxReaderFaults, aBacklogThatCannotBeDeletedIsNotReadLater) {
    for (int i = 0; i < 203; ++i)
        inbox_.add(std::to_string(i) + ".event", {noon.seconds() + i, 0});
    EXPECT_EQ(failingPass("unlinkat", EROFS).size(), 200U);
    EXPECT_EQ(reader_.undeletableCount(), 203U);
    inbox_.add("new.event", {noon.seconds() + 1000, 0});
    EXPECT_EQ(failingPass("unlinkat", EROFS), Names{"new.event"})
        << "the others take no place in the backlog";
    EXPECT_EQ(pass(reader_), Names());
    EXPECT_EQ(inbox_.count(), 0U);
}

TEST_F(InboxReaderFaults, aListingThatFailsForgetsNothing) {
    inbox_.add("a.event", noon);
    inbox_.add("b.event", noon);
    EXPECT_EQ(failingPass("unlinkat", EACCES).size(), 2U);
    // Two entries are the folder itself and its parent.
    for (const int call : {1, 4, 5}) {
        faults::arm({call, faults::Action::fail, EIO, {}, [](std::string_view function, std::string_view) {
                         return function == "readdir";
                     }});
        EXPECT_EQ(pass(reader_), Names());
        EXPECT_EQ(faults::disarm(), call);
        EXPECT_EQ(reader_.undeletableCount(), 2U);
    }
    EXPECT_EQ(failingPass("unlinkat", EACCES), Names());
}

TEST_F(InboxReaderFaults, aTemporarilyUnreadableFileWaitsAndSoDoThoseAfterIt) {
    for (const int error : {EMFILE, ENFILE, ENOMEM, EIO, ESTALE}) {
        for (const char* const name : {"a.event", "b.event", "c.event"})
            inbox_.add(name, noon);
        EXPECT_EQ(failingPass("openat", error, "b.event"), Names{"a.event"});
        EXPECT_EQ(inbox_.count(), 2U);
        EXPECT_EQ(failingPass("openat", error, "b.event"), Names());
        EXPECT_EQ(pass(reader_), (Names{"b.event", "c.event"})) << error;
        EXPECT_EQ(inbox_.count(), 0U);
    }
}

TEST_F(InboxReaderFaults, afterTenPassesItIsDeletedUnread) {
    inbox_.add("a.event", noon);
    inbox_.add("b.event", noon);
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(failingPass("openat", EIO, "a.event"), Names()) << i;
        EXPECT_EQ(inbox_.count(), 2U) << i;
    }
    EXPECT_EQ(failingPass("openat", EIO, "a.event"), Names{"b.event"});
    EXPECT_EQ(inbox_.count(), 0U);
    // The next one gets as many passes.
    inbox_.add("c.event", noon);
    EXPECT_EQ(failingPass("openat", EIO, "c.event"), Names());
    EXPECT_EQ(pass(reader_), Names{"c.event"});
}

TEST_F(InboxReaderFaults, anInboxOfUnreadableFilesStillEmpties) {
    for (int i = 0; i < 10; ++i)
        static_cast<void>((inbox_.add("a.event", noon), failingPass("read", EIO)));
    for (const char* const name : {"b.event", "c.event"})
        inbox_.add(name, noon);
    EXPECT_EQ(failingPass("read", EIO), Names());
    EXPECT_EQ(inbox_.count(), 0U) << "no waiting for each of them";
}

TEST_F(InboxReaderFaults, aFileThatMayNotBeReadIsDeletedAtOnce) {
    inbox_.add("a.event", noon);
    EXPECT_EQ(failingPass("openat", EACCES), Names());
    EXPECT_EQ(inbox_.count(), 0U);
}

} // namespace
} // namespace corvane

#include "Intake/EventInbox.h"
#include "Support/FaultInjection.h"
#include "Support/TestSupport.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace {

namespace fs = std::filesystem;
namespace faults = corvane::test::faults;

using corvane::AgentEvent;
using corvane::Date;
using corvane::EventInbox;

class EventInboxFaults : public testing::Test {
  protected:
    void addEvent(std::string_view name, Date date) const {
        const fs::path file = inbox.directory / name;
        corvane::test::writeFile(file, "corvane-event 1\nsource=claude\n---\n"
                                       R"({"hook_event_name":"Stop","session_id":")" +
                                           std::string(name) + "\"}\n");
        corvane::test::setModificationDate(file, date);
    }

    [[nodiscard]] std::size_t files() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(inbox.directory), {}));
    }

    corvane::test::ScratchFolder scratch;
    EventInbox inbox{scratch.path()};
};

TEST_F(EventInboxFaults, aFolderThatCannotBeListedCompletelyDeliversNothingAndKeepsItsFiles) {
    for (const char* name : {"a.event", "b.event", "c.event", "d.event"})
        addEvent(name, {1'700'000'000, 0});
    // Two entries are the folder itself and its parent.
    for (const int call : {1, 4, 7}) {
        faults::arm({call, faults::Action::fail, EIO, {}, [](std::string_view function, std::string_view) {
                         return function == "readdir";
                     }});
        const std::vector<AgentEvent> events = inbox.drain();
        EXPECT_EQ(faults::disarm(), call);
        EXPECT_TRUE(events.empty()) << call;
        EXPECT_EQ(files(), 4U) << call;
    }
    EXPECT_EQ(inbox.drain().size(), 4U);
}

TEST_F(EventInboxFaults, aFileOfUnknownDateIsDeliveredFirstAndDeleted) {
    // Older than 1970.
    addEvent("a.event", {-5'000'000'000, 0});
    addEvent("b.event", {1'700'000'000, 0});
    addEvent("c.event", {1'700'000'001, 0});
    faults::arm({1, faults::Action::fail, EIO, {}, [](std::string_view function, std::string_view path) {
                     return function == "fstatat" && path == "c.event";
                 }});
    const std::vector<AgentEvent> events = inbox.drain();
    EXPECT_EQ(faults::disarm(), 1);
    ASSERT_EQ(events.size(), 3U);
    EXPECT_EQ(events[0].sessionID, "c.event");
    EXPECT_EQ(events[0].date, Date::distantPast());
    EXPECT_EQ(events[1].sessionID, "a.event");
    EXPECT_EQ(events[2].sessionID, "b.event");
    EXPECT_EQ(files(), 0U);
}

TEST_F(EventInboxFaults, aFileThatCannotBeReadIsDeletedAndTheOthersAreDelivered) {
    for (const char* failing : {"openat", "fstat", "read"}) {
        addEvent("a.event", {1'700'000'000, 0});
        addEvent("b.event", {1'700'000'001, 0});
        faults::arm({1, faults::Action::fail, EIO, {}, [&](std::string_view function, std::string_view) {
                         return function == failing;
                     }});
        const std::vector<AgentEvent> events = inbox.drain();
        EXPECT_GE(faults::disarm(), 1);
        ASSERT_EQ(events.size(), 1U) << failing;
        EXPECT_EQ(events[0].sessionID, "b.event") << failing;
        EXPECT_EQ(files(), 0U) << failing;
    }
}

TEST_F(EventInboxFaults, anInterruptedReadIsContinued) {
    addEvent("a.event", {1'700'000'000, 0});
    faults::arm({1, faults::Action::fail, EINTR, {}, [](std::string_view function, std::string_view) {
                     return function == "read";
                 }});
    EXPECT_EQ(inbox.drain().size(), 1U);
    EXPECT_GE(faults::disarm(), 2);
}

} // namespace

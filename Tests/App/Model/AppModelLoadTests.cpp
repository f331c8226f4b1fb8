// Unusually many and unusually large events: what is kept of them, and how a pass is spread over the event
// loop.

#include "App/Support/AppModelSupport.h"
#include "Sessions/AlertText.h"

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace corvane {
namespace {

using std::chrono::milliseconds;
using test::AppModelTest;

std::string prompt(const std::string& session, const std::string& message) {
    return R"({"hook_event_name":"Notification","session_id":")" + session +
           R"(","cwd":"/w/shop","notification_type":"permission_prompt","message":")" + message + "\"}";
}

TEST_F(AppModelTest, onlyWhatAnAlertShowsOfALargeMessageIsKept) {
    const std::string message = "Which of them? " + std::string(5'000'000, 'x');
    drop("claude", prompt("s", message));
    pass();
    ASSERT_EQ(model().board().sessions().size(), 1U);
    const std::string& kept = model().board().sessions()[0].message;
    EXPECT_LE(kept.size(), AlertText::longestKept + 8);
    EXPECT_EQ(AlertText::plain(kept), AlertText::plain(message));
    ASSERT_EQ(visible(), 1U);
}

TEST_F(AppModelTest, anOrdinaryMessageIsKeptWhole) {
    const std::string message(16'000, 'x');
    drop("claude", prompt("s", message));
    pass();
    EXPECT_EQ(model().board().sessions().at(0).message, message);
}

TEST_F(AppModelTest, largeNamesAreShortenedAndTheSessionIsTheSame) {
    const std::string session(5'000'000, 's');
    const auto report = [&](const char* event) {
        drop("claude", R"({"hook_event_name":")" + std::string(event) + R"(","session_id":")" + session +
                           R"(","cwd":"/)" + std::string(5'000'000, 'w') +
                           R"(/shop","notification_type":"permission_prompt","message":"?"})");
        pass();
    };
    report("Notification");
    ASSERT_EQ(model().board().sessions().size(), 1U);
    const AgentSession& kept = model().board().sessions().front();
    EXPECT_LE(kept.sessionID.size(), 2 * AgentEvent::longestName);
    EXPECT_LE(kept.cwd.size(), 2 * AgentEvent::longestName);
    EXPECT_EQ(kept.repoName(), "shop");
    EXPECT_EQ(visible(), 1U);
    report("SessionEnd");
    EXPECT_TRUE(model().board().sessions().empty());
    EXPECT_EQ(visible(), 0U);
}

TEST_F(AppModelTest, aLargePassYieldsToTheEventLoopAndTakesEffectAtItsEnd) {
    for (int i = 0; i < 4; ++i)
        drop("claude", prompt(std::to_string(i), std::string(5'000'000, 'x')), Seconds(1 - 0.1 * i));
    int turns = 0;
    const std::function<void()> turn = [&] {
        if (model().ticks() > 0) return;
        ++turns;
        EXPECT_TRUE(model().board().sessions().empty());
        EXPECT_EQ(visible(), 0U);
        platform_.time.after(milliseconds(0), turn);
    };
    model();
    platform_.time.after(milliseconds(0), turn);
    platform_.time.advance(milliseconds(0));
    EXPECT_EQ(turns, 3) << "one after each file but the last";
    EXPECT_EQ(model().ticks(), 1);
    ASSERT_EQ(model().board().sessions().size(), 4U);
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_EQ(model().board().sessions()[i].sessionID, std::to_string(i));
    EXPECT_EQ(visible(), 3U);
    EXPECT_EQ(platform_.panels.all.size(), 3U);
    EXPECT_EQ(played(), std::vector<std::string>{"Glass"});

    platform_.time.advance(milliseconds(999));
    EXPECT_EQ(model().ticks(), 1);
    platform_.time.advance(milliseconds(1));
    EXPECT_EQ(model().ticks(), 2);
}

TEST_F(AppModelTest, aModelDestroyedDuringAPassReadsNoFurther) {
    for (int i = 0; i < 3; ++i)
        drop("claude", prompt(std::to_string(i), std::string(5'000'000, 'x')), Seconds(1 - 0.1 * i));
    model();
    platform_.time.after(milliseconds(0), [this] { model_.reset(); });
    platform_.time.advance(milliseconds(0));
    EXPECT_FALSE(model_);
    EXPECT_EQ(platform_.time.pendingCount(), 0U);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(paths_.events()), {}), 2);
}

TEST_F(AppModelTest, theNewestTwoHundredOfAStormArriveInEachPass) {
    pass();
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < 500; ++i) {
            dropClaude("UserPromptSubmit", std::to_string(round) + "-" + std::to_string(i),
                       Seconds(0.9 - 0.001 * i));
        }
        pass();
        const std::vector<AgentSession>& sessions = model().board().sessions();
        ASSERT_EQ(sessions.size(), 200U * static_cast<std::size_t>(round + 1));
        for (std::size_t i = 0; i < 200; ++i) {
            EXPECT_EQ(sessions[sessions.size() - 200 + i].sessionID,
                      std::to_string(round) + "-" + std::to_string(300 + i));
        }
    }
}

} // namespace
} // namespace corvane

// The requests to sway, its replies, and the handling of invalid ones.

#include "App/Platform/Linux/Windows/FakeSway.h"
#include "Platform/Linux/SwayIpc.h"
#include "Platform/Linux/SwayOutputs.h"
#include "Platform/Linux/SwayWindows.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QtTest/QTest>
#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <vector>

namespace corvane {
namespace {

using namespace std::chrono_literals;
using test::FakeSway;

constexpr std::uint32_t runCommand = 0;
constexpr std::uint32_t workspacesRequest = 1;
constexpr std::uint32_t outputsRequest = 3;
constexpr std::uint32_t treeRequest = 4;

// Far above any delay on a busy machine.
constexpr std::chrono::milliseconds longLimit{20000};

class SwayIpc : public testing::Test {
  protected:
    /// The reply to a request for the tree, or none.
    std::optional<QByteArray> ask(std::chrono::milliseconds limit = longLimit) {
        std::vector<std::optional<QByteArray>> answers;
        sway::ask(
            sway_.socket(), sway::Request::tree, {}, context_,
            [&answers](const std::optional<QByteArray>& json) { answers.push_back(json); }, limit);
        EXPECT_TRUE(answers.empty()) << "it is never called before the function returns";
        EXPECT_TRUE(QTest::qWaitFor([&] { return !answers.empty(); }, 30000));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_TRUE(context_.children().empty()) << "something is left behind";
        EXPECT_EQ(answers.size(), 1U);
        return answers.empty() ? std::nullopt : answers.front();
    }
    /// The reply if sway sends these bytes.
    std::optional<QByteArray> askFor(const QByteArray& bytes, std::chrono::milliseconds limit = longLimit) {
        sway_.respond = [bytes](std::uint32_t, const QByteArray&) { return bytes; };
        return ask(limit);
    }

    FakeSway sway_;
    QObject context_;
};

TEST_F(SwayIpc, aReplyIsReturnedWhole) {
    sway_.replies = {"{\"id\":1}"};
    EXPECT_EQ(ask(), QByteArray("{\"id\":1}"));
    EXPECT_EQ(sway_.requests, (std::vector<std::pair<std::uint32_t, QByteArray>>{{treeRequest, ""}}));
    sway_.replies = {QByteArray(100000, 'x')};
    EXPECT_EQ(ask(), QByteArray(100000, 'x')) << "longer than what one call reads";
}

TEST_F(SwayIpc, anInvalidReplyIsNone) {
    sway_.hangsUp = true;
    EXPECT_EQ(askFor(""), std::nullopt);
    EXPECT_EQ(askFor("i3-ip"), std::nullopt);
    EXPECT_EQ(askFor(FakeSway::message(treeRequest, "{}").chopped(1)), std::nullopt);
    sway_.hangsUp = false;
    EXPECT_EQ(askFor("HTTP/1.1 400 Bad Request\r\n\r\n"), std::nullopt);
    EXPECT_EQ(askFor(FakeSway::message(runCommand, "{}")), std::nullopt) << "to another request";
}

TEST_F(SwayIpc, aReplyWithAHugeLengthIsRefusedAtOnce) {
    QByteArray bytes = FakeSway::message(treeRequest, "{}");
    for (int i = 6; i < 10; ++i)
        bytes[i] = '\xFF';
    QElapsedTimer time;
    time.start();
    EXPECT_EQ(askFor(bytes), std::nullopt);
    EXPECT_LT(time.elapsed(), longLimit.count());
}

TEST_F(SwayIpc, aHangingServerTimesOut) {
    EXPECT_EQ(askFor("", 10ms), std::nullopt);
    EXPECT_EQ(askFor(FakeSway::message(treeRequest, "{}").chopped(1), 10ms), std::nullopt);
}

TEST_F(SwayIpc, withoutAServerThereIsNoReply) {
    for (const char* const path : {"", "/nonexistent/socket", "/"}) {
        std::vector<std::optional<QByteArray>> answers;
        sway::ask(QString::fromUtf8(path), sway::Request::tree, {}, context_,
                  [&answers](const std::optional<QByteArray>& json) { answers.push_back(json); });
        EXPECT_TRUE(QTest::qWaitFor([&] { return !answers.empty(); }, 30000));
        EXPECT_EQ(answers, std::vector<std::optional<QByteArray>>{std::nullopt}) << path;
    }
}

TEST_F(SwayIpc, nothingIsReportedToADestroyedContext) {
    bool isCalled = false;
    {
        QObject gone;
        sway::ask(sway_.socket(), sway::Request::tree, {}, gone,
                  [&isCalled](const auto&) { isCalled = true; });
    }
    sway_.replies = {"{}", "{}"};
    EXPECT_TRUE(ask().has_value());
    EXPECT_FALSE(isCalled);
}

// Two workspaces; the one on the right was left last and has a floating window in front of two tiled ones.
constexpr const char* tree = R"({"id":1,"type":"root","focus":[20],"nodes":[
  {"id":20,"type":"output","focus":[31,30],"nodes":[
    {"id":30,"type":"workspace","focus":[40],"nodes":[
      {"id":40,"pid":100,"app_id":"foot","name":"left","window":null,"nodes":[],"focus":[]}]},
    {"id":31,"type":"workspace","focus":[43,42,41],
     "nodes":[{"id":41,"pid":101,"app_id":null,"name":"one","window":4194318,
               "window_properties":{"class":"XTerm"},"nodes":[],"focus":[]},
              {"id":42,"pid":102,"app_id":"org.kde.konsole","name":"two","nodes":[],"focus":[]}],
     "floating_nodes":[{"id":43,"pid":103,"app_id":"pavucontrol","name":"volume","nodes":[],"focus":[]}]}]}]})";

TEST(SwayTree, windowsAreListedInOrderOfUse) {
    const SwayTree found = SwayTree::parse(tree);
    EXPECT_EQ(found.numbers, (std::vector<std::int64_t>{43, 42, 41, 40}));
    ASSERT_EQ(found.windows.size(), 4U);
    EXPECT_EQ(found.windows[2].process, 101);
    EXPECT_EQ(found.windows[2].id, 4194318U);
    EXPECT_EQ(found.windows[2].windowClass, QStringLiteral("XTerm"));
    EXPECT_EQ(found.windows[3].id, std::nullopt);
    EXPECT_EQ(found.windows[3].windowClass, QStringLiteral("foot"));
    EXPECT_EQ(found.windows[3].title, QStringLiteral("left"));
}

TEST(SwayTree, anInvalidTreeHasNoWindows) {
    for (const char* const json : {"", "[]", "{", R"({"nodes":7,"floating_nodes":[1,"x",null],"focus":"x"})",
                                   R"({"pid":-3})", R"({"pid":"7"})"})
        EXPECT_TRUE(SwayTree::parse(json).windows.empty()) << json;
    QByteArray deep;
    for (int i = 0; i < 400; ++i)
        deep += R"({"nodes":[)";
    deep += R"({"pid":1})";
    for (int i = 0; i < 400; ++i)
        deep += "]}";
    EXPECT_TRUE(SwayTree::parse(deep).windows.empty());
}

class SwayRaiser : public testing::Test {
  protected:
    /// What raising the window of these processes reports.
    bool raise(std::vector<pid_t> processes) {
        WindowSearch search;
        search.processes = std::move(processes);
        std::optional<bool> result;
        SwayWindowRaiser(sway_.socket(), longLimit).raise(search, context_, [&result](bool isFound) {
            result = isFound;
        });
        EXPECT_TRUE(QTest::qWaitFor([&] { return result.has_value(); }, 30000));
        return result.value_or(false);
    }

    FakeSway sway_;
    QObject context_;
};

TEST_F(SwayRaiser, theNearestAncestorsWindowGetsTheFocus) {
    sway_.replies = {tree, R"([{"success":true}])"};
    EXPECT_TRUE(raise({900, 102, 100}));
    EXPECT_EQ(sway_.requests, (std::vector<std::pair<std::uint32_t, QByteArray>>{
                                  {treeRequest, ""}, {runCommand, "[con_id=42] focus"}}));
}

TEST_F(SwayRaiser, withoutAWindowNoCommandIsSent) {
    sway_.replies = {tree};
    EXPECT_FALSE(raise({900, 1}));
    EXPECT_EQ(sway_.requests.size(), 1U);
}

TEST_F(SwayRaiser, aFailedCommandRaisesNothing) {
    for (const char* const result : {R"([{"success":false,"error":"No matching node."}])", "[]", "{}", ""}) {
        sway_.replies = {tree, result};
        EXPECT_FALSE(raise({100})) << result;
    }
}

constexpr const char* twoOutputs = R"([
  {"name":"HEADLESS-1","focused":false,"rect":{"x":0,"y":0,"width":1280,"height":800}},
  {"name":"HEADLESS-2","focused":true,"rect":{"x":1280,"y":0,"width":853,"height":533}},
  {"name":"off","active":false,"rect":{"x":0,"y":0,"width":0,"height":0}}])";
constexpr const char* theirWorkspaces = R"([
  {"output":"HEADLESS-1","visible":false,"rect":{"x":0,"y":0,"width":1280,"height":800}},
  {"output":"HEADLESS-1","visible":true,"rect":{"x":0,"y":26,"width":1280,"height":774}},
  {"output":"HEADLESS-2","visible":true,"rect":{"x":1290,"y":0,"width":843,"height":513}}])";

TEST(SwayOutputs, theVisibleWorkspaceIsWhatBarsLeaveFree) {
    EXPECT_EQ(SwayOutputs::parse(twoOutputs, theirWorkspaces),
              (std::vector<SwayOutput>{{{0, 0, 1280, 800}, {0, 26, 0, 0}, false},
                                       {{1280, 0, 853, 533}, {10, 0, 0, 20}, true}}));
}

TEST(SwayOutputs, withoutAUsableWorkspaceTheWholeOutputIsFree) {
    for (const char* const workspaces :
         {"", "{}", R"([{"output":"a","visible":true,"rect":{"x":-50,"y":0,"width":9000,"height":100}}])",
          R"([{"output":"b","visible":true,"rect":{"x":0,"y":20,"width":100,"height":80}}])",
          R"([{"output":"a","visible":true,"rect":{}}])"}) {
        EXPECT_EQ(
            SwayOutputs::parse(R"([{"name":"a","rect":{"x":0,"y":0,"width":100,"height":100}}])", workspaces),
            (std::vector<SwayOutput>{{{0, 0, 100, 100}, {}, false}}))
            << workspaces;
    }
}

TEST(SwayOutputs, areQueriedOnRequestOnlyAndReportChanges) {
    FakeSway sway;
    sway.replies = {twoOutputs, "[]"};
    SwayOutputs outputs(sway.socket(), longLimit);
    QSignalSpy changed(&outputs, &SwayOutputs::changed);
    ASSERT_TRUE(changed.wait(30000));
    EXPECT_EQ(outputs.outputs().size(), 2U);
    EXPECT_EQ(outputs.focused(), &outputs.outputs()[1]);
    EXPECT_EQ(outputs.at({1270, 0, 100, 100}), &outputs.outputs()[1]);
    EXPECT_EQ(outputs.at({5000, 0, 100, 100}), nullptr);
    EXPECT_EQ(sway.requests, (std::vector<std::pair<std::uint32_t, QByteArray>>{{outputsRequest, ""},
                                                                                {workspacesRequest, ""}}));
    // The same, then another bar.
    sway.replies = {twoOutputs, "[]", twoOutputs, theirWorkspaces};
    outputs.refresh();
    outputs.refresh();
    ASSERT_TRUE(QTest::qWaitFor([&] { return sway.requests.size() == 4; }, 10000));
    QCoreApplication::processEvents();
    EXPECT_EQ(changed.count(), 1);
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
            outputs.refresh();
            return changed.count() == 2;
        },
        10000));
    EXPECT_EQ(outputs.outputs()[0].reserved, QMargins(0, 26, 0, 0));
}

TEST(SwayOutputs, outsideSwayThereAreNone) {
    SwayOutputs outputs(std::nullopt);
    outputs.refresh();
    EXPECT_TRUE(outputs.outputs().empty());
    EXPECT_EQ(outputs.focused(), nullptr);
}

} // namespace
} // namespace corvane

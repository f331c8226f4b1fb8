#include "App/Support/Waiting.h"
#include "Platform/Shared/QtScheduler.h"

#include <QTest>
#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace corvane {
namespace {

using std::chrono::milliseconds;

TEST(QtScheduler, neverRunsWorkBeforeReturning) {
    QtScheduler scheduler;
    int runs = 0;
    scheduler.after(milliseconds(0), [&] { ++runs; });
    EXPECT_EQ(runs, 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return runs > 0; }, test::longestWait));
    QCoreApplication::processEvents();
    EXPECT_EQ(runs, 1);
}

TEST(QtScheduler, workMayScheduleMoreWorkWhichWaitsForTheEventLoopAgain) {
    QtScheduler scheduler;
    int runs = 0;
    int runsWhenScheduled = -1;
    scheduler.after(milliseconds(0), [&] {
        scheduler.after(milliseconds(0), [&] { ++runs; });
        runsWhenScheduled = runs;
    });
    EXPECT_TRUE(QTest::qWaitFor([&] { return runs == 1; }, test::longestWait));
    EXPECT_EQ(runsWhenScheduled, 0);
}

TEST(QtScheduler, dropsPendingWorkWhenDestroyed) {
    std::optional<QtScheduler> scheduler(std::in_place);
    auto held = std::make_shared<int>(0);
    const std::weak_ptr<int> watched = held;
    int runs = 0;
    scheduler->after(milliseconds(0), [&runs, held = std::move(held)] { runs += 1 + *held; });
    EXPECT_FALSE(watched.expired());
    scheduler.reset();
    // What the work captured is destroyed with the scheduler, without an event loop.
    EXPECT_TRUE(watched.expired());
    bool later = false;
    QtScheduler other;
    other.after(milliseconds(1), [&] { later = true; });
    EXPECT_TRUE(QTest::qWaitFor([&] { return later; }, test::longestWait));
    EXPECT_EQ(runs, 0);
}

} // namespace
} // namespace corvane

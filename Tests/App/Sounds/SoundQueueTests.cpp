#include "Platform/Linux/SoundQueue.h"

#include <gtest/gtest.h>

namespace corvane {

namespace {

using std::chrono::milliseconds;

constexpr SoundQueue::Moment start{std::chrono::hours(5)};

TEST(SoundQueue, returnsSoundsInTheOrderOfRequests) {
    SoundQueue queue;
    EXPECT_TRUE(queue.empty());
    queue.add("Glass", start);
    queue.add("Tink", start + milliseconds(1));
    EXPECT_FALSE(queue.empty());
    EXPECT_EQ(queue.next(start + milliseconds(2)), "Glass");
    EXPECT_EQ(queue.next(start + milliseconds(2)), "Tink");
    EXPECT_EQ(queue.next(start + milliseconds(2)), std::nullopt);
    EXPECT_TRUE(queue.empty());
}

TEST(SoundQueue, dropsSoundsThatAreTooLate) {
    SoundQueue queue;
    queue.add("Glass", start);
    queue.add("Tink", start + milliseconds(500));
    EXPECT_EQ(queue.next(start + milliseconds(1001)), "Tink");
    queue.add("Pop", start + milliseconds(2000));
    EXPECT_EQ(queue.next(start + milliseconds(3001)), std::nullopt);
    EXPECT_TRUE(queue.empty());
}

TEST(SoundQueue, stillPlaysASoundAtTheEndOfItsWait) {
    SoundQueue queue;
    queue.add("Glass", start);
    EXPECT_EQ(queue.next(start + SoundQueue::longestWait), "Glass");
}

TEST(SoundQueue, doesNotGrowWhileNobodyTakesFromIt) {
    SoundQueue queue;
    for (int second = 0; second < 1000; ++second) {
        queue.add("Glass", start + std::chrono::seconds(second));
    }
    const SoundQueue::Moment end = start + std::chrono::seconds(999);
    EXPECT_EQ(queue.next(end), "Glass");
    EXPECT_EQ(queue.next(end), "Glass"); // a second old, just in time
    EXPECT_EQ(queue.next(end), std::nullopt);
}

} // namespace

} // namespace corvane

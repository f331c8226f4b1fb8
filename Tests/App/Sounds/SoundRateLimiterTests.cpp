#include "Platform/Linux/SoundRateLimiter.h"

#include <gtest/gtest.h>

namespace corvane {

namespace {

using std::chrono::milliseconds;

constexpr SoundRateLimiter::Moment start{std::chrono::hours(5)};

TEST(SoundRateLimiter, tenAlertsOfOneSoundInOnePassStartItOnce) {
    SoundRateLimiter limiter;
    EXPECT_TRUE(limiter.admit("Glass", start));
    for (int i = 1; i < 10; ++i) {
        EXPECT_FALSE(limiter.admit("Glass", start + milliseconds(i)));
    }
}

TEST(SoundRateLimiter, waitingAndDoneAlertsOfOnePassAreBothHeard) {
    SoundRateLimiter limiter;
    EXPECT_TRUE(limiter.admit("Glass", start));
    EXPECT_TRUE(limiter.admit("Tink", start));
    EXPECT_FALSE(limiter.admit("Glass", start + milliseconds(1)));
    EXPECT_FALSE(limiter.admit("Tink", start + milliseconds(1)));
}

TEST(SoundRateLimiter, aThirdSoundIsDroppedWhileTwoAreSounding) {
    SoundRateLimiter limiter;
    EXPECT_TRUE(limiter.admit("Glass", start));
    EXPECT_TRUE(limiter.admit("Tink", start + milliseconds(300)));
    EXPECT_FALSE(limiter.admit("Pop", start + milliseconds(301)));
    EXPECT_FALSE(limiter.admit("Pop", start + milliseconds(899)));
    EXPECT_TRUE(limiter.admit("Pop", start + milliseconds(900)));
    EXPECT_FALSE(limiter.admit("Funk", start + milliseconds(900)));
}

TEST(SoundRateLimiter, theSameSoundStartsAgainWhenItsTimeIsOver) {
    SoundRateLimiter limiter;
    EXPECT_TRUE(limiter.admit("Hero", start));
    EXPECT_FALSE(limiter.admit("Hero", start + SoundRateLimiter::soundingTime - milliseconds(1)));
    EXPECT_TRUE(limiter.admit("Hero", start + SoundRateLimiter::soundingTime));
}

TEST(SoundRateLimiter, everyPassOfAStormIsHeard) {
    SoundRateLimiter limiter;
    for (int pass = 0; pass < 60; ++pass) {
        int started = 0;
        for (int alert = 0; alert < 10; ++alert) {
            if (limiter.admit(alert % 3 == 0 ? "Tink" : "Glass", start + std::chrono::seconds(pass)))
                ++started;
        }
        EXPECT_EQ(started, 2) << "in pass " << pass;
    }
}

TEST(SoundRateLimiter, aDroppedSoundDoesNotDelayLaterOnes) {
    SoundRateLimiter limiter;
    EXPECT_TRUE(limiter.admit("Glass", start));
    EXPECT_FALSE(limiter.admit("Glass", start + milliseconds(800)));
    EXPECT_TRUE(limiter.admit("Glass", start + milliseconds(900)));
}

TEST(SoundRateLimiter, aSoundStartsAtTheBeginningOfTheClock) {
    SoundRateLimiter limiter;
    EXPECT_TRUE(limiter.admit("Glass", SoundRateLimiter::Moment()));
    EXPECT_FALSE(limiter.admit("Glass", SoundRateLimiter::Moment()));
}

} // namespace

} // namespace corvane

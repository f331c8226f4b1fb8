#include "Platform/Linux/SoundGate.h"

#include <gtest/gtest.h>

namespace corvane {

namespace {

using std::chrono::milliseconds;

constexpr SoundGate::Moment start{std::chrono::hours(5)};

TEST(SoundGate, tenAlertsOfOneSoundInOnePassStartItOnce) {
    SoundGate gate;
    EXPECT_TRUE(gate.admit("Glass", start));
    for (int i = 1; i < 10; ++i) {
        EXPECT_FALSE(gate.admit("Glass", start + milliseconds(i)));
    }
}

TEST(SoundGate, waitingAndDoneAlertsOfOnePassAreBothHeard) {
    SoundGate gate;
    EXPECT_TRUE(gate.admit("Glass", start));
    EXPECT_TRUE(gate.admit("Tink", start));
    EXPECT_FALSE(gate.admit("Glass", start + milliseconds(1)));
    EXPECT_FALSE(gate.admit("Tink", start + milliseconds(1)));
}

TEST(SoundGate, aThirdSoundIsDroppedWhileTwoAreSounding) {
    SoundGate gate;
    EXPECT_TRUE(gate.admit("Glass", start));
    EXPECT_TRUE(gate.admit("Tink", start + milliseconds(300)));
    EXPECT_FALSE(gate.admit("Pop", start + milliseconds(301)));
    EXPECT_FALSE(gate.admit("Pop", start + milliseconds(899)));
    EXPECT_TRUE(gate.admit("Pop", start + milliseconds(900)));
    EXPECT_FALSE(gate.admit("Funk", start + milliseconds(900)));
}

TEST(SoundGate, theSameSoundStartsAgainWhenItsTimeIsOver) {
    SoundGate gate;
    EXPECT_TRUE(gate.admit("Hero", start));
    EXPECT_FALSE(gate.admit("Hero", start + SoundGate::soundingTime - milliseconds(1)));
    EXPECT_TRUE(gate.admit("Hero", start + SoundGate::soundingTime));
}

TEST(SoundGate, everyPassOfAStormIsHeard) {
    SoundGate gate;
    for (int pass = 0; pass < 60; ++pass) {
        int started = 0;
        for (int alert = 0; alert < 10; ++alert) {
            if (gate.admit(alert % 3 == 0 ? "Tink" : "Glass", start + std::chrono::seconds(pass))) ++started;
        }
        EXPECT_EQ(started, 2) << "in pass " << pass;
    }
}

TEST(SoundGate, whatWasDroppedDoesNotHoldBackWhatComesLater) {
    SoundGate gate;
    EXPECT_TRUE(gate.admit("Glass", start));
    EXPECT_FALSE(gate.admit("Glass", start + milliseconds(800)));
    EXPECT_TRUE(gate.admit("Glass", start + milliseconds(900)));
}

TEST(SoundGate, aSoundStartsAtTheBeginningOfTheClock) {
    SoundGate gate;
    EXPECT_TRUE(gate.admit("Glass", SoundGate::Moment()));
    EXPECT_FALSE(gate.admit("Glass", SoundGate::Moment()));
}

} // namespace

} // namespace corvane

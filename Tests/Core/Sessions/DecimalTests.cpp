#include "Sessions/Decimal.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace corvane {
namespace {

constexpr std::uint64_t largest = std::numeric_limits<std::uint64_t>::max();

TEST(Decimal, readsWholeNumbersAndFractionsExactly) {
    EXPECT_EQ(Decimal::fromNumber("0"), (Decimal{false, 0, 0}));
    EXPECT_EQ(Decimal::fromNumber("7"), (Decimal{false, 7, 0}));
    EXPECT_EQ(Decimal::fromNumber("811692800.123456789"), (Decimal{false, 811'692'800, 123'456'789}));
    EXPECT_EQ(Decimal::fromNumber("0.000000001"), (Decimal{false, 0, 1}));
    EXPECT_EQ(Decimal::fromNumber("0.1"), (Decimal{false, 0, 100'000'000}));
    EXPECT_EQ(Decimal::fromNumber("-12.5"), (Decimal{true, 12, 500'000'000}));
    EXPECT_EQ(Decimal::fromNumber("18446744073709551615.999999999"), (Decimal{false, largest, 999'999'999}));
}

TEST(Decimal, zeroHasNoSign) {
    for (const char* number : {"-0", "-0.0", "0e5", "-0.00e-7", "0.000"}) {
        EXPECT_EQ(Decimal::fromNumber(number), Decimal()) << number;
    }
}

TEST(Decimal, readsExponentsOfEitherSign) {
    for (const char* number : {"1234.5", "1.2345e3", "1.2345E+3", "12345e-1", "0.0012345e6", "1234500e-03"}) {
        EXPECT_EQ(Decimal::fromNumber(number), (Decimal{false, 1234, 500'000'000})) << number;
    }
    EXPECT_EQ(Decimal::fromNumber("25e-9"), (Decimal{false, 0, 25}));
    EXPECT_EQ(Decimal::fromNumber("1e19"), (Decimal{false, 10'000'000'000'000'000'000U, 0}));
}

TEST(Decimal, roundsBeyondTheNinthPlaceToTheNearest) {
    EXPECT_EQ(Decimal::fromNumber("0.0000000014"), (Decimal{false, 0, 1}));
    EXPECT_EQ(Decimal::fromNumber("0.0000000015"), (Decimal{false, 0, 2}));
    EXPECT_EQ(Decimal::fromNumber("-0.0000000015"), (Decimal{true, 0, 2}));
    EXPECT_EQ(Decimal::fromNumber("5e-10"), (Decimal{false, 0, 1}));
    EXPECT_EQ(Decimal::fromNumber("4e-10"), (Decimal{false, 0, 0}));
    EXPECT_EQ(Decimal::fromNumber("9.9999999995"), (Decimal{false, 10, 0}));
    EXPECT_EQ(Decimal::fromNumber("0.00000000049999999999999999999999999"), (Decimal{false, 0, 0}));
}

TEST(Decimal, stopsAtTheLargestValue) {
    for (const char* number : {"18446744073709551616", "18446744073709551615.9999999995", "1e20", "1e400",
                               "1e99999999999999999999999999"}) {
        EXPECT_EQ(Decimal::fromNumber(number), (Decimal{false, largest, 999'999'999})) << number;
        EXPECT_EQ(Decimal::fromNumber(std::string("-") + number), (Decimal{true, largest, 999'999'999}))
            << number;
    }
}

TEST(Decimal, takesVerySmallNumbersForZero) {
    for (const char* number : {"1e-400", "123456789e-99999999999999999999999999"}) {
        EXPECT_EQ(Decimal::fromNumber(number).whole, 0U) << number;
        EXPECT_EQ(Decimal::fromNumber(number).billionths, 0U) << number;
    }
}

TEST(Decimal, readsAMillionDigits) {
    const std::string zeros(1'000'000, '0');
    EXPECT_EQ(Decimal::fromNumber("0." + zeros + "1e1000000"), (Decimal{false, 0, 100'000'000}));
    EXPECT_EQ(Decimal::fromNumber("1" + zeros + "e-1000000"), (Decimal{false, 1, 0}));
    EXPECT_EQ(integerFromNumber("1" + zeros + "e-999999"), 10);
}

TEST(IntegerFromNumber, readsIntegersHoweverTheyAreWritten) {
    for (const char* number : {"5", "5.0", "5.000", "5e0", "50e-1", "0.5e1", "5E+0", "0.0005e4"}) {
        EXPECT_EQ(integerFromNumber(number), 5) << number;
    }
    EXPECT_EQ(integerFromNumber("-3"), -3);
    EXPECT_EQ(integerFromNumber("-3.0e2"), -300);
    for (const char* number : {"0", "-0", "0.0", "0e99", "-0e-99999999999999999999"}) {
        EXPECT_EQ(integerFromNumber(number), 0) << number;
    }
}

TEST(IntegerFromNumber, refusesFractions) {
    for (const char* number : {"5.5", "0.1", "5e-1", "-0.5", "1e-400", "5.00000000000000000000000000001"}) {
        EXPECT_EQ(integerFromNumber(number), std::nullopt) << number;
    }
}

TEST(IntegerFromNumber, endsWhereSixtyFourBitsEnd) {
    EXPECT_EQ(integerFromNumber("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(integerFromNumber("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
    for (const char* number :
         {"9223372036854775808", "-9223372036854775809", "18446744073709551615", "18446744073709551616",
          "99999999999999999999", "1e19", "-1e19", "1e99999999999999999999"}) {
        EXPECT_EQ(integerFromNumber(number), std::nullopt) << number;
    }
}

} // namespace
} // namespace corvane

#include "Platform/Linux/StartupToken.h"

#include <QtGlobal>
#include <gtest/gtest.h>

#include <string>

namespace corvane {
namespace {

const StartupToken both{"host-1-launcher_TIME77", "a=b"};

TEST(StartupToken, isReadFromTheEnvironment) {
    qputenv("DESKTOP_STARTUP_ID", "host-1-launcher_TIME77");
    qputenv("XDG_ACTIVATION_TOKEN", "a=b");
    EXPECT_EQ(StartupToken::fromEnvironment(), both);
    qunsetenv("DESKTOP_STARTUP_ID");
    qunsetenv("XDG_ACTIVATION_TOKEN");
    EXPECT_EQ(StartupToken::fromEnvironment(), StartupToken());
}

TEST(StartupToken, survivesTheTransferOverTheBus) {
    EXPECT_EQ(StartupToken::fromPlatformData(both.platformData()), both);
    EXPECT_EQ(both.platformData().value(QStringLiteral("desktop-startup-id")).toString(),
              QStringLiteral("host-1-launcher_TIME77"));
    EXPECT_TRUE(StartupToken().platformData().isEmpty());
}

TEST(StartupToken, survivesTheTransferAsAMessage) {
    EXPECT_EQ(StartupToken::fromMessage(both.message()), both);
    const StartupToken onlyToken{"", "token"};
    EXPECT_EQ(StartupToken::fromMessage(onlyToken.message()), onlyToken);
    EXPECT_EQ(StartupToken().message(), "");
}

TEST(StartupToken, ignoresInvalidTokens) {
    EXPECT_EQ(StartupToken::fromMessage("nonsense\n=x\nother=y\nactivation-token"), StartupToken());
    EXPECT_EQ(StartupToken::fromMessage("activation-token=" + std::string(5000, 'x')), StartupToken());
    EXPECT_EQ(
        StartupToken::fromPlatformData({{QStringLiteral("desktop-startup-id"), QStringLiteral("a\nb")}}),
        StartupToken());
}

} // namespace
} // namespace corvane

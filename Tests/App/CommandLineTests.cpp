#include "CommandLine.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace corvane {
namespace {

std::optional<std::string> answer(const std::vector<const char*>& arguments) {
    return commandline::answer(arguments, "1.2.3");
}

TEST(CommandLine, theVersionIsPrintedWhereverItsOptionIs) {
    EXPECT_EQ(answer({"--version"}), "corvane 1.2.3");
    EXPECT_EQ(answer({"-platform", "xcb", "--version"}), "corvane 1.2.3");
}

TEST(CommandLine, theUsageNamesEveryOption) {
    for (const char* const option : {"--help", "-h"}) {
        const std::string text = answer({option}).value_or("");
        for (const char* const named : {"--autostart", "--help", "-h", "--version"})
            EXPECT_NE(text.find(named), std::string::npos) << named;
        EXPECT_FALSE(text.ends_with('\n'));
    }
}

TEST(CommandLine, anythingElseStartsTheProgram) {
    EXPECT_EQ(answer({}), std::nullopt);
    EXPECT_EQ(answer({"--autostart", "-style", "--versions"}), std::nullopt);
}

} // namespace
} // namespace corvane

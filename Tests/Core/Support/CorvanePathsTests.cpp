#include "Support/CorvanePaths.h"

#include <gtest/gtest.h>

namespace {

using corvane::CorvanePaths;

TEST(CorvanePaths, areUnderTheHomeDirectory) {
    const CorvanePaths paths = CorvanePaths::standard("/home/you");
    EXPECT_EQ(paths.support, "/home/you/Library/Application Support/Corvane");
    EXPECT_EQ(paths.events(), "/home/you/Library/Application Support/Corvane/events");
    EXPECT_EQ(paths.hookScript(), "/home/you/Library/Application Support/Corvane/bin/corvane-hook");
    EXPECT_EQ(CorvanePaths::standard("/home/you/"), paths);
}

TEST(CorvanePaths, followAnotherSupportDirectory) {
    const CorvanePaths paths{"/tmp/x"};
    EXPECT_EQ(paths.events(), "/tmp/x/events");
    EXPECT_EQ(paths.hookScript(), "/tmp/x/bin/corvane-hook");
    EXPECT_NE(paths, CorvanePaths{"/tmp/y"});
}

} // namespace

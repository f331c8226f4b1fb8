#include "Platform/Linux/PanelDamage.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(LinuxPanelDamage, picomErasesBetweenChangesFromVersion12On) {
    EXPECT_TRUE(PanelDamage::erasesBetweenChanges("v12.5"));
    EXPECT_TRUE(PanelDamage::erasesBetweenChanges("v12"));
    EXPECT_TRUE(PanelDamage::erasesBetweenChanges("13"));
    EXPECT_FALSE(PanelDamage::erasesBetweenChanges("v9.1"));
    EXPECT_FALSE(PanelDamage::erasesBetweenChanges("v11.2"));
    EXPECT_FALSE(PanelDamage::erasesBetweenChanges("v1.7.2"));
}

TEST(LinuxPanelDamage, aBuildWithoutAVersionIsTakenForARecentOne) {
    EXPECT_TRUE(PanelDamage::erasesBetweenChanges("vgit-b700a"));
    EXPECT_TRUE(PanelDamage::erasesBetweenChanges("unknown"));
}

TEST(LinuxPanelDamage, otherCompositingManagersEraseNothing) {
    EXPECT_FALSE(PanelDamage::erasesBetweenChanges(""));
}

} // namespace
} // namespace corvane

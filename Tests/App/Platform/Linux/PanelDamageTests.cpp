#include "Platform/Linux/PanelDamage.h"

#include <QWidget>
#include <gtest/gtest.h>

#include <vector>

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

TEST(LinuxPanelDamage, aBuildWithoutAVersionIsTreatedAsRecent) {
    EXPECT_TRUE(PanelDamage::erasesBetweenChanges("vgit-b700a"));
    EXPECT_TRUE(PanelDamage::erasesBetweenChanges("unknown"));
}

TEST(LinuxPanelDamage, otherCompositingManagersEraseNothing) {
    EXPECT_FALSE(PanelDamage::erasesBetweenChanges(""));
}

TEST(LinuxPanelDamage, visiblePanelsAreReportedToPicom12Only) {
    using Windows = std::vector<const QWidget*>;
    Windows reported;
    PanelDamage damage([&reported](const QWidget& window) { reported.push_back(&window); });
    QWidget banner;
    QWidget panel;
    QWidget hidden;
    for (QWidget* const window : {&banner, &hidden, &panel})
        damage.add(*window);
    banner.show();
    panel.show();
    damage.reportAll();
    damage.setVersion("v11.2");
    damage.reportAll();
    EXPECT_EQ(reported, Windows());
    damage.setVersion("v12.5");
    damage.reportAll();
    EXPECT_EQ(reported, (Windows{&banner, &panel}));
    damage.remove(banner);
    damage.reportAll();
    EXPECT_EQ(reported, (Windows{&banner, &panel, &panel}));
}

} // namespace
} // namespace corvane

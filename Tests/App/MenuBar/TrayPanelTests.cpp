#include "App/Support/MenuBarSupport.h"
#include "MenuBar/TrayPanel.h"
#include "MenuBarView.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

class TrayPanelTest : public testing::Test {
  protected:
    [[nodiscard]] recording::FakePanelHost& host() { return *world_.platform.panelHosts.last; }

    test::MenuBarWorld world_;
    TrayPanel panel_{
        world_.model(), world_.platform.services(), [this](QWidget* parent) {
            return new MenuBarView(world_.model(), {[] {}, [](const QUrl& /*url*/) {}, [] {}}, parent);
        }};
};

TEST_F(TrayPanelTest, isPresentedByItsHost) {
    ASSERT_NE(world_.platform.panelHosts.last, nullptr);
    EXPECT_EQ(host().presentCount, 0);
    panel_.open({300, 10, 22, 22});
    EXPECT_EQ(host().presentCount, 1);
}

TEST_F(TrayPanelTest, tellsItsHostWhereItIs) {
    panel_.open({300, 10, 22, 22});
    EXPECT_EQ(host().geometry.size(), panel_.size());
    EXPECT_TRUE(host().geometry.contains(panel_.cardGeometry()));
    const QRect card(panel_.cardGeometry().topLeft() - host().geometry.topLeft(),
                     panel_.cardGeometry().size());
    EXPECT_EQ(host().outline.boundingRect().toAlignedRect(), card);
}

TEST_F(TrayPanelTest, closesAtAPressElsewhereWhichLeavesItClosed) {
    panel_.open({300, 10, 22, 22});
    Q_EMIT host().pressedElsewhere();
    EXPECT_FALSE(panel_.isVisible());
    // The press may have been one on the icon, which is reported next.
    panel_.toggle({300, 10, 22, 22});
    EXPECT_FALSE(panel_.isVisible());
    panel_.toggle({300, 10, 22, 22});
    EXPECT_TRUE(panel_.isVisible());
}

} // namespace
} // namespace corvane

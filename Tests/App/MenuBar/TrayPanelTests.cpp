#include "App/Support/MenuBarSupport.h"
#include "MenuBar/SessionList.h"
#include "MenuBar/TrayPanel.h"
#include "MenuBarView.h"
#include "Style/Tokens.h"

#include <QImage>
#include <QScrollBar>
#include <QtTest/QTest>
#include <gtest/gtest.h>

namespace corvane {
namespace {

class TrayPanelTest : public testing::Test {
  protected:
    [[nodiscard]] recording::FakePanelHost& host() { return *world_.platform.panelHosts.last; }
    [[nodiscard]] recording::FakeWindowShadow& shadow() { return world_.platform.windowShadow; }

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

TEST_F(TrayPanelTest, isWithinTheWorkAreaOfTheIconsScreen) {
    world_.platform.screens.frame = QRect(0, 0, 800, 500);
    panel_.open({300, 510, 22, 22});
    EXPECT_EQ(panel_.cardGeometry().bottom() + 1, 500 - 4);
}

TEST_F(TrayPanelTest, reportsItsGeometryToItsHost) {
    panel_.open({300, 10, 22, 22});
    EXPECT_EQ(host().geometry.size(), panel_.size());
    EXPECT_TRUE(host().geometry.contains(panel_.cardGeometry()));
    const QRect card(panel_.cardGeometry().topLeft() - host().geometry.topLeft(),
                     panel_.cardGeometry().size());
    EXPECT_EQ(host().outline.boundingRect().toAlignedRect(), card);
}

TEST_F(TrayPanelTest, closesOnAPressElsewhereThatDoesNotReopenIt) {
    panel_.open({300, 10, 22, 22});
    Q_EMIT host().pressedElsewhere();
    EXPECT_FALSE(panel_.isVisible());
    // The press may have been one on the icon, which is reported next.
    panel_.toggle({300, 10, 22, 22});
    EXPECT_FALSE(panel_.isVisible());
    panel_.toggle({300, 10, 22, 22});
    EXPECT_TRUE(panel_.isVisible());
}

TEST_F(TrayPanelTest, aRightClickOnTheIconBelowItsShadowAsksForTheMenu) {
    QPoint asked;
    QObject::connect(&panel_, &TrayPanel::menuRequested, &panel_, [&asked](QPoint place) { asked = place; });
    const QRect icon(300, 10, 22, 22);
    const auto press = [&](Qt::MouseButton button, QPoint place) {
        asked = QPoint();
        panel_.open(icon);
        panel_.move(host().geometry.topLeft());
        QTest::mouseClick(&panel_, button, {}, panel_.mapFromGlobal(place));
        EXPECT_FALSE(panel_.isVisible());
        return asked;
    };
    const QPoint covered(icon.center().x(), icon.bottom());
    EXPECT_EQ(press(Qt::RightButton, covered), covered);
    EXPECT_EQ(press(Qt::LeftButton, covered), QPoint()) << "closes the panel, as on the rest of the icon";
    EXPECT_EQ(press(Qt::RightButton, {icon.right() + 10, covered.y()}), QPoint()) << "beside the icon";
}

TEST_F(TrayPanelTest, leavesRoomForTheShadowAroundItsCard) {
    panel_.open({300, 10, 22, 22});
    const QMargins room = shadow().room;
    EXPECT_EQ(panel_.view().pos(), QPoint(room.left(), room.top()));
    EXPECT_EQ(panel_.size(), panel_.view().size().grownBy(room));
}

TEST_F(TrayPanelTest, hasTheShadowOfItsRoundCardPainted) {
    panel_.open({300, 10, 22, 22});
    shadow().painted.clear();
    (void)panel_.grab();
    ASSERT_EQ(shadow().painted.size(), 1U);
    EXPECT_EQ(shadow().painted[0].boundingRect().toAlignedRect(), QRect(QPoint(), panel_.view().size()));
    EXPECT_FALSE(shadow().painted[0].contains(QPointF(1, 1)));
}

TEST_F(TrayPanelTest, hasARoundMaskAndNoShadowWhereWindowsAreNotBlended) {
    shadow().blended = false;
    panel_.open({300, 10, 22, 22});
    panel_.setPalette(Tokens::palette(ColorScheme::light));
    const QImage picture = panel_.grab().toImage();
    EXPECT_EQ(picture.pixelColor(0, 0), Tokens::divider(ColorScheme::light))
        << "black in part of the corners";
    EXPECT_TRUE(shadow().painted.empty());
    EXPECT_EQ(panel_.size(), panel_.view().size());
    EXPECT_EQ(shadow().lastCut.boundingRect().toAlignedRect(), panel_.rect());
    EXPECT_FALSE(shadow().lastCut.contains(QPointF(1, 1)));

    // It follows the panel's size.
    const int height = panel_.height();
    world_.connect();
    world_.runs("a");
    world_.runs("b");
    world_.runs("c");
    ASSERT_NE(panel_.height(), height);
    EXPECT_EQ(shadow().lastCut.boundingRect().toAlignedRect(), panel_.rect());

    panel_.hide();
    shadow().blended = true;
    panel_.open({300, 10, 22, 22});
    EXPECT_TRUE(shadow().lastCut.isEmpty());
}

TEST_F(TrayPanelTest, opensAtTheTopOfItsListAndShowsThatThereIsMore) {
    world_.connect();
    for (const char* const session : {"a", "b", "c", "d", "e", "f", "g", "h"})
        world_.runs(session, session);
    panel_.setPalette(Tokens::palette(ColorScheme::light));
    panel_.open({300, 10, 22, 22});
    SessionList& list = static_cast<MenuBarView&>(panel_.view()).list();
    QScrollBar& bar = *list.verticalScrollBar();
    bar.setValue(bar.maximum());
    panel_.hide();
    panel_.open({300, 10, 22, 22});
    EXPECT_EQ(bar.value(), 0);
    const QImage picture = list.grab().toImage();
    EXPECT_EQ(picture.pixelColor(picture.width() - 6, 20), Tokens::scrollThumb(ColorScheme::light));
}

TEST_F(TrayPanelTest, itsListIsScrolledByTheThumb) {
    world_.connect();
    for (const char* const session : {"a", "b", "c", "d", "e", "f", "g", "h"})
        world_.runs(session, session);
    panel_.open({300, 10, 22, 22});
    SessionList& list = static_cast<MenuBarView&>(panel_.view()).list();
    QScrollBar& bar = *list.verticalScrollBar();
    QWidget* const thumb = list.childAt(list.width() - 6, 20);
    ASSERT_NE(thumb, nullptr);
    const QPoint grip(thumb->width() / 2, 10);
    const auto drag = [&](int to) { QTest::mouseMove(thumb, thumb->mapFrom(&list, QPoint(grip.x(), to))); };

    drag(list.height());
    EXPECT_EQ(bar.value(), 0) << "no button was pressed";
    QTest::mousePress(thumb, Qt::LeftButton, {}, grip);
    drag(list.height());
    EXPECT_EQ(bar.value(), bar.maximum());
    drag(grip.y() + (list.height() - thumb->height()) / 2);
    EXPECT_GT(bar.value(), 0);
    EXPECT_LT(bar.value(), bar.maximum());
    drag(-100);
    EXPECT_EQ(bar.value(), 0);
    QTest::mouseRelease(thumb, Qt::LeftButton, {}, grip);
    drag(list.height());
    EXPECT_EQ(bar.value(), 0);
}

TEST_F(TrayPanelTest, checksWhetherWindowsAreBlendedEachTimeItOpens) {
    panel_.open({300, 10, 22, 22});
    panel_.hide();
    shadow().blended = false;
    panel_.open({300, 10, 22, 22});
    EXPECT_EQ(panel_.size(), panel_.view().size());
}

TEST_F(TrayPanelTest, isOpaqueUnlessTheDesktopBlursBehindIt) {
    const auto fill = [this] {
        QImage image(panel_.size(), QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        panel_.render(&image, {}, {}, QWidget::DrawWindowBackground);
        return image.pixelColor(panel_.view().pos() + QPoint(30, 6));
    };
    panel_.open({300, 10, 22, 22});
    EXPECT_EQ(fill(), Tokens::surface.color(ColorScheme::light));
    EXPECT_TRUE(shadow().behind.isEmpty());

    // While it is open.
    shadow().blurred = true;
    world_.pass();
    EXPECT_EQ(fill().alpha(), 209);
    EXPECT_EQ(shadow().behind.boundingRect().toAlignedRect(), panel_.view().geometry());
    EXPECT_FALSE(shadow().behind.contains(QPointF(panel_.view().pos()) + QPointF(1, 1))) << "round";
    shadow().blurred = false;
    world_.pass();
    EXPECT_EQ(fill().alpha(), 255);
    EXPECT_TRUE(shadow().behind.isEmpty());
}

TEST_F(TrayPanelTest, followsACompositorThatStopsWhileItIsOpen) {
    panel_.open({300, 10, 22, 22});
    shadow().blended = false;
    world_.pass();
    EXPECT_EQ(panel_.size(), panel_.view().size());
}

TEST_F(TrayPanelTest, hasNoShadowAtHighContrast) {
    panel_.setPalette(Tokens::palette({ColorScheme::light, Contrast::high}));
    panel_.open({300, 10, 22, 22});
    (void)panel_.grab();
    EXPECT_TRUE(shadow().painted.empty());
}

} // namespace
} // namespace corvane

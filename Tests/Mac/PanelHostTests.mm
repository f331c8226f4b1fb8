#include "MacSupport.h"
#include "Platform/MacOS/Activation.h"
#include "Platform/MacOS/Geometry.h"
#include "Platform/MacOS/PanelHost.h"
#include "Platform/MacOS/Screens.h"

#include <QResizeEvent>
#include <QSignalSpy>
#include <gtest/gtest.h>

#import <AppKit/AppKit.h>
#include <vector>

namespace corvane {
namespace {

using test::holdsSoon;

class MacPanelHostTest : public testing::Test {
  protected:
    void present(const QRect& geometry) {
        window.setFixedSize(geometry.size());
        QPainterPath outline;
        outline.addRect(QRectF(QPointF(), QSizeF(geometry.size())));
        host.setGeometry(geometry, outline);
        host.present();
    }

    [[nodiscard]] NSPanel* native() const { return (__bridge NSPanel*)host.panel().handle(); }

    [[nodiscard]] QRect frame() const {
        const NSRect rect = native().frame;
        return geometry::fromNative({rect.origin.x, rect.origin.y, rect.size.width, rect.size.height},
                                    desktopTop());
    }

    QWidget window;
    MacPanelHost host{window};
};

TEST_F(MacPanelHostTest, isWhatMacPlatformsGet) {
    MacActivation activation;
    MacPanelHosts hosts(activation);
    QWidget other;
    EXPECT_NE(qobject_cast<MacPanelHost*>(hosts.make(other).get()), nullptr);
}

TEST_F(MacPanelHostTest, givesTheWindowTheKeyboardAndLeavesTheApplicationInactive) {
    QSignalSpy changes(&host, &PanelHost::keyboardChanged);
    present({100, 60, 340, 200});
    EXPECT_TRUE(native().visible);
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(frame(), QRect(100, 60, 340, 200));
    EXPECT_TRUE(holdsSoon([this] { return host.hasKeyboard(); }));
    EXPECT_GE(changes.count(), 1);
    EXPECT_FALSE(NSApp.active);
    EXPECT_EQ(native().styleMask, 128U);
}

TEST_F(MacPanelHostTest, followsTheWindowOffTheScreenAndBack) {
    present({100, 60, 340, 200});
    window.hide();
    EXPECT_FALSE(native().visible);
    EXPECT_FALSE(host.hasKeyboard());
    present({120, 70, 340, 300});
    EXPECT_TRUE(native().visible);
    EXPECT_EQ(frame(), QRect(120, 70, 340, 300));
}

/// The successive sizes of a widget.
class Sizes : public QObject {
  public:
    explicit Sizes(QWidget& widget) { widget.installEventFilter(this); }
    std::vector<QSize> all;

  protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Resize) all.push_back(static_cast<QResizeEvent*>(event)->size());
        return false;
    }
};

TEST_F(MacPanelHostTest, growsInPlaceAndAtOnce) {
    present({100, 60, 340, 200});
    const Sizes sizes(window);
    window.setFixedSize(340, 260);
    QPainterPath outline;
    outline.addRect(0, 0, 340, 260);
    host.setGeometry({100, 60, 340, 260}, outline);
    EXPECT_EQ(frame(), QRect(100, 60, 340, 260));
    EXPECT_EQ(window.size(), QSize(340, 260));
    QCoreApplication::processEvents();
    EXPECT_EQ(sizes.all, std::vector<QSize>{QSize(340, 260)});
}

TEST_F(MacPanelHostTest, tracksTheMouseWhileTheApplicationIsInactive) {
    present({100, 60, 340, 200});
    ASSERT_FALSE(NSApp.active);
    // The material may have areas of its own.
    NSTrackingArea* ours = nil;
    for (NSTrackingArea* const area in native().contentView.trackingAreas) {
        if ([area.owner isKindOfClass:NSClassFromString(@"CorvaneHover")]) ours = area;
    }
    ASSERT_TRUE(ours != nil);
    EXPECT_EQ(ours.options, NSTrackingActiveAlways | NSTrackingMouseMoved | NSTrackingMouseEnteredAndExited |
                                NSTrackingInVisibleRect);
    EXPECT_TRUE([ours.owner respondsToSelector:@selector(mouseMoved:)]);
    EXPECT_TRUE([ours.owner respondsToSelector:@selector(mouseEntered:)]);
    EXPECT_TRUE([ours.owner respondsToSelector:@selector(mouseExited:)]);
}

} // namespace
} // namespace corvane

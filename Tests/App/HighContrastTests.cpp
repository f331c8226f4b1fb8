#include "App/Support/BannerViewsSupport.h"
#include "App/Support/MenuBarSupport.h"
#include "Controls/Buttons.h"
#include "Controls/Labels.h"
#include "MenuBar/SessionList.h"
#include "MenuBar/SessionRow.h"
#include "MenuBarView.h"
#include "Style/Tokens.h"

#include <QImage>
#include <QScrollBar>
#include <gtest/gtest.h>

#include <memory>

namespace corvane {
namespace {

class HighContrast : public test::BannerViewsTest, public testing::WithParamInterface<ColorScheme> {
  protected:
    [[nodiscard]] static Look high() { return {GetParam(), Contrast::high}; }

    MenuBarView& panel() {
        if (!panel_) {
            world.connect();
            for (int i = 0; i < 8; ++i)
                world.runs(std::string(1, static_cast<char>('a' + i)));
            panel_ = std::make_unique<MenuBarView>(world.model(),
                                                   MenuBarView::Actions{[] {}, [](const QUrl&) {}, [] {}});
            panel_->setPalette(Tokens::palette(GetParam()));
            panel_->resize(panel_->sizeHint());
            panel_->show();
            (void)panel_->grab();
        }
        return *panel_;
    }

    /// How many of the picture's pixels have exactly this colour.
    static int count(const QImage& image, const QColor& color) {
        int result = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                result += image.pixelColor(x, y) == color ? 1 : 0;
        }
        return result;
    }

    test::MenuBarWorld world;

  private:
    std::unique_ptr<MenuBarView> panel_;
};

TEST_P(HighContrast, bannersAreOpaqueThoughTheDesktopBlursBehindThem) {
    const auto waiting = waitingBanner(test::waitingSession("s", start));
    const auto done = doneBanner(test::doneSession("s", start));
    for (BannerCard* const banner :
         {static_cast<BannerCard*>(waiting.get()), static_cast<BannerCard*>(done.get())}) {
        banner->setBlurredBehind(true);
        banner->setPalette(Tokens::palette(GetParam()));
        EXPECT_LT(banner->fillColor().alphaF(), 1);
        banner->setPalette(Tokens::palette(high()));
        EXPECT_EQ(banner->fillColor(), Tokens::surface.color(GetParam()));
    }
}

TEST_P(HighContrast, theDoneBannersEdgeHasTheColourOfControls) {
    const auto banner = doneBanner(test::doneSession("s", start));
    banner->setPalette(Tokens::palette(high()));
    const QImage image = render(*banner);
    EXPECT_EQ(image.pixelColor(image.width() / 2, 0), Tokens::controlBorder(high()));
    EXPECT_EQ(image.pixelColor(image.width() / 2, image.height() - 1), Tokens::controlBorder(high()));
    EXPECT_EQ(image.pixelColor(image.width() / 2, 1), Tokens::surface.color(GetParam()));
}

TEST_P(HighContrast, theWaitingBannersOutlineStaysPrimary) {
    const auto banner = waitingBanner(test::waitingSession("s", start));
    banner->setPalette(Tokens::palette(high()));
    const QImage image = render(*banner);
    EXPECT_EQ(image.pixelColor(image.width() / 2, 0), Tokens::primary.color(GetParam()));
}

TEST_P(HighContrast, dimmedTextOfABannerIsStronger) {
    const auto banner = waitingBanner(test::waitingSession("s", start));
    banner->setPalette(Tokens::palette(high()));
    const auto inDimmedLine = [&banner] {
        // The edges of other letters may happen to have that colour.
        constexpr int ratio = 4;
        (void)render(*banner);
        const QRect line = banner->findChildren<LineLabel*>().at(2)->geometry();
        return count(render(*banner, ratio).copy({line.topLeft() * ratio, line.size() * ratio}),
                     Tokens::textSecondary(high()));
    };
    EXPECT_GT(inDimmedLine(), 100);
    banner->setPalette(Tokens::palette(GetParam()));
    EXPECT_EQ(inDimmedLine(), 0);
}

TEST_P(HighContrast, onlyARunningSessionsDotHasARing) {
    world.connect();
    const Look look = high();
    const auto ringPixels = [&](const AgentSession& session, const Look& shown) {
        SessionRow row(
            session, start, [](const AgentSession&) {}, nullptr);
        row.setPalette(Tokens::palette(shown));
        row.resize(340, 48);
        // The dot's place, away from the texts.
        return count(render(row, 4).copy(12 * 4, 20 * 4, 8 * 4, 8 * 4), Tokens::textSecondary(shown));
    };
    AgentSession running = test::waitingSession("s", start);
    running.status = SessionStatus::running();
    EXPECT_GT(ringPixels(running, look), 0);
    EXPECT_EQ(ringPixels(running, GetParam()), 0);
    EXPECT_EQ(ringPixels(test::waitingSession("s", start), look), 0);
    EXPECT_EQ(ringPixels(test::doneSession("s", start), look), 0);
}

TEST_P(HighContrast, linksAreUnderlinedAtRest) {
    LinkButton link(QStringLiteral("Contact"), 13, nullptr);
    link.resize(link.sizeHint());
    link.setPalette(Tokens::palette(high()));
    const QImage underlined = render(link);
    link.setPalette(Tokens::palette(GetParam()));
    const QImage plain = render(link);
    const QColor primary = Tokens::primary.color(GetParam());
    int lines = 0;
    for (int y = 0; y < underlined.height(); ++y) {
        const QRect line(0, y, underlined.width(), 1);
        if (count(underlined.copy(line), primary) >= link.contentSize().width()) ++lines;
        EXPECT_LT(count(plain.copy(line), primary), link.contentSize().width());
    }
    EXPECT_EQ(lines, 1);
}

TEST_P(HighContrast, theListDoesNotFadeAndFollowsTheContrastLive) {
    ASSERT_GT(panel().list().verticalScrollBar()->maximum(), 0);
    const auto lastLines = [this] {
        const QRect list(panel().list().mapTo(&panel(), QPoint()), panel().list().size());
        QImage image(panel().size(), QImage::Format_RGB32);
        image.fill(Tokens::surface.color(GetParam()));
        panel().render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
        return image.copy(list.left(), list.bottom() - 15, list.width(), 16);
    };
    // A fading letter never has its full colour.
    panel().list().verticalScrollBar()->setValue(24);
    (void)panel().grab();
    const auto strongest = [&] {
        const QImage image = lastLines();
        int result = 0;
        const QColor surface = Tokens::surface.color(GetParam());
        for (int x = 0; x < image.width(); ++x)
            result = std::max(result, std::abs(image.pixelColor(x, 14).lightness() - surface.lightness()));
        return result;
    };
    const int faded = strongest();
    panel().setPalette(Tokens::palette(high()));
    EXPECT_GT(strongest(), 2 * faded);
    panel().setPalette(Tokens::palette(GetParam()));
    EXPECT_EQ(strongest(), faded);
}

INSTANTIATE_TEST_SUITE_P(Appearances, HighContrast, testing::Values(ColorScheme::light, ColorScheme::dark),
                         [](const auto& scheme) {
                             return scheme.param == ColorScheme::dark ? "dark" : "light";
                         });

} // namespace
} // namespace corvane

// The texts of banners in the default fonts of desktops.

#include "App/Support/BannerViewsSupport.h"
#include "App/Support/LargeText.h"
#include "App/Support/Sessions.h"
#include "Controls/Buttons.h"
#include "Style/Fonts.h"
#include "Style/Translations.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetrics>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

namespace corvane {
namespace {

using test::doneSession;
using test::waitingSession;

constexpr double titleSize = 15;
constexpr double smallestTitle = 13;
constexpr double subtitleSize = 13;
constexpr double smallestSubtitle = 11;

class BannerFonts : public test::BannerViewsTest, public testing::WithParamInterface<std::string> {
  protected:
    void SetUp() override {
        const QString family = QString::fromStdString(GetParam());
        if (family == QStringLiteral("Ubuntu") && !QFontDatabase::families().contains(family))
            GTEST_SKIP() << "this font comes with Ubuntu only";
        QApplication::setFont(QFont(family, 10));
        ASSERT_EQ(QFontInfo(QApplication::font()).family(), family)
            << "Scripts/dependencies test installs its package";
        ASSERT_EQ(QFontInfo(fonts::monospaced(13)).family(), QStringLiteral("DejaVu Sans Mono"));
    }
    ~BannerFonts() override { QApplication::setFont(before_); }

    static std::vector<double> textScales() {
        std::vector<double> scales;
        for (double scale = textscale::smallest; scale <= textscale::largest; scale += textscale::step)
            scales.push_back(scale);
        return scales;
    }

    /// Expects the line to be whole, at no less than this part of its ordinary size.
    static void expectWhole(const LineLabel& line, double size, double smallest, double scale) {
        EXPECT_EQ(line.shownText(), line.line())
            << "at " << line.font().pixelSize() << " in " << line.width();
        EXPECT_GE(line.font().pixelSize(), static_cast<int>(smallest * scale));
        EXPECT_LE(line.font().pixelSize(), std::lround(size * scale));
        EXPECT_GE(line.font().letterSpacing(), -0.04 * line.font().pixelSize());
    }

    static void expectWholeTexts(BannerCard& banner, double scale) {
        const auto lines = banner.findChildren<LineLabel*>();
        SCOPED_TRACE(lines.at(0)->text().toStdString() + " / " + lines.at(1)->text().toStdString() + " at " +
                     std::to_string(scale));
        expectWhole(*lines.at(0), titleSize, smallestTitle, scale);
        expectWhole(*lines.at(1), subtitleSize, smallestSubtitle, scale);
    }

    const QFont before_ = QApplication::font();
};

TEST_P(BannerFonts, noTitleIsCut) {
    for (const double scale : textScales()) {
        const test::LargeText size(scale);
        for (const AgentKind agent : AgentKind::allCases) {
            AgentSession session = waitingSession("s", start, agent);
            for (const EventKind reason : {EventKind::needsPermission, EventKind::needsInput}) {
                session.status = SessionStatus::waiting(reason, start);
                const auto banner = waitingBanner(session);
                render(*banner);
                expectWholeTexts(*banner, scale);
            }
            const auto done = doneBanner(doneSession("s", start, agent));
            render(*done);
            expectWholeTexts(*done, scale);
        }
    }
}

TEST_P(BannerFonts, theAgentsSentenceIsNotCutBesideAProjectsName) {
    for (const double scale : textScales()) {
        const test::LargeText size(scale);
        for (const char* const message :
             {"Claude needs your permission", "Claude needs your permission to use Bash"}) {
            AgentSession session = waitingSession("s", start);
            session.cwd = "/w/customer-reports";
            ASSERT_EQ(session.repoName().size(), 16U);
            session.message = message;
            const auto banner = waitingBanner(session);
            render(*banner);
            expectWholeTexts(*banner, scale);
        }
    }
}

TEST_P(BannerFonts, theTextsKeepTheirDistanceFromTheButton) {
    AgentSession session = waitingSession("s", start);
    session.cwd = "/w/customer-reports";
    session.message = "Claude needs your permission";
    const auto banner = waitingBanner(session);
    render(*banner);
    const auto* const button = banner->findChild<PrimaryButton*>();
    EXPECT_EQ(button->geometry().right() + 1, banner->width() - 16);
    EXPECT_EQ(button->height(), 28);
    EXPECT_GE(button->width(), QFontMetrics(button->font()).horizontalAdvance(button->text()) + 2 * 8);
    EXPECT_GE(button->font().pixelSize(), 11);
    for (const LineLabel* const line : banner->findChildren<LineLabel*>())
        EXPECT_GE(button->geometry().left() - (line->geometry().right() + 1), 12 + 8 + 12);
}

INSTANTIATE_TEST_SUITE_P(OfDesktops, BannerFonts,
                         testing::Values("DejaVu Sans", "Cantarell", "Noto Sans", "Open Sans", "Inter",
                                         "Ubuntu"),
                         [](const auto& family) {
                             std::string name = family.param;
                             std::erase(name, ' ');
                             return name;
                         });

} // namespace
} // namespace corvane

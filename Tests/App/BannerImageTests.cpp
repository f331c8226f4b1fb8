#include "BannerStates.h"
#include "Support/TestSupport.h"
#include "Tokens.h"

#include <QApplication>
#include <QDir>
#include <QFontInfo>
#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace corvane {
namespace {

// Other versions of the font rasteriser shade the edges of letters a little differently. A part that moves by
// a pixel, or takes another colour, differs by far more.
constexpr double largestMeanDifference = 0.6; // of 255, over all pixels
constexpr int visibleDifference = 48;         // of 255, in one pixel
constexpr double largestVisibleShare = 0.004; // of all pixels

struct Difference {
    double mean = 0;
    double visibleShare = 0;
};

Difference difference(const QImage& first, const QImage& second) {
    double sum = 0;
    double visible = 0;
    for (int y = 0; y < first.height(); ++y) {
        for (int x = 0; x < first.width(); ++x) {
            const QRgb a = first.pixel(x, y);
            const QRgb b = second.pixel(x, y);
            const int most = std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                                       std::abs(qBlue(a) - qBlue(b))});
            sum += most;
            visible += most > visibleDifference ? 1 : 0;
        }
    }
    const double count = static_cast<double>(first.width()) * first.height();
    return {sum / count, visible / count};
}

/// The card on a plain desktop, as it looks where windows are blended.
QImage picture(BannerCard& banner, ColorScheme scheme, int ratio) {
    constexpr int margin = 4;
    const QSize size = banner.size().grownBy({margin, margin, margin, margin});
    QImage image(size * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(QColor(0x80, 0x90, 0xA0));
    // As on a real desktop, the window is a layer of its own that is blended with what lies below.
    QImage layer(banner.size() * ratio, QImage::Format_ARGB32_Premultiplied);
    layer.setDevicePixelRatio(ratio);
    layer.fill(Qt::transparent);
    banner.setPalette(Tokens::palette(scheme));
    banner.render(&layer, QPoint(), QRegion(), QWidget::DrawChildren);
    QPainter(&image).drawImage(margin, margin, layer);
    return image;
}

// With CORVANE_UPDATE_PICTURES set the pictures are written instead, for a person to look at before they are
// committed.
TEST(BannerImages, everyStateLooksAsItDid) {
    ASSERT_EQ(QFontInfo(QApplication::font()).family().toStdString(), "Inter")
        << "the tests' own fonts are not in use";

    const QDir references(QStringLiteral(CORVANE_BANNER_PICTURES));
    const QDir actual(QDir::temp().filePath(QStringLiteral("corvane-banner-pictures")));
    const bool isUpdating = std::getenv("CORVANE_UPDATE_PICTURES") != nullptr;
    for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
        for (const int ratio : {1, 2}) {
            for (test::BannerState& state : test::bannerStates()) {
                const QString name =
                    QStringLiteral("%1-%2-%3x.png")
                        .arg(QString::fromStdString(state.name),
                             scheme == ColorScheme::dark ? QStringLiteral("dark") : QStringLiteral("light"))
                        .arg(ratio);
                const QImage image = picture(*state.banner, scheme, ratio);
                if (isUpdating) {
                    ASSERT_TRUE(image.save(references.filePath(name)));
                    continue;
                }
                const QImage reference(references.filePath(name));
                ASSERT_EQ(reference.size(), image.size()) << name.toStdString();
                const Difference found = difference(image, reference);
                EXPECT_LE(found.mean, largestMeanDifference) << name.toStdString();
                EXPECT_LE(found.visibleShare, largestVisibleShare) << name.toStdString();
                if (testing::Test::HasFailure()) {
                    actual.mkpath(QStringLiteral("."));
                    image.save(actual.filePath(name));
                    GTEST_FAIL() << "what was drawn is in " << actual.filePath(name).toStdString();
                }
            }
        }
    }
}

TEST(BannerImages, aPartThatMovesByAPixelIsNoticed) {
    auto states = test::bannerStates();
    const QImage before = picture(*states[0].banner, ColorScheme::light, 1);
    QWidget* const glyph = states[0].banner->findChild<AgentGlyph*>();
    glyph->move(glyph->pos() + QPoint(1, 0));
    const Difference found = difference(picture(*states[0].banner, ColorScheme::light, 1), before);
    EXPECT_TRUE(found.mean > largestMeanDifference || found.visibleShare > largestVisibleShare)
        << found.mean << " " << found.visibleShare;
}

} // namespace
} // namespace corvane

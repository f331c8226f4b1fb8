#include "Style/StatusIcon.h"
#include "Style/SymbolicBell.h"
#include "Style/Tokens.h"
#include "Support/TestSupport.h"

#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QSvgRenderer>
#include <gtest/gtest.h>

#include <set>
#include <string>

namespace corvane {
namespace {

QImage rendered(const QByteArray& drawing, int side) {
    QSvgRenderer renderer(drawing);
    EXPECT_TRUE(renderer.isValid());
    QImage image(side, side, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter);
    return image;
}

/// A desktop's own colours in place of the drawing's.
QByteArray filled(QByteArray drawing, const QColor& ink, const QColor& badge) {
    drawing.replace("class=\"ColorScheme-Text\" fill=\"currentColor\"",
                    "fill=\"" + ink.name().toLatin1() + '"');
    return drawing.replace("class=\"ColorScheme-NeutralText warning\" fill=\"currentColor\"",
                           "fill=\"" + badge.name().toLatin1() + '"');
}

// The embedded icon's pixels are the designer's: the drawing has the same shapes.
TEST(SymbolicBell, isTheIconWithADigitThatIsAHole) {
    const ColorScheme bar = ColorScheme::light;
    const QColor ink(0, 0, 255);
    const QColor badge(255, 0, 0);
    for (const int side : {16, 22, 24}) {
        for (int count = 0; count <= symbolicbell::largestCount; ++count) {
            const QImage icon = statusicon::image(side, count, bar).convertToFormat(QImage::Format_ARGB32);
            const QImage drawing =
                rendered(filled(symbolicbell::drawing(side, count, Qt::black, Qt::black), ink, badge), side);
            int inked = 0;
            int badged = 0;
            int holes = 0;
            int wrong = 0;
            for (int y = 0; y < side; ++y) {
                for (int x = 0; x < side; ++x) {
                    const QRgb wanted = icon.pixel(x, y);
                    const QRgb drawn = drawing.pixel(x, y);
                    const auto near = [drawn](const QColor& color) {
                        return qAlpha(drawn) > 170 && std::abs(qRed(drawn) - color.red()) < 60 &&
                               std::abs(qBlue(drawn) - color.blue()) < 60;
                    };
                    if (wanted == Tokens::onSurface.color(bar).rgba()) {
                        ++inked;
                        wrong += near(ink) ? 0 : 1;
                    } else if (wanted == Tokens::primary.color(bar).rgba()) {
                        ++badged;
                        wrong += near(badge) ? 0 : 1;
                    } else if (count > 1 && wanted == Tokens::onPrimary.color(bar).rgba()) {
                        ++holes;
                        wrong += qAlpha(drawn) < 40 ? 0 : 1;
                    }
                }
            }
            EXPECT_EQ(wrong, 0) << count << " at " << side;
            EXPECT_GT(inked, 10) << count << " at " << side;
            EXPECT_EQ(badged > 5, count > 0) << count << " at " << side;
            EXPECT_EQ(holes > 5, count > 1) << count << " at " << side;
        }
    }
}

TEST(SymbolicBell, showsItsOwnColoursIfNobodyFillsIt) {
    const QByteArray drawing = symbolicbell::drawing(22, 1, QColor(1, 2, 3), QColor(4, 5, 6));
    EXPECT_TRUE(drawing.contains(".ColorScheme-Text{color:#010203}"));
    EXPECT_TRUE(drawing.contains(".ColorScheme-NeutralText{color:#040506}"));
    EXPECT_TRUE(drawing.contains("id=\"current-color-scheme\""));
}

TEST(SymbolicBell, hasANameForEachNumberThatHasADrawing) {
    std::set<QString> names;
    for (int count = 0; count <= symbolicbell::largestCount; ++count) {
        EXPECT_TRUE(symbolicbell::name(count).endsWith(QStringLiteral("-symbolic")));
        names.insert(symbolicbell::name(count));
    }
    EXPECT_EQ(names.size(), 10U);
    EXPECT_EQ(symbolicbell::name(10), QString());
    EXPECT_EQ(symbolicbell::name(-1), symbolicbell::name(0));
}

TEST(SymbolicBell, theBuildWritesEveryDrawing) {
    const test::ScratchFolder scratch;
    QProcess draw;
    draw.start(QStringLiteral(CORVANE_DRAW_ICON),
               {QStringLiteral("bells"), QString::fromStdString(scratch.path().string())});
    ASSERT_TRUE(draw.waitForFinished());
    ASSERT_EQ(draw.exitCode(), 0);
    for (int count = 0; count <= symbolicbell::largestCount; ++count) {
        for (const char* const size : {"16x16", "22x22", "24x24", "scalable"}) {
            const std::string file =
                std::string(size) + "/status/" + symbolicbell::name(count).toStdString() + ".svg";
            const int side = size[0] == 's' ? 24 : std::stoi(size);
            EXPECT_EQ(test::fileBytes(scratch.path() / file),
                      symbolicbell::drawing(side, count, Tokens::onSurface.color(ColorScheme::light),
                                            Tokens::primary.color(ColorScheme::light))
                          .toStdString())
                << file;
        }
    }
}

} // namespace
} // namespace corvane

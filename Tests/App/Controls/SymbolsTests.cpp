#include "Controls/Symbols.h"
#include "Platform/Recording/RecordingPlatform.h"

#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

#include <vector>

namespace corvane {
namespace {

const QString terminal = QStringLiteral("terminal");

QImage picture(const QString& name) {
    QImage image(20, 20, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    symbols::paint(painter, name, QRectF(2, 2, 16, 16), Qt::red);
    return image;
}

/// The box of a symbol, filled.
QImage box() {
    QImage image(20, 20, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter(&image).fillRect(2, 2, 16, 16, Qt::red);
    return image;
}

QImage nothing() {
    QImage image(20, 20, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

TEST(Symbols, areTheSystemsInTheRequestedColour) {
    recording::FakeSystemSymbols system;
    system.known.append(terminal);
    const symbols::SystemScope scope(system);
    EXPECT_EQ(picture(terminal), box());
    EXPECT_EQ(system.asked, std::vector<QString>{terminal});
}

TEST(Symbols, areOurOwnIfTheSystemHasNone) {
    const QImage ours = picture(terminal);
    EXPECT_NE(ours, nothing());
    EXPECT_NE(ours, box());
    recording::FakeSystemSymbols system;
    const symbols::SystemScope scope(system);
    EXPECT_EQ(picture(terminal), ours);
    EXPECT_EQ(system.asked, std::vector<QString>{terminal});
}

TEST(Symbols, areOurOwnAgainOnceTheSystemsAreGone) {
    const QImage ours = picture(terminal);
    {
        recording::FakeSystemSymbols system;
        system.known.append(terminal);
        const symbols::SystemScope scope(system);
        EXPECT_EQ(picture(terminal), box());
    }
    EXPECT_EQ(picture(terminal), ours);
}

TEST(Symbols, areDrawnOnceForEachSizeAndColour) {
    recording::FakeSystemSymbols system;
    const symbols::SystemScope scope(system);
    (void)picture(terminal);
    (void)picture(terminal);
    EXPECT_EQ(system.asked.size(), 1U);
}

TEST(Symbols, paintNothingForAnUnknownName) {
    recording::FakeSystemSymbols system;
    system.known.append(QStringLiteral("of.the.system.alone"));
    const symbols::SystemScope scope(system);
    EXPECT_EQ(picture(QStringLiteral("of.the.system.alone")), nothing());
    EXPECT_TRUE(system.asked.empty());
}

} // namespace
} // namespace corvane

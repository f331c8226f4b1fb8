#include "AgentCard.h"
#include "Pictures.h"
#include "WindowStates.h"

#include <QDir>
#include <QFontInfo>
#include <gtest/gtest.h>

#include <cstdlib>
#include <map>

namespace corvane {
namespace {

class WindowImages : public testing::Test {
    const test::FractionalMetrics metrics_;
};

/// With the 256 commonest colours only: a third of the size, and no difference that anyone sees.
QImage reduced(const QImage& image) {
    std::map<QRgb, int> counts;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            ++counts[image.pixel(x, y)];
    }
    std::vector<std::pair<int, QRgb>> byCount;
    byCount.reserve(counts.size());
    for (const auto& [color, count] : counts)
        byCount.emplace_back(count, color);
    std::sort(byCount.rbegin(), byCount.rend());
    QList<QRgb> table;
    for (std::size_t i = 0; i < std::min<std::size_t>(byCount.size(), 256); ++i)
        table.append(byCount.at(i).second);
    return image.convertToFormat(QImage::Format_Indexed8, table, Qt::ThresholdDither);
}

// With CORVANE_UPDATE_PICTURES set the pictures are written instead, for a person to look at before they are
// committed.
TEST_F(WindowImages, everyStateLooksAsItDid) {
    ASSERT_EQ(QFontInfo(QApplication::font()).family().toStdString(), "Inter")
        << "the tests' own fonts are not in use";

    const QDir references(QStringLiteral(CORVANE_WINDOW_PICTURES));
    const QDir actual(QDir::temp().filePath(QStringLiteral("corvane-window-pictures")));
    const bool isUpdating = std::getenv("CORVANE_UPDATE_PICTURES") != nullptr;
    for (const test::WindowState& state : test::windowStates()) {
        test::ModelFixture fixture;
        const std::unique_ptr<QWidget> view = state.make(fixture);
        for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
            for (const int ratio : {1, 2}) {
                const QString name =
                    QStringLiteral("%1-%2-%3x.png")
                        .arg(QString::fromStdString(state.name),
                             scheme == ColorScheme::dark ? QStringLiteral("dark") : QStringLiteral("light"))
                        .arg(ratio);
                const QImage image = test::pictureOf(*view, scheme, ratio);
                if (isUpdating) {
                    ASSERT_TRUE(reduced(image).save(references.filePath(name), nullptr, 0));
                    continue;
                }
                const QImage reference(references.filePath(name));
                ASSERT_EQ(reference.size(), image.size()) << name.toStdString();
                const test::Difference found = test::difference(image, reference);
                if (found.isNoticeable()) {
                    actual.mkpath(QStringLiteral("."));
                    image.save(actual.filePath(name));
                    GTEST_FAIL() << name.toStdString() << ": " << found.mean << " " << found.visibleShare
                                 << "; what was drawn is in " << actual.filePath(name).toStdString();
                }
            }
        }
    }
}

TEST_F(WindowImages, aCardThatMovesByAPixelIsNoticed) {
    test::ModelFixture fixture;
    const auto view = fixture.onboarding();
    const QImage before = test::pictureOf(*view, ColorScheme::light, 1);
    QWidget* const card = view->findChild<AgentCard*>();
    card->move(card->pos() + QPoint(0, 1));
    EXPECT_TRUE(test::difference(test::pictureOf(*view, ColorScheme::light, 1), before).isNoticeable());
}

} // namespace
} // namespace corvane

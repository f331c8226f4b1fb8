#include "Platform/Linux/Appearance.h"

#include <QApplication>
#include <QtTest/QSignalSpy>
#include <gtest/gtest.h>

#include <optional>

namespace corvane {
namespace {

/// On a desktop without a portal, where only the palette is known.
class LinuxAppearanceTest : public testing::Test {
  protected:
    static void SetUpTestSuite() { qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent"); }
    void SetUp() override {
        QApplication::setPalette(desktopPalette(Qt::white));
        appearance_.emplace();
        changes_.emplace(&*appearance_, &Appearance::changed);
    }
    void TearDown() override { QApplication::setPalette(QPalette()); }

    static QPalette desktopPalette(Qt::GlobalColor color) { return {color, color}; }

    /// As the application does.
    void layOwnPaletteOver() { QApplication::setPalette(Tokens::palette(appearance_->colorScheme())); }

    /// As Qt does when the desktop's palette changes: fills in what the application has not set.
    void desktopTurns(Qt::GlobalColor color) {
        QApplication::setPalette(Tokens::palette(appearance_->colorScheme()).resolve(desktopPalette(color)));
        QCoreApplication::processEvents();
    }

    std::optional<LinuxAppearance> appearance_;
    std::optional<QSignalSpy> changes_;
};

TEST_F(LinuxAppearanceTest, beginsWithTheDesktopsPalette) {
    EXPECT_EQ(LinuxAppearance().colorScheme(), ColorScheme::light);
    QApplication::setPalette(desktopPalette(Qt::black));
    EXPECT_EQ(LinuxAppearance().colorScheme(), ColorScheme::dark);
}

TEST_F(LinuxAppearanceTest, followsTheDesktopsPaletteBelowTheApplicationsOwn) {
    layOwnPaletteOver();
    QCoreApplication::processEvents();
    EXPECT_EQ(changes_->count(), 0) << "the application's own palette is no change of the desktop";
    desktopTurns(Qt::black);
    EXPECT_EQ(appearance_->colorScheme(), ColorScheme::dark);
    EXPECT_EQ(changes_->count(), 1);
    desktopTurns(Qt::white);
    EXPECT_EQ(appearance_->colorScheme(), ColorScheme::light);
    EXPECT_EQ(changes_->count(), 2);
}

TEST_F(LinuxAppearanceTest, paletteThatADesktopsThemeForcesOnTheApplicationIsUndone) {
    QObject::connect(&*appearance_, &Appearance::changed, qApp, [this] { layOwnPaletteOver(); });
    layOwnPaletteOver();
    QPalette forced(Qt::white, Qt::white);
    forced.setColor(QPalette::Window, Qt::black);
    forced.setColor(QPalette::WindowText, Qt::white);
    QApplication::setPalette(forced);
    QCoreApplication::processEvents();
    EXPECT_EQ(appearance_->colorScheme(), ColorScheme::light);
    EXPECT_EQ(Tokens::scheme(QApplication::palette()), ColorScheme::light);
}

TEST_F(LinuxAppearanceTest, hasOrdinaryContrastAndTextWithoutAPortal) {
    EXPECT_EQ(appearance_->contrast(), Contrast::normal);
    EXPECT_EQ(appearance_->textScale(), 1);
}

TEST(LinuxTextScale, isLeftToQtIfTheResolutionContainsIt) {
    const struct {
        double wanted;
        double ratio;
        double remaining;
    } table[] = {
        {1, 1, 1},       {1, 2, 1},     {1.25, 1, 1.25}, {1.25, 1.25, 1}, {1.25, 2.5, 1},
        {1.25, 2, 1.25}, {1.5, 1.5, 1}, {1.5, 3, 1},     {1.5, 2, 1.5},   {1.1, 1.104, 1},
        {2, 1, 2},       {0.8, 1, 0.8}, {0, 1, 0},
    };
    for (const auto& row : table) {
        EXPECT_EQ(remainingTextScale(row.wanted, row.ratio), row.remaining)
            << row.wanted << " at " << row.ratio;
    }
}

} // namespace
} // namespace corvane

#include "App/Support/Waiting.h"
#include "Platform/Linux/LxqtSettings.h"
#include "Support/TestSupport.h"

#include <QtTest/QSignalSpy>
#include <gtest/gtest.h>

#include <optional>

namespace corvane {
namespace {

TEST(LxqtSettings, readsTheWindowLightness) {
    EXPECT_EQ(LxqtSettings::parsed("[General]\ntheme=dark\n\n[Palette]\nbase_color=#111111\n"
                                   "window_color=#2b2b2b\n\n[Qt]\nwindow_color=#ffffff\n"),
              43);
    EXPECT_EQ(LxqtSettings::parsed("[Palette]\nwindow_color=#efefef"), 239);
}

TEST(LxqtSettings, reportsNothingThatItCannotRead) {
    for (const char* const text :
         {"", "window_color=#2b2b2b\n", "[Palette]\nwindow_color=\n", "[Palette]\nwindow_color=murky\n"}) {
        EXPECT_EQ(LxqtSettings::parsed(text), std::nullopt) << text;
    }
}

TEST(LxqtSettings, aChangeIsFollowed) {
    const test::ScratchFolder scratch{"lxqt"};
    const auto file = scratch / "lxqt/lxqt.conf";
    test::writeFile(file, "[Palette]\nwindow_color=#efefef\n");
    LxqtSettings settings({QString::fromStdString(file.string())});
    EXPECT_EQ(settings.windowLightness(), 239);
    QSignalSpy changes(&settings, &LxqtSettings::changed);
    test::writeFile(file, "[Palette]\nwindow_color=#2b2b2b\n");
    while (settings.windowLightness() != 43)
        ASSERT_TRUE(changes.wait(test::longestWait));
}

TEST(LxqtSettings, onlyLxqtsOwnSessionsHaveThem) {
    const QByteArray before = qgetenv("XDG_CURRENT_DESKTOP");
    qputenv("XDG_CURRENT_DESKTOP", "KDE");
    EXPECT_TRUE(LxqtSettings::sessionFiles().isEmpty());
    qputenv("XDG_CURRENT_DESKTOP", "LXQt");
    EXPECT_TRUE(LxqtSettings::sessionFiles().front().endsWith(QStringLiteral("/lxqt/lxqt.conf")));
    qputenv("XDG_CURRENT_DESKTOP", before);
}

} // namespace
} // namespace corvane

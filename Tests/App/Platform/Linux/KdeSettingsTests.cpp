#include "App/Support/Waiting.h"
#include "Platform/Linux/KdeSettings.h"
#include "Support/FileDescriptor.h"
#include "Support/TestSupport.h"

#include <QRgb>
#include <QtTest/QSignalSpy>
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <string>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace corvane {
namespace {

namespace fs = std::filesystem;

TEST(KdeSettings, readsTheAnimationFactorAndTheWindowLightness) {
    const KdeLook look =
        KdeSettings::parsed("[Colors:Button]\nBackgroundNormal=1,2,3\n\n"
                            "[Colors:Window]\nBackgroundAlternate=9,9,9\n"
                            "BackgroundNormal=42,46,50\n\n[General]\nColorScheme=BreezeDark\n\n"
                            "[KDE]\nAnimationDurationFactor=0.5\nSingleClick=true\n");
    EXPECT_EQ(look.animationFactor, 0.5);
    EXPECT_EQ(look.windowLightness, qGray(42, 46, 50));
}

TEST(KdeSettings, readsImmutableValuesAndForeignLineEnds) {
    const KdeLook look = KdeSettings::parsed("[KDE]\r\nAnimationDurationFactor[$i]=0\r\n"
                                             "[Colors:Window]\r\nBackgroundNormal=42,46,50,255");
    EXPECT_EQ(look.animationFactor, 0);
    EXPECT_EQ(look.windowLightness, qGray(42, 46, 50));
}

TEST(KdeSettings, reportsNothingThatItCannotRead) {
    for (const char* const text :
         {"", "AnimationDurationFactor=0\n", "[General]\nAnimationDurationFactor=0\n",
          "[KDE]\nAnimationDurationFactor=fast\nAnimationDurationFactor\n",
          "[Colors:Window]\nBackgroundNormal=1,2\n", "[Colors:Window]\nBackgroundNormal=1,2,300\n",
          "[Colors:Window]\nBackgroundNormal=1;2;3\n", "[Colors:Window]\nBackgroundNormal=\n"}) {
        EXPECT_EQ(KdeSettings::parsed(text), KdeLook()) << text;
    }
}

class KdeSettingsFiles : public testing::Test {
  protected:
    /// Writes as KDE's programs do: a new file replaces the old one.
    static void write(const fs::path& file, const std::string& text) {
        test::writeFile(file.string() + ".new", text);
        fs::rename(file.string() + ".new", file);
    }
    [[nodiscard]] QStringList files() const {
        return {QString::fromStdString(own.string()), QString::fromStdString(system.string())};
    }

    test::ScratchFolder scratch{"kde"};
    const fs::path own = scratch / "home/kdeglobals";
    const fs::path system = scratch / "etc/kdeglobals";
};

TEST_F(KdeSettingsFiles, theUsersFileTakesPrecedenceOverTheSystems) {
    test::writeFile(own, "[KDE]\nAnimationDurationFactor=0\n");
    test::writeFile(system, "[KDE]\nAnimationDurationFactor=1\n[Colors:Window]\nBackgroundNormal=0,0,0\n");
    const KdeSettings settings(files());
    EXPECT_EQ(settings.look().animationFactor, 0);
    EXPECT_EQ(settings.look().windowLightness, 0);
}

TEST_F(KdeSettingsFiles, aPathThatIsNoFileDoesNotBlock) {
    fs::create_directories(own.parent_path());
    ASSERT_EQ(mkfifo(own.c_str(), 0600), 0);
    const KdeSettings settings(files());
    EXPECT_EQ(settings.look(), KdeLook());
}

TEST_F(KdeSettingsFiles, aChangeIsFollowedAgainAndAgain) {
    test::writeFile(own, "[KDE]\nAnimationDurationFactor=1\n");
    KdeSettings settings(files());
    QSignalSpy changes(&settings, &KdeSettings::changed);
    for (const double factor : {0.0, 0.5, 2.0}) {
        write(own, "[KDE]\nAnimationDurationFactor=" + std::to_string(factor) + "\n");
        while (settings.look().animationFactor != factor)
            ASSERT_TRUE(changes.wait(test::longestWait)) << factor;
    }
}

TEST_F(KdeSettingsFiles, aFileThatAppearsIsFollowed) {
    fs::create_directories(own.parent_path());
    KdeSettings settings(files());
    EXPECT_EQ(settings.look(), KdeLook());
    QSignalSpy changes(&settings, &KdeSettings::changed);
    write(own, "[KDE]\nAnimationDurationFactor=0\n");
    while (settings.look().animationFactor != 0.0)
        ASSERT_TRUE(changes.wait(test::longestWait));
    write(own, "[KDE]\nAnimationDurationFactor=3\n");
    while (settings.look().animationFactor != 3.0)
        ASSERT_TRUE(changes.wait(test::longestWait));
}

TEST_F(KdeSettingsFiles, aFileThatIsReplacedWhileTheFilesAreReadIsFollowed) {
    test::writeFile(own, "[KDE]\nAnimationDurationFactor=1\n");
    const files::FileDescriptor notices(inotify_init1(IN_CLOEXEC));
    ASSERT_GE(inotify_add_watch(notices.number(), own.c_str(), IN_CLOSE_NOWRITE), 0);
    std::thread desktop([this, &notices] {
        std::array<char, 1024> notice{};
        if (read(notices.number(), notice.data(), notice.size()) > 0)
            write(own, "[KDE]\nAnimationDurationFactor=0\n");
    });
    // Looking for the others takes far longer than the replacement.
    QStringList files{QString::fromStdString(own.string())};
    for (int i = 0; i < 5000; ++i)
        files.append(QString::fromStdString((scratch / "missing" / std::to_string(i) / "file").string()));
    KdeSettings settings(files);
    desktop.join();
    QSignalSpy changes(&settings, &KdeSettings::changed);
    while (settings.look().animationFactor != 0.0)
        ASSERT_TRUE(changes.wait(test::longestWait));
}

TEST(KdeSettingsSession, onlyKdesOwnSessionsHaveThem) {
    const QByteArray before = qgetenv("XDG_CURRENT_DESKTOP");
    qputenv("XDG_CURRENT_DESKTOP", "XFCE");
    EXPECT_TRUE(KdeSettings::sessionFiles().isEmpty());
    qputenv("XDG_CURRENT_DESKTOP", "KDE");
    EXPECT_TRUE(KdeSettings::sessionFiles().front().endsWith(QStringLiteral("/kdeglobals")));
    qputenv("XDG_CURRENT_DESKTOP", before);
}

} // namespace
} // namespace corvane

#include "Model/SettingsDefaults.h"
#include "Sessions/AlertPreferences.h"
#include "Support/TestSupport.h"

#include <QStringList>
#include <QVariant>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <optional>
#include <string>
#include <sys/resource.h>
#include <vector>

namespace corvane {
namespace {

class SettingsDefaultsTest : public testing::Test {
  protected:
    [[nodiscard]] QString file() const { return QString::fromStdString((folder_ / "Corvane.conf").string()); }

    test::ScratchFolder folder_;
};

TEST_F(SettingsDefaultsTest, anEmptyStoreHoldsNothing) {
    QSettings settings(file(), QSettings::IniFormat);
    const SettingsDefaults defaults(settings);
    EXPECT_EQ(defaults.data("alertPreferences"), std::nullopt);
    EXPECT_FALSE(defaults.boolean("hasCompletedOnboarding"));
}

// The library would also read the file shared by all programs of the vendor, and the system-wide one.
TEST_F(SettingsDefaultsTest, otherFilesAreNoFallback) {
    const QString organization = QStringLiteral("Example");
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope,
                       QString::fromStdString(folder_.path().string()));
    {
        QSettings shared(QSettings::IniFormat, QSettings::UserScope, organization);
        shared.setValue(QStringLiteral("hasCompletedOnboarding"), true);
    }
    QSettings settings(QSettings::IniFormat, QSettings::UserScope, organization, QStringLiteral("Program"));
    ASSERT_TRUE(settings.value(QStringLiteral("hasCompletedOnboarding")).toBool());
    const SettingsDefaults defaults(settings);
    EXPECT_FALSE(defaults.boolean("hasCompletedOnboarding"));
}

TEST_F(SettingsDefaultsTest, bytesAndBooleansSurviveTheProcess) {
    std::string everyByte;
    for (int byte = 0; byte < 256; ++byte)
        everyByte.push_back(static_cast<char>(byte));
    {
        QSettings settings(file(), QSettings::IniFormat);
        SettingsDefaults defaults(settings);
        defaults.setData("bytes", everyByte);
        defaults.setBoolean("flag", true);
    }
    QSettings settings(file(), QSettings::IniFormat);
    const SettingsDefaults defaults(settings);
    EXPECT_EQ(defaults.data("bytes"), everyByte);
    EXPECT_TRUE(defaults.boolean("flag"));
}

TEST_F(SettingsDefaultsTest, preferencesSurviveTheProcess) {
    AlertPreferences preferences;
    preferences.waitingSound = "Hero";
    preferences.quietUntil = AlertPreferences::storable(Date(1'790'003'600, 123'456'789));
    {
        QSettings settings(file(), QSettings::IniFormat);
        SettingsDefaults defaults(settings);
        preferences.save(defaults, "alertPreferences");
    }
    QSettings settings(file(), QSettings::IniFormat);
    const SettingsDefaults defaults(settings);
    EXPECT_EQ(AlertPreferences::load(defaults, "alertPreferences"), preferences);
}

TEST_F(SettingsDefaultsTest, aValueOfAnotherTypeIsNotBytes) {
    QSettings settings(file(), QSettings::IniFormat);
    settings.setValue(QStringLiteral("alertPreferences"), QStringLiteral("text"));
    const SettingsDefaults defaults(settings);
    EXPECT_EQ(defaults.data("alertPreferences"), std::nullopt);
}

TEST_F(SettingsDefaultsTest, aBooleanOfAnotherTypeIsFalse) {
    const std::vector<QVariant> values{1,
                                       2.5,
                                       QStringLiteral("1"),
                                       QStringLiteral("yes"),
                                       QStringLiteral("True"),
                                       QByteArray("true"),
                                       QStringList{QStringLiteral("true"), QStringLiteral("true")}};
    const auto key = [](std::size_t i) { return "flag" + std::to_string(i); };
    {
        QSettings settings(file(), QSettings::IniFormat);
        const SettingsDefaults defaults(settings);
        for (std::size_t i = 0; i < values.size(); ++i) {
            settings.setValue(QString::fromStdString(key(i)), values[i]);
            EXPECT_FALSE(defaults.boolean(key(i))) << i;
        }
    }
    // Values that are read back are parsed from text.
    QSettings settings(file(), QSettings::IniFormat);
    const SettingsDefaults defaults(settings);
    for (std::size_t i = 0; i < values.size(); ++i) {
        EXPECT_TRUE(settings.contains(QString::fromStdString(key(i))));
        EXPECT_FALSE(defaults.boolean(key(i))) << i;
    }
}

TEST_F(SettingsDefaultsTest, aCorruptFileGivesTheDefaultsAndStaysUsable) {
    test::writeFile(folder_ / "Corvane.conf", std::string("\0\xFF[[%%\nalertPreferences=@ByteArray({\"", 36));
    QSettings settings(file(), QSettings::IniFormat);
    SettingsDefaults defaults(settings);
    EXPECT_EQ(AlertPreferences::load(defaults, "alertPreferences"), AlertPreferences());
    AlertPreferences chosen;
    chosen.waitingSound = "Hero";
    chosen.save(defaults, "alertPreferences");
    settings.sync();

    QSettings again(file(), QSettings::IniFormat);
    const SettingsDefaults reread(again);
    EXPECT_EQ(AlertPreferences::load(reread, "alertPreferences"), chosen);
}

TEST_F(SettingsDefaultsTest, aTruncatedFileGivesTheDefaults) {
    test::writeFile(folder_ / "Corvane.conf", "[General]\nalertPreferences=@ByteArray({\\\"waitingSound");
    QSettings settings(file(), QSettings::IniFormat);
    const SettingsDefaults defaults(settings);
    EXPECT_EQ(AlertPreferences::load(defaults, "alertPreferences"), AlertPreferences());
}

TEST_F(SettingsDefaultsTest, valuesThatCannotBeStoredApplyUntilTheEnd) {
    // Nobody can write a file where a folder is.
    std::filesystem::create_directory(folder_ / "Corvane.conf");
    QSettings settings(file(), QSettings::IniFormat);
    SettingsDefaults defaults(settings);
    AlertPreferences chosen;
    chosen.waitingSound = "Hero";
    chosen.save(defaults, "alertPreferences");
    settings.sync();
    EXPECT_NE(settings.status(), QSettings::NoError);
    EXPECT_EQ(AlertPreferences::load(defaults, "alertPreferences"), chosen);
}

/// While it exists, no file of this process can grow, as on a full disk.
class FullDisk {
  public:
    FullDisk()
        : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &limit_);
        rlimit none = limit_;
        none.rlim_cur = 0;
        setrlimit(RLIMIT_FSIZE, &none);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &limit_);
        std::signal(SIGXFSZ, handler_);
    }

  private:
    rlimit limit_{};
    void (*handler_)(int);
};

TEST_F(SettingsDefaultsTest, onAFullDiskTheOldPreferencesStayAndTheNewOnesApplyUntilTheyCanBeStored) {
    AlertPreferences old;
    old.waitingSound = "Ping";
    AlertPreferences chosen;
    chosen.waitingSound = "Hero";
    QSettings settings(file(), QSettings::IniFormat);
    SettingsDefaults defaults(settings);
    old.save(defaults, "alertPreferences");
    settings.sync();
    const std::optional<std::string> before = test::fileBytes(folder_ / "Corvane.conf");
    {
        const FullDisk disk;
        chosen.save(defaults, "alertPreferences");
        settings.sync();
        EXPECT_NE(settings.status(), QSettings::NoError);
    }
    EXPECT_EQ(test::fileBytes(folder_ / "Corvane.conf"), before);
    EXPECT_EQ(AlertPreferences::load(defaults, "alertPreferences"), chosen);
    settings.sync();
    QSettings again(file(), QSettings::IniFormat);
    const SettingsDefaults reread(again);
    EXPECT_EQ(AlertPreferences::load(reread, "alertPreferences"), chosen);
}

TEST_F(SettingsDefaultsTest, valuesAreStoredOnceAFileInTheFoldersPlaceIsRemoved) {
    const std::filesystem::path folder = folder_ / "config";
    test::writeFile(folder, "in the way");
    const QString path = QString::fromStdString((folder / "Corvane.conf").string());
    QSettings settings(path, QSettings::IniFormat);
    SettingsDefaults defaults(settings);
    AlertPreferences chosen;
    chosen.doneSound = "Purr";
    chosen.save(defaults, "alertPreferences");
    settings.sync();
    EXPECT_EQ(AlertPreferences::load(defaults, "alertPreferences"), chosen);
    EXPECT_EQ(test::fileBytes(folder), "in the way");

    std::filesystem::remove(folder);
    settings.sync();
    QSettings again(path, QSettings::IniFormat);
    const SettingsDefaults reread(again);
    EXPECT_EQ(AlertPreferences::load(reread, "alertPreferences"), chosen);
}

TEST_F(SettingsDefaultsTest, aLinkInTheFilesPlaceIsKept) {
    test::writeFile(folder_ / "elsewhere", "");
    std::filesystem::create_symlink(folder_ / "elsewhere", folder_ / "Corvane.conf");
    {
        QSettings settings(file(), QSettings::IniFormat);
        SettingsDefaults defaults(settings);
        defaults.setBoolean("flag", true);
    }
    EXPECT_TRUE(std::filesystem::is_symlink(folder_ / "Corvane.conf"));
    QSettings settings(file(), QSettings::IniFormat);
    EXPECT_TRUE(SettingsDefaults(settings).boolean("flag"));
}

} // namespace
} // namespace corvane

#include "Platform/Linux/XSettings.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {
namespace {

/// Writes a manager's property in either byte order.
class Settings {
  public:
    explicit Settings(bool isBigEndian)
        : isBigEndian_(isBigEndian) {}

    void addNumber(std::string_view name, std::uint32_t value) {
        begin(0, name);
        number(value, 4);
    }
    void addText(std::string_view name, std::string_view value) {
        begin(1, name);
        number(static_cast<std::uint32_t>(value.size()), 4);
        padded(value);
    }
    void addColor(std::string_view name) {
        begin(2, name);
        settings_.append(8, '\x7f');
    }

    [[nodiscard]] std::string bytes() {
        std::string body;
        body.swap(settings_);
        settings_ = std::string(1, isBigEndian_ ? '\1' : '\0') + std::string(3, '\0');
        number(7, 4);
        number(count_, 4);
        return settings_ + body;
    }

  private:
    void begin(char type, std::string_view name) {
        ++count_;
        settings_ += type;
        settings_ += '\0';
        number(static_cast<std::uint32_t>(name.size()), 2);
        padded(name);
        number(3, 4);
    }
    void number(std::uint32_t value, std::size_t size) {
        for (std::size_t i = 0; i < size; ++i) {
            const std::size_t shift = 8 * (isBigEndian_ ? size - 1 - i : i);
            settings_ += static_cast<char>(value >> shift & 0xFFU);
        }
    }
    void padded(std::string_view text) {
        settings_ += text;
        settings_.append((4 - text.size() % 4) % 4, '\0');
    }

    bool isBigEndian_;
    std::uint32_t count_ = 0;
    std::string settings_;
};

std::string full(bool isBigEndian) {
    Settings settings(isBigEndian);
    settings.addNumber("Xft/DPI", 96 * 1024);
    settings.addColor("Gtk/Color");
    settings.addText("Net/ThemeName", "Greybird-dark");
    settings.addText("Net/IconThemeName", "elementary");
    settings.addNumber("Gtk/EnableAnimations", 0);
    return settings.bytes();
}

TEST(XSettings, readsBothByteOrders) {
    for (const bool isBigEndian : {false, true}) {
        const XSettingsLook look = XSettings::parsed(full(isBigEndian));
        EXPECT_EQ(look.themeName, "Greybird-dark");
        EXPECT_EQ(look.animations, false);
    }
}

TEST(XSettings, reportsNothingThatTheManagerOmits) {
    Settings settings(false);
    settings.addNumber("Xft/DPI", 96 * 1024);
    EXPECT_EQ(XSettings::parsed(settings.bytes()), XSettingsLook());
    EXPECT_EQ(XSettings::parsed(""), XSettingsLook());
}

TEST(XSettings, doesNotMistakeTextsForNumbersOrNumbersForTexts) {
    Settings settings(false);
    settings.addText("Gtk/EnableAnimations", "0");
    settings.addNumber("Net/ThemeName", 3);
    EXPECT_EQ(XSettings::parsed(settings.bytes()), XSettingsLook());
}

TEST(XSettings, readsNothingBeyondTheProperty) {
    const std::string bytes = full(false);
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        // A separate copy, so that the sanitizer detects a read past the end.
        const std::vector<char> part(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
        const XSettingsLook look = XSettings::parsed({part.data(), part.size()});
        EXPECT_TRUE(look.themeName.empty() || look.themeName == "Greybird-dark") << size;
        EXPECT_FALSE(look.animations.has_value()) << size;
    }
    std::string manyMore = bytes;
    manyMore[8] = '\xff';
    manyMore[11] = '\xff';
    EXPECT_EQ(XSettings::parsed(manyMore).themeName, "Greybird-dark");
}

} // namespace
} // namespace corvane

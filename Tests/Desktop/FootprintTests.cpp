// What the running application costs while nothing happens: Benchmarks/footprint has the figures.

#include "Desktop/Support/DesktopSession.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <limits>
#include <map>
#include <sstream>
#include <string>
#include <thread>

namespace corvane::test {

namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

class Footprint : public testing::Test {
  protected:
    /// How often the application's threads went to sleep per second, and so were woken: the least of three
    /// measurements, since the start and the paging of a busy machine cause more.
    [[nodiscard]] double wakeUps() {
        constexpr auto duration = 3s;
        double fewest = std::numeric_limits<double>::max();
        for (int i = 0; i < 3; ++i) {
            const std::map<std::string, long> before = sleeps();
            std::this_thread::sleep_for(duration);
            long sum = 0;
            for (const auto& [thread, count] : sleeps()) {
                const auto earlier = before.find(thread);
                sum += count - (earlier == before.end() ? 0 : earlier->second);
            }
            fewest = std::min(fewest, static_cast<double>(sum) / duration.count());
        }
        return fewest;
    }

    /// KiB of the library's file that the application has in memory.
    [[nodiscard]] long resident(const std::string& library) {
        std::istringstream maps(
            fileBytes("/proc/" + std::to_string(desktop.application().id()) + "/smaps").value_or(""));
        long sum = 0;
        bool isOfLibrary = false;
        for (std::string line; std::getline(maps, line);) {
            // The line of a mapping begins with its addresses, in lower case.
            if (line.find('-') < line.find(' ')) isOfLibrary = line.find('/' + library) != std::string::npos;
            if (isOfLibrary && line.starts_with("Rss:")) sum += std::stol(line.substr(line.find(':') + 1));
        }
        return sum;
    }

    DesktopSession desktop;

  private:
    /// By thread: one that ends must not count against the others.
    [[nodiscard]] std::map<std::string, long> sleeps() {
        std::map<std::string, long> result;
        const std::string folder = "/proc/" + std::to_string(desktop.application().id()) + "/task";
        for (const auto& task : fs::directory_iterator(folder)) {
            std::istringstream status(fileBytes(task.path() / "status").value_or(""));
            long count = 0;
            for (std::string word; status >> word;) {
                if (word == "voluntary_ctxt_switches:" && status >> count)
                    result[task.path().filename()] = count;
            }
        }
        return result;
    }
};

// With room for one pass more than seconds.
TEST_F(Footprint, withoutBannersItWakesOnceASecond) {
    desktop.startApplication();
    EXPECT_LE(wakeUps(), 1.5);
}

TEST_F(Footprint, threeBannersWithTheirClocksWakeItHardlyMore) {
    desktop.startApplication();
    for (const char* const session : {"a", "b", "c"})
        desktop.claude("Notification-permission_prompt", session, "shop");
    ASSERT_TRUE(desktop.shows(3, 0, 5s));
    EXPECT_LE(wakeUps(), 4);
}

// The rules for finding characters, and the code that reads them, take a mebibyte.
TEST_F(Footprint, linesThatFitDoNotLoadTheCharacterRules) {
    desktop.startApplication();
    const long before = resident("libicudata");
    ASSERT_GT(before, 0);
    for (const char* const session : {"a", "b", "c"})
        desktop.claude("Notification-permission_prompt", session, "shop");
    ASSERT_TRUE(desktop.shows(3, 0, 5s));
    EXPECT_EQ(resident("libicudata"), before);
}

// Drawing the icon of windows takes memory that is kept; only those that window lists show need it.
TEST_F(Footprint, bannersCarryNoIcon) {
    desktop.startApplication();
    desktop.claude("Notification-permission_prompt", "a", "shop");
    ASSERT_TRUE(desktop.shows(1, 0, 5s));
    EXPECT_TRUE(desktop.screen().iconSides(desktop.screen().banners().at(0).window).empty());
}

} // namespace

} // namespace corvane::test

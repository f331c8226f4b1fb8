#include "Platform/Linux/WindowChoice.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace corvane {
namespace {

int rank(const char* title, const char* directory = "/home/you/shop") {
    return titleRank(QString::fromUtf8(title), QString::fromUtf8(directory), QStringLiteral("claude"),
                     QStringLiteral("/home/you"));
}

TEST(TitleRank, pathsRankAboveNamesAndNamesAboveTheAgent) {
    EXPECT_EQ(rank("Terminal"), 0);
    EXPECT_EQ(rank("✳ Claude Code"), 1);
    EXPECT_EQ(rank("vim - shop"), 2);
    EXPECT_EQ(rank("claude (shop)"), 3);
    EXPECT_EQ(rank("you@host: ~/shop"), 4);
    EXPECT_EQ(rank("/home/you/shop"), 4);
    EXPECT_EQ(rank("claude ~/shop"), 5);
}

TEST(TitleRank, partsOfOtherNamesDoNotCount) {
    for (const char* const title :
         {"workshop", "shop2", "my-shop", "~/shop/sub", "/home/you/shop_old", "claudette", "reclaude"})
        EXPECT_EQ(rank(title), 0) << title;
    EXPECT_EQ(rank("/srv/shop"), 2) << "another folder of that name";
    EXPECT_EQ(rank("workshop, shop"), 2) << "the second one does";
    EXPECT_EQ(rank("Shop"), 0) << "names of folders differ by case";
}

TEST(TitleRank, theHomeFolderIsATilde) {
    EXPECT_EQ(rank("you@host: ~", "/home/you"), 4);
    EXPECT_EQ(rank("you@host: ~/shop", "/home/you"), 2) << "only the user's name";
    EXPECT_EQ(rank("you@host: ~", "/home/younger"), 0);
}

TEST(TitleRank, aDirectoryWithoutANameMatchesNothing) {
    EXPECT_EQ(rank("anything", ""), 0);
    EXPECT_EQ(rank("a / b", "/"), 4);
    EXPECT_EQ(rank("~/shop", "/home/you/shop/"), 4) << "a slash at the end is no part of it";
}

OpenWindow window(pid_t process, const char* title, std::optional<std::uint32_t> id = std::nullopt,
                  const char* windowClass = "foot") {
    return {process, id, QString::fromUtf8(windowClass), QString::fromUtf8(title)};
}

class WindowChoice : public testing::Test {
  protected:
    WindowChoice() {
        search.directory = QStringLiteral("/home/you/shop");
        search.agent = QStringLiteral("claude");
        search.processes = {30, 20, 1};
    }

    [[nodiscard]] std::optional<std::size_t> choose(const std::vector<OpenWindow>& windows) const {
        return chooseWindow(windows, search);
    }

    WindowSearch search;
};

TEST_F(WindowChoice, theNearestAncestorWithAWindowIsChosen) {
    EXPECT_EQ(choose({window(1, "shop"), window(20, ""), window(7, "shop")}), 1U);
    EXPECT_EQ(choose({window(7, "shop")}), std::nullopt);
    EXPECT_EQ(choose({}), std::nullopt);
}

TEST_F(WindowChoice, amongOneProcessesWindowsTheIdWinsThenTheTitleThenTheLastUsed) {
    const std::vector<OpenWindow> windows{window(20, "one", 5), window(20, "shop", 6), window(20, "shop", 7),
                                          window(20, "two", 8)};
    EXPECT_EQ(choose(windows), 1U);
    search.windowID = 8;
    EXPECT_EQ(choose(windows), 3U);
    search.windowID = 9;
    EXPECT_EQ(choose(windows), 1U) << "the ID is inherited from elsewhere";
    search.directory = QStringLiteral("/home/you/other");
    EXPECT_EQ(choose(windows), 0U);
    EXPECT_EQ(choose({window(20, "x"), window(20, "Claude")}), 1U);
}

TEST_F(WindowChoice, anIdOfAnotherProcessDoesNotCount) {
    search.windowID = 5;
    EXPECT_EQ(choose({window(7, "", 5), window(20, "", 6)}), 1U);
}

TEST_F(WindowChoice, withoutProcessesWindowsAreFoundByTheirClass) {
    search.processes.clear();
    search.classes = {QStringLiteral("com.mitchellh.ghostty"), QStringLiteral("Ghostty")};
    EXPECT_EQ(
        choose({window(7, "", 5, "foot"), window(8, "", 6, "ghostty"), window(9, "shop", 7, "GHOSTTY")}), 2U);
    EXPECT_EQ(choose({window(7, "shop")}), std::nullopt);
}

} // namespace
} // namespace corvane

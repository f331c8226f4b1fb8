#include "Platform/Linux/Tmux.h"

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace corvane::tmux {
namespace {

using Command = std::vector<std::string>;

// Session $0 has two windows, of which it shows the second; $1 shares the first with it.
const std::string output = "client 500 /dev/pts/5 $0 0 1790000000\n"
                           "client 600 /dev/pts/6 $1 0 1790000100\n"
                           "client 700 /dev/pts/7 $0 1 1790000200\n"
                           "pane %0 @0 $0 1 0 50\n"
                           "pane %1 @0 $0 0 0 51\n"
                           "pane %2 @1 $0 1 1 52\n"
                           "pane %0 @0 $1 1 1 50\n"
                           "pane %1 @0 $1 0 1 51\n";

TEST(Tmux, theSocketIsBeforeTheLastTwoCommas) {
    EXPECT_EQ(socket("/tmp/tmux-1000/default,1234,0"), "/tmp/tmux-1000/default");
    EXPECT_EQ(socket("/tmp/a,b,1,2"), "/tmp/a,b");
    for (const char* const malformed : {"", "/tmp/x", "/tmp/x,1", "x,1,2", "-L,1,2"})
        EXPECT_EQ(socket(malformed), std::nullopt) << malformed;
}

TEST(Tmux, readsClientsAndPanes) {
    const Server server = parse(output);
    ASSERT_EQ(server.clients.size(), 3U);
    EXPECT_EQ(server.clients[0], (Client{500, "/dev/pts/5", "$0", false, 1'790'000'000}));
    EXPECT_TRUE(server.clients[2].isReadOnly);
    ASSERT_EQ(server.panes.size(), 5U);
    EXPECT_EQ(server.panes[0], (Pane{"%0", "@0", "$0", true, false, 50}));
    EXPECT_EQ(server.panes[4], (Pane{"%1", "@0", "$1", false, true, 51}));
}

TEST(Tmux, ignoresMalformedLines) {
    EXPECT_EQ(parse("\nclient\nclient x /dev/pts/1 $0 0 1\nclient 1 /dev/pts/1 0 0 1\nclient 1  $0 0 1\n"
                    "client 1 -t $0 0 1\nclient 1 /dev/pts/1 $0 0\nclient 1 /dev/pts/1 $0 0 now\n"
                    "pane 0 @0 $0 1 1 1\npane % @0 $0 1 1 1\npane %0 @x $0 1 1 1\npane %0 @0 -t 1 1 1\n"
                    "pane %0 @0 $0 1 1\npane %0 @0 $0 1 1 1 1\nno server running on /tmp/x\n"),
              Server());
    EXPECT_EQ(parse(""), Server());
}

TEST(Tmux, findsThePaneByItsVariableElseByTheProcessInIt) {
    const Server server = parse(output);
    const std::array<pid_t, 3> ancestry{90, 52, 1};
    EXPECT_EQ(views(server, "%1", ancestry).front().pane.id, "%1");
    EXPECT_EQ(views(server, std::nullopt, ancestry).front().pane.id, "%2");
    EXPECT_EQ(views(server, "%9", ancestry).front().pane.id, "%2") << "of another server";
    EXPECT_TRUE(views(server, std::nullopt, std::array<pid_t, 1>{90}).empty());
}

TEST(Tmux, prefersClientsThatShowTheSessionThenTheOneLastUsed) {
    std::vector<pid_t> order;
    for (const View& view : views(parse(output), "%2", {}))
        order.push_back(view.client.process);
    EXPECT_EQ(order, (std::vector<pid_t>{700, 500, 600}));

    const std::string elsewhere =
        "client 1 /dev/pts/1 $0 1 20\nclient 2 /dev/pts/2 $0 0 10\npane %5 @5 $5 1 1 9\n";
    const std::vector<View> others = views(parse(elsewhere), "%5", {});
    ASSERT_EQ(others.size(), 1U) << "a read-only client cannot be switched";
    EXPECT_EQ(others.front().client.process, 2);
}

TEST(Tmux, selectsOnlyWhatIsNotShownYet) {
    const Server server = parse(output);
    const auto commandFor = [&](const std::string& pane, pid_t client) {
        for (const View& view : views(server, pane, {})) {
            if (view.client.process == client) return selection("/s", view);
        }
        return Command{"no view"};
    };
    EXPECT_EQ(commandFor("%2", 500), Command());
    EXPECT_EQ(commandFor("%0", 500), (Command{"-S", "/s", "select-window", "-t", "$0:@0"}));
    EXPECT_EQ(commandFor("%1", 500),
              (Command{"-S", "/s", "select-window", "-t", "$0:@0", ";", "select-pane", "-t", "%1"}));
    EXPECT_EQ(commandFor("%1", 600), (Command{"-S", "/s", "select-pane", "-t", "%1"}));
    EXPECT_EQ(commandFor("%2", 600), (Command{"-S", "/s", "switch-client", "-c", "/dev/pts/6", "-t", "$0"}));
    EXPECT_EQ(commandFor("%1", 700), Command()) << "it is read-only";
}

} // namespace
} // namespace corvane::tmux

#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

/// The clients and panes that a tmux server reports, and the commands that make it show a pane. Pure
/// functions; commands are lists of arguments for the program tmux, without a shell.
namespace corvane::tmux {

/// A terminal that is attached to the server.
struct Client {
    pid_t process = 0;
    std::string terminal; ///< the name of its terminal device
    std::string session;  ///< the identifier of the session that it shows
    bool isReadOnly = false;
    std::int64_t lastActive = 0; ///< seconds since 1970
    bool operator==(const Client&) const = default;
};

/// A pane as part of a session. Sessions may share windows; a pane then occurs once per session.
struct Pane {
    std::string id;
    std::string window;
    std::string session;
    bool isActive = false;        ///< whether it has the focus of its window
    bool isWindowCurrent = false; ///< whether the session shows its window
    pid_t process = 0;            ///< its first process
    bool operator==(const Pane&) const = default;
};

struct Server {
    std::vector<Client> clients;
    std::vector<Pane> panes;
    bool operator==(const Server&) const = default;
};

/// A client that can show a pane.
struct View {
    Client client;
    Pane pane;
    bool operator==(const View&) const = default;
};

/// The server's socket in the value of the variable TMUX; none when it is malformed.
[[nodiscard]] std::optional<std::string> socket(std::string_view variable);

/// The command that prints what `parse` reads.
[[nodiscard]] std::vector<std::string> query(const std::string& socket);

/// Ignores lines of other forms, which other versions may print.
[[nodiscard]] Server parse(std::string_view output);

/// The clients that can show the agent's pane, the best first: clients that show a session with the pane
/// before those that can be switched to one, and within each group the most recently used first. The pane is
/// the one in the agent's variable TMUX_PANE, else the one whose first process is an ancestor of the agent;
/// `ancestry` is the agent, its parent, and so on.
[[nodiscard]] std::vector<View> views(const Server& server, const std::optional<std::string>& paneVariable,
                                      std::span<const pid_t> ancestry);

/// The command that makes the client show and focus the pane; empty if it does already, or if the client is
/// read-only.
[[nodiscard]] std::vector<std::string> selection(const std::string& socket, const View& view);

} // namespace corvane::tmux

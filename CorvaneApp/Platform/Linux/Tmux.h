#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

/// What a tmux server reports of its clients and panes, and what to tell it so that a pane is seen. Pure
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

/// A pane as part of a session. Sessions may share windows; their panes then occur once for each.
struct Pane {
    std::string id;
    std::string window;
    std::string session;
    bool isActive = false;        ///< whether it has the focus of its window
    bool isWindowCurrent = false; ///< whether the session shows its window
    pid_t process = 0;            ///< the first one that runs in it
    bool operator==(const Pane&) const = default;
};

struct Server {
    std::vector<Client> clients;
    std::vector<Pane> panes;
    bool operator==(const Server&) const = default;
};

/// A client in which a pane can be seen.
struct View {
    Client client;
    Pane pane;
    bool operator==(const View&) const = default;
};

/// The server's socket in the value of the variable TMUX; none when it is malformed.
[[nodiscard]] std::optional<std::string> socket(std::string_view variable);

/// The command that prints what `parse` reads.
[[nodiscard]] std::vector<std::string> query(const std::string& socket);

/// Lines of other forms, as other versions may print, are left out.
[[nodiscard]] Server parse(std::string_view output);

/// Where the agent's pane can be seen, the best first: clients that show a session with the pane before those
/// that can be switched to one, and of these the client last used. The pane is the one that the agent's
/// variable TMUX_PANE names, else the one of whose first process the agent descends; `ancestry` is the agent,
/// its parent, and so on.
[[nodiscard]] std::vector<View> views(const Server& server, const std::optional<std::string>& paneVariable,
                                      std::span<const pid_t> ancestry);

/// The command after which the client shows the pane and types into it; empty when it does already, or when
/// the client may only look on.
[[nodiscard]] std::vector<std::string> selection(const std::string& socket, const View& view);

} // namespace corvane::tmux

#include "Platform/Linux/Tmux.h"

#include "Platform/Linux/Number.h"

#include <algorithm>
#include <tuple>

namespace corvane::tmux {

namespace {

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    while (true) {
        const std::size_t end = text.find(separator);
        parts.push_back(text.substr(0, end));
        if (end == std::string_view::npos) return parts;
        text.remove_prefix(end + 1);
    }
}

/// Whether `text` is an identifier as tmux assigns them, which is unambiguous as a command's target.
bool isIdentifier(std::string_view text, char kind) {
    return text.size() > 1 && text.front() == kind &&
           text.find_first_not_of("0123456789", 1) == std::string_view::npos;
}

void readClient(std::span<const std::string_view> fields, Server& server) {
    if (fields.size() != 6) return;
    const std::optional<pid_t> process = number<pid_t>(fields[1]);
    const std::optional<std::int64_t> lastActive = number<std::int64_t>(fields[5]);
    if (!process || !lastActive || !fields[2].starts_with('/') || !isIdentifier(fields[3], '$')) return;
    server.clients.push_back(
        {*process, std::string(fields[2]), std::string(fields[3]), fields[4] == "1", *lastActive});
}

void readPane(std::span<const std::string_view> fields, Server& server) {
    if (fields.size() != 7) return;
    const std::optional<pid_t> process = number<pid_t>(fields[6]);
    if (!process || !isIdentifier(fields[1], '%') || !isIdentifier(fields[2], '@') ||
        !isIdentifier(fields[3], '$')) {
        return;
    }
    server.panes.push_back({std::string(fields[1]), std::string(fields[2]), std::string(fields[3]),
                            fields[4] == "1", fields[5] == "1", *process});
}

} // namespace

std::optional<std::string> socket(std::string_view variable) {
    // "socket,server's process,session"; a path may hold commas too.
    for (int i = 0; i < 2; ++i) {
        const std::size_t comma = variable.rfind(',');
        if (comma == std::string_view::npos) return std::nullopt;
        variable = variable.substr(0, comma);
    }
    return variable.starts_with('/') ? std::optional<std::string>(variable) : std::nullopt;
}

std::vector<std::string> query(const std::string& socket) {
    return {"-S",
            socket,
            "list-clients",
            "-F",
            "client #{client_pid} #{client_tty} #{session_id} #{client_readonly} #{client_activity}",
            ";",
            "list-panes",
            "-a",
            "-F",
            "pane #{pane_id} #{window_id} #{session_id} #{pane_active} #{window_active} #{pane_pid}"};
}

Server parse(std::string_view output) {
    Server server;
    for (const std::string_view line : split(output, '\n')) {
        const std::vector<std::string_view> fields = split(line, ' ');
        if (fields.front() == "client") readClient(fields, server);
        if (fields.front() == "pane") readPane(fields, server);
    }
    return server;
}

std::vector<View> views(const Server& server, const std::optional<std::string>& paneVariable,
                        std::span<const pid_t> ancestry) {
    std::vector<Pane> panes;
    std::ranges::copy_if(server.panes, std::back_inserter(panes),
                         [&](const Pane& pane) { return pane.id == paneVariable; });
    if (panes.empty()) {
        std::ranges::copy_if(server.panes, std::back_inserter(panes), [&](const Pane& pane) {
            return std::ranges::find(ancestry, pane.process) != ancestry.end();
        });
    }
    std::vector<View> views;
    for (const Client& client : server.clients) {
        const auto own = std::ranges::find(panes, client.session, &Pane::session);
        if (own != panes.end()) {
            views.push_back({client, *own});
        } else if (!panes.empty() && !client.isReadOnly) {
            views.push_back({client, panes.front()});
        }
    }
    std::ranges::stable_sort(views, std::less<>(), [](const View& view) {
        return std::tuple(view.client.session != view.pane.session, -view.client.lastActive);
    });
    return views;
}

std::vector<std::string> selection(const std::string& socket, const View& view) {
    const auto& [client, pane] = view;
    if (client.isReadOnly) return {};
    std::vector<std::string> commands;
    const auto add = [&commands](std::initializer_list<std::string> command) {
        if (!commands.empty()) commands.emplace_back(";");
        commands.insert(commands.end(), command);
    };
    if (!pane.isWindowCurrent) add({"select-window", "-t", pane.session + ":" + pane.window});
    if (!pane.isActive) add({"select-pane", "-t", pane.id});
    if (client.session != pane.session) add({"switch-client", "-c", client.terminal, "-t", pane.session});
    if (!commands.empty()) commands.insert(commands.begin(), {"-S", socket});
    return commands;
}

} // namespace corvane::tmux

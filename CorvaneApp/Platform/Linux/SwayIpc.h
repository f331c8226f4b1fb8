#pragma once

#include <QByteArray>
#include <QString>

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>

class QObject;

/// The protocol by which sway takes commands and reports its windows and outputs: one request and its reply
/// per connection to a local socket. Never blocks. Main thread only.
namespace corvane::sway {

/// The protocol's request numbers.
enum class Request : std::uint32_t { runCommand = 0, workspaces = 1, outputs = 3, tree = 4 };

/// How long a reply may take.
inline constexpr std::chrono::milliseconds patience{500};

/// The socket of the running sway; none in other sessions.
[[nodiscard]] std::optional<QString> socket();

/// Sends one request. `finished` is called once, after this function has returned, with the reply's JSON;
/// with none if sway cannot be reached, ends the connection, sends something else or takes longer than
/// `limit`. It is not called if `context` is destroyed first.
void ask(const QString& socket, Request request, const QByteArray& payload, QObject& context,
         std::function<void(std::optional<QByteArray> json)> finished,
         std::chrono::milliseconds limit = patience);

} // namespace corvane::sway

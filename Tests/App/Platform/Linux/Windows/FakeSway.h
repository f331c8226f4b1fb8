#pragma once

#include "Support/FileDescriptor.h"
#include "Support/TestSupport.h"

#include <QByteArray>
#include <QSocketNotifier>
#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace corvane::test {

/// A server on its own socket that speaks sway's protocol, or whatever a test makes it send. Works while the
/// event loop runs.
class FakeSway {
  public:
    FakeSway();

    [[nodiscard]] QString socket() const;

    /// The bytes to send for a request with this number and payload; nothing if empty. By default a proper
    /// reply with the next of `replies`.
    std::function<QByteArray(std::uint32_t type, const QByteArray& payload)> respond;
    std::vector<QByteArray> replies;
    /// Whether to end a connection after the response.
    bool hangsUp = false;
    /// What was requested.
    std::vector<std::pair<std::uint32_t, QByteArray>> requests;

    /// A message of the protocol.
    [[nodiscard]] static QByteArray message(std::uint32_t type, const QByteArray& payload);

  private:
    struct Connection {
        files::FileDescriptor descriptor;
        std::unique_ptr<QSocketNotifier> readable;
    };

    void accept();
    void read(Connection& connection);

    ScratchFolder folder_{"sway"};
    files::FileDescriptor listening_;
    std::unique_ptr<QSocketNotifier> incoming_;
    std::vector<std::unique_ptr<Connection>> connections_;
};

} // namespace corvane::test

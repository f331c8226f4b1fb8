#include "App/Platform/Linux/Windows/FakeSway.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>

namespace corvane::test {

FakeSway::FakeSway()
    : listening_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    respond = [this](std::uint32_t type, const QByteArray&) {
        if (replies.empty()) return QByteArray();
        const QByteArray reply = replies.front();
        replies.erase(replies.begin());
        return message(type, reply);
    };
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = (folder_ / "socket").string();
    path.copy(static_cast<char*>(address.sun_path), sizeof(address.sun_path) - 1);
    constexpr int backlog = 5;
    if (bind(listening_.number(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0 ||
        listen(listening_.number(), backlog) != 0)
        throw std::runtime_error("no socket at " + path);
    incoming_ = std::make_unique<QSocketNotifier>(listening_.number(), QSocketNotifier::Read);
    QObject::connect(incoming_.get(), &QSocketNotifier::activated, incoming_.get(), [this] { accept(); });
}

QString FakeSway::socket() const {
    return QString::fromStdString((folder_ / "socket").string());
}

QByteArray FakeSway::message(std::uint32_t type, const QByteArray& payload) {
    QByteArray bytes("i3-ipc");
    for (const std::uint32_t number : {static_cast<std::uint32_t>(payload.size()), type})
        bytes.append(reinterpret_cast<const char*>(&number), sizeof(number));
    return bytes + payload;
}

void FakeSway::accept() {
    auto connection = std::make_unique<Connection>();
    connection->descriptor =
        files::FileDescriptor(accept4(listening_.number(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    connection->readable =
        std::make_unique<QSocketNotifier>(connection->descriptor.number(), QSocketNotifier::Read);
    QObject::connect(connection->readable.get(), &QSocketNotifier::activated, connection->readable.get(),
                     [this, connection = connection.get()] { read(*connection); });
    connections_.push_back(std::move(connection));
}

void FakeSway::read(Connection& connection) {
    constexpr std::size_t headerSize = 14;
    std::array<char, 4096> block{};
    const ssize_t size = recv(connection.descriptor.number(), block.data(), block.size(), 0);
    if (size < static_cast<ssize_t>(headerSize)) {
        connection.readable->setEnabled(false); // it has hung up
        return;
    }
    std::uint32_t type = 0;
    std::memcpy(&type, block.data() + 10, sizeof(type));
    const QByteArray payload(block.data() + headerSize, size - static_cast<ssize_t>(headerSize));
    requests.emplace_back(type, payload);
    const QByteArray bytes = respond(type, payload);
    send(connection.descriptor.number(), bytes.constData(), static_cast<std::size_t>(bytes.size()),
         MSG_NOSIGNAL);
    if (hangsUp) shutdown(connection.descriptor.number(), SHUT_RDWR);
}

} // namespace corvane::test

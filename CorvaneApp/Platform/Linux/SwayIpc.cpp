#include "Platform/Linux/SwayIpc.h"

#include "Support/FileDescriptor.h"

#include <QFile>
#include <QSocketNotifier>
#include <QTimer>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <memory>
#include <sys/socket.h>
#include <sys/un.h>
#include <utility>

namespace corvane::sway {

namespace {

constexpr std::array<char, 6> magic{'i', '3', '-', 'i', 'p', 'c'};
// The magic, then the payload's length and the request's number, both in host byte order.
constexpr std::size_t headerSize = magic.size() + 2 * sizeof(std::uint32_t);
// A description of hundreds of windows takes less than one megabyte.
constexpr std::uint32_t longestReply = std::uint32_t{16} * 1024 * 1024;

QByteArray message(Request request, const QByteArray& payload) {
    QByteArray bytes(magic.data(), magic.size());
    for (const std::uint32_t number :
         {static_cast<std::uint32_t>(payload.size()), static_cast<std::uint32_t>(request)}) {
        bytes.append(reinterpret_cast<const char*>(&number), sizeof(number));
    }
    return bytes + payload;
}

std::uint32_t numberAt(const QByteArray& bytes, std::size_t position) {
    std::uint32_t number = 0;
    std::memcpy(&number, bytes.constData() + position, sizeof(number));
    return number;
}

/// Connects without blocking; closed on failure.
files::FileDescriptor connected(const QString& path) {
    const QByteArray name = QFile::encodeName(path);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (name.isEmpty() || name.size() >= static_cast<qsizetype>(sizeof(address.sun_path))) return {};
    std::copy(name.begin(), name.end(), static_cast<char*>(address.sun_path));
    files::FileDescriptor opened(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!opened.isOpen() ||
        connect(opened.number(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0)
        return {};
    return opened;
}

/// One request and its reply. Deletes itself when done.
class Exchange : public QObject {
  public:
    Exchange(QObject& context, std::function<void(std::optional<QByteArray>)> finished)
        : QObject(&context)
        , finished_(std::move(finished)) {}

    void start(const QString& path, Request request, const QByteArray& payload,
               std::chrono::milliseconds limit) {
        request_ = request;
        limit_.setSingleShot(true);
        QObject::connect(&limit_, &QTimer::timeout, this, [this] { finish(std::nullopt); });
        socket_ = connected(path);
        const QByteArray bytes = message(request, payload);
        // A new connection's buffer holds the whole of so short a message.
        if (!socket_.isOpen() || send(socket_.number(), bytes.constData(),
                                      static_cast<std::size_t>(bytes.size()), MSG_NOSIGNAL) != bytes.size()) {
            limit_.start(0);
            return;
        }
        limit_.start(limit);
        readable_ = std::make_unique<QSocketNotifier>(socket_.number(), QSocketNotifier::Read);
        QObject::connect(readable_.get(), &QSocketNotifier::activated, this, [this] { read(); });
    }

  private:
    void read() {
        constexpr std::size_t blockSize = 65536;
        std::array<char, blockSize> block;
        const ssize_t count = recv(socket_.number(), block.data(), block.size(), 0);
        if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
        if (count <= 0) {
            finish(std::nullopt);
            return;
        }
        received_.append(block.data(), count);
        const auto size = static_cast<std::size_t>(received_.size());
        if (size < headerSize) return;
        const std::uint32_t length = numberAt(received_, magic.size());
        const std::uint32_t type = numberAt(received_, magic.size() + sizeof(std::uint32_t));
        if (!std::equal(magic.begin(), magic.end(), received_.cbegin()) ||
            type != static_cast<std::uint32_t>(request_) || length > longestReply) {
            finish(std::nullopt);
        } else if (size >= headerSize + length) {
            finish(received_.mid(headerSize, length));
        }
    }

    void finish(std::optional<QByteArray> json) {
        if (readable_) readable_->setEnabled(false);
        limit_.stop();
        deleteLater();
        // The call may destroy this object.
        const auto report = std::exchange(finished_, {});
        report(std::move(json));
    }

    std::function<void(std::optional<QByteArray>)> finished_;
    Request request_ = Request::runCommand;
    files::FileDescriptor socket_;
    std::unique_ptr<QSocketNotifier> readable_; // destroyed before its socket is closed
    QTimer limit_;
    QByteArray received_;
};

} // namespace

std::optional<QString> socket() {
    const QString path = qEnvironmentVariable("SWAYSOCK");
    return path.isEmpty() ? std::nullopt : std::optional(path);
}

void ask(const QString& socket, Request request, const QByteArray& payload, QObject& context,
         std::function<void(std::optional<QByteArray> json)> finished, std::chrono::milliseconds limit) {
    auto* const exchange = new Exchange(context, std::move(finished));
    exchange->start(socket, request, payload, limit);
}

} // namespace corvane::sway

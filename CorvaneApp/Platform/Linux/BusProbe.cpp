#include "Platform/Linux/BusProbe.h"

#include "Support/FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <iterator>
#include <optional>
#include <poll.h>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace corvane::busprobe {

namespace {

struct Place {
    sockaddr_un address;
    socklen_t size;
};

/// The socket that the first of the addresses names.
std::optional<Place> placeOf(std::string_view address) {
    constexpr std::string_view file = "unix:path=";
    constexpr std::string_view abstract = "unix:abstract=";
    address = address.substr(0, address.find_first_of(",;"));
    const bool isFile = address.starts_with(file);
    // Escapes are rare; such an address is not examined.
    if ((!isFile && !address.starts_with(abstract)) || address.find('%') != std::string_view::npos) return {};
    const std::string_view name = address.substr(isFile ? file.size() : abstract.size());
    const std::size_t start = isFile ? 0 : 1; // the name of an abstract socket begins with a zero byte
    Place place{};
    if (name.empty() || start + name.size() >= sizeof place.address.sun_path) return {};
    place.address.sun_family = AF_UNIX;
    std::copy(name.begin(), name.end(),
              std::next(std::begin(place.address.sun_path), static_cast<int>(start)));
    place.size =
        static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + start + name.size() + (isFile ? 1 : 0));
    return place;
}

} // namespace

std::string sessionAddress() {
    const char* const address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    if (address != nullptr && *address != '\0') return address;
    const char* const runtime = std::getenv("XDG_RUNTIME_DIR");
    if (runtime == nullptr) return {};
    const std::string socket = std::string(runtime) + "/bus";
    return ::access(socket.c_str(), F_OK) == 0 ? "unix:path=" + socket : std::string();
}

std::string accessibilityAddress() {
    const char* const chosen = std::getenv("AT_SPI_BUS_ADDRESS");
    if (chosen != nullptr && *chosen != '\0') return chosen;
    const char* const runtime = std::getenv("XDG_RUNTIME_DIR");
    const char* const display = std::getenv("DISPLAY");
    if (runtime == nullptr) return {};
    const std::string_view name(display == nullptr ? "" : display);
    const std::string_view number = name.substr(name.rfind(':') + 1);
    for (const std::string& suffix : {"_" + std::string(number.substr(0, number.find('.'))), std::string()}) {
        const std::string socket = std::string(runtime) + "/at-spi/bus" + suffix;
        if (::access(socket.c_str(), F_OK) == 0) return "unix:path=" + socket;
    }
    return {};
}

bool hangs(const std::string& address, std::chrono::milliseconds patience) {
    const std::optional<Place> place = placeOf(address);
    if (!place) return false;
    const files::FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    const auto* const name = reinterpret_cast<const sockaddr*>(&place->address);
    // A full backlog means that no connection has been accepted for a long time.
    if (::connect(socket.number(), name, place->size) != 0) return errno == EAGAIN;
    // A bus replies to a zero byte and any authentication request, if only with a list of what it supports.
    constexpr std::string_view greeting{"\0AUTH\r\n", 7};
    if (send(socket.number(), greeting.data(), greeting.size(), MSG_NOSIGNAL) < 0) return false;
    const auto end = std::chrono::steady_clock::now() + patience;
    for (;;) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        pollfd answer{socket.number(), POLLIN, 0};
        const int ready = poll(&answer, 1, std::max(0, static_cast<int>(left.count())));
        if (ready == 0) return true;
        if (ready > 0 || errno != EINTR) return false;
    }
}

} // namespace corvane::busprobe

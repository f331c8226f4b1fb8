#include "Support/MessageBus.h"

#include <algorithm>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace corvane::test {

std::string busConfiguration(const std::filesystem::path& socket, const std::filesystem::path& services) {
    return "<busconfig><type>session</type><listen>unix:path=" + socket.string() +
           "</listen><auth>EXTERNAL</auth>" +
           (services.empty() ? "" : "<servicedir>" + services.string() + "</servicedir>") +
           R"(<policy context="default"><allow send_destination="*" eavesdrop="true"/>)"
           R"(<allow eavesdrop="true"/><allow own="*"/></policy></busconfig>)";
}

bool acceptsConnections(const std::filesystem::path& socket) {
    sockaddr_un address{};
    const std::string& path = socket.native();
    if (path.size() >= sizeof address.sun_path) return false;
    address.sun_family = AF_UNIX;
    std::copy(path.begin(), path.end(), static_cast<char*>(address.sun_path));
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool isAccepted =
        connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(descriptor);
    return isAccepted;
}

} // namespace corvane::test

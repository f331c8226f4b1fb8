#include "Support/MessageBus.h"

namespace corvane::test {

std::string busConfiguration(const std::filesystem::path& socket, const std::filesystem::path& services) {
    return "<busconfig><type>session</type><listen>unix:path=" + socket.string() +
           "</listen><auth>EXTERNAL</auth>" +
           (services.empty() ? "" : "<servicedir>" + services.string() + "</servicedir>") +
           R"(<policy context="default"><allow send_destination="*" eavesdrop="true"/>)"
           R"(<allow eavesdrop="true"/><allow own="*"/></policy></busconfig>)";
}

} // namespace corvane::test

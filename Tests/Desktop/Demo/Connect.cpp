// Connects both agents in the home that HOME names, or removes them, and shows what became of their files.

#include "Connection/AgentConnector.h"
#include "Support/Date.h"

#include <chrono>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>

namespace {

using namespace corvane;
namespace fs = std::filesystem;

void show(const fs::path& home, const fs::path& file, std::string_view when) {
    std::cout << "--- ~/" << file.lexically_relative(home).string() << ' ' << when << '\n';
    std::ifstream input(file, std::ios::binary);
    if (!input) {
        std::cout << "(no such file)\n";
        return;
    }
    const std::string bytes(std::istreambuf_iterator<char>(input), {});
    std::cout << bytes;
    if (!bytes.ends_with('\n')) std::cout << '\n';
}

void connect(const AgentConnector& connector, AgentKind agent) {
    const fs::path file = connector.configFile(agent);
    show(connector.home(), file, "before");
    const auto now = Date::fromSystemClock(std::chrono::system_clock::now());
    const auto backup = connector.connect(agent, now);
    show(connector.home(), file, "with " + std::string(agent.displayName()) + " connected");
    std::cout << "--- backup: " << (backup ? backup->filename().string() : "none") << "\n\n";
}

void disconnect(const AgentConnector& connector, AgentKind agent) {
    connector.disconnect(agent);
    show(connector.home(), connector.configFile(agent),
         "after " + std::string(agent.displayName()) + " was removed");
    std::cout << '\n';
}

} // namespace

int main(int argc, char** argv) {
    const std::string_view action = argc == 2 ? argv[1] : "";
    const char* const home = std::getenv("HOME");
    if ((action != "--connect" && action != "--remove") || home == nullptr) {
        std::cerr << "usage: corvane-connect --connect|--remove\nHOME names the home whose files it edits.\n";
        return 2;
    }
    try {
        const AgentConnector connector{fs::path(home)};
        const bool wanted = action == "--connect";
        for (const AgentKind agent : AgentKind::allCases) {
            if (wanted) {
                connect(connector, agent);
            } else {
                disconnect(connector, agent);
            }
            if (connector.isConnected(agent) != wanted) {
                std::cerr << "corvane-connect: " << agent.displayName() << " is "
                          << (wanted ? "not connected\n" : "still connected\n");
                return 1;
            }
        }
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "corvane-connect: " << error.what() << '\n';
        return 1;
    }
}

#include "CommandLine.h"

namespace corvane::commandline {

namespace {

constexpr std::string_view usage = R"(Usage: corvane [OPTION]

Taps you on the shoulder when an AI coding agent in a terminal needs you. It
stays in the tray; if it runs already, its window opens.

  --autostart  opens no window where there is no tray or it runs already;
               passed at login
  --help, -h   prints this
  --version    prints the version

The options of Qt are accepted too.)";

} // namespace

std::optional<std::string> answer(std::span<const char* const> arguments, std::string_view version) {
    for (const std::string_view argument : arguments) {
        if (argument == "--version") return "corvane " + std::string(version);
        if (argument == "--help" || argument == "-h") return std::string(usage);
    }
    return std::nullopt;
}

} // namespace corvane::commandline

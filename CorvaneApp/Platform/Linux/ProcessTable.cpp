#include "Platform/Linux/ProcessTable.h"

#include "Platform/Linux/Number.h"
#include "Support/FileDescriptor.h"

#include <algorithm>
#include <fcntl.h>
#include <functional>
#include <system_error>
#include <utility>

namespace corvane {

namespace fs = std::filesystem;

namespace {

// More than the kernel allows for a command line or an environment.
constexpr std::size_t longestFile = std::size_t{4} * 1024 * 1024;

// Empty if the process has ended meanwhile: reading then fails although opening did not.
std::string content(const fs::path& file) {
    const files::FileDescriptor opened(open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    std::string buffer;
    if (!opened.isOpen()) return buffer;
    constexpr std::size_t usual = 4096;
    return std::string(files::readToEnd(opened, buffer, {.expected = usual, .most = longestFile})
                           .value_or(std::string_view()));
}

std::vector<std::string_view> parts(std::string_view text, char separator) {
    std::vector<std::string_view> result;
    while (!text.empty()) {
        const std::size_t end = text.find(separator);
        result.push_back(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return result;
}

std::string_view lastComponent(std::string_view path) {
    return path.substr(path.find_last_of('/') + 1);
}

} // namespace

ProcessTable::ProcessTable(fs::path root)
    : root_(std::move(root)) {}

fs::path ProcessTable::file(pid_t process, std::string_view name) const {
    return root_ / std::to_string(process) / name;
}

std::vector<pid_t> ProcessTable::running(std::string_view name, const std::string& directory) const {
    std::vector<pid_t> found;
    std::error_code error;
    // The kernel reports a working directory with links resolved.
    const fs::path resolved = fs::weakly_canonical(directory, error);
    const fs::path wanted = !error && directory.starts_with("/") ? resolved : fs::path(directory);
    for (fs::directory_iterator entry(root_, error), end; !error && entry != end; entry.increment(error)) {
        const std::optional<pid_t> process = number<pid_t>(entry->path().filename().string());
        if (!process) continue;
        std::error_code unreadable;
        const fs::path place = fs::read_symlink(file(*process, "cwd"), unreadable);
        if (!unreadable && place == wanted && runsProgram(*process, name)) found.push_back(*process);
    }
    std::sort(found.begin(), found.end(), std::greater<>());
    return found;
}

bool ProcessTable::runsProgram(pid_t process, std::string_view name) const {
    const std::string commandName = content(file(process, "comm"));
    if (std::string_view(commandName).substr(0, commandName.find('\n')) == name) return true;
    const std::string commandLine = content(file(process, "cmdline"));
    const std::vector<std::string_view> arguments = parts(commandLine, '\0');
    if (arguments.empty()) return false;
    if (lastComponent(arguments[0]) == name) return true;
    return arguments.size() > 1 && lastComponent(arguments[1]) == name;
}

std::vector<pid_t> ProcessTable::ancestry(pid_t process) const {
    std::vector<pid_t> line;
    std::optional<pid_t> next = process;
    while (next && *next > 0 && std::find(line.begin(), line.end(), *next) == line.end()) {
        line.push_back(*next);
        next = parent(*next);
    }
    return line;
}

std::string ProcessTable::statusField(pid_t process, std::size_t field) const {
    constexpr std::size_t firstField = 3;
    const std::string status = content(file(process, "stat"));
    // The name in parentheses may contain parentheses and spaces; the other fields follow the last
    // parenthesis.
    const std::size_t nameEnd = status.rfind(')');
    if (nameEnd == std::string::npos || nameEnd + 2 >= status.size()) return {};
    const std::vector<std::string_view> fields = parts(std::string_view(status).substr(nameEnd + 2), ' ');
    return fields.size() > field - firstField ? std::string(fields[field - firstField]) : std::string();
}

std::optional<pid_t> ProcessTable::parent(pid_t process) const {
    return number<pid_t>(statusField(process, 4));
}

bool ProcessTable::hasTerminal(pid_t process) const {
    const std::optional<int> device = number<int>(statusField(process, 7));
    return device && *device != 0;
}

std::optional<std::uint64_t> ProcessTable::startTime(pid_t process) const {
    const std::string state = statusField(process, 3);
    // A zombie has ended and only waits for its parent to reap it.
    if (state == "Z" || state == "X") return std::nullopt;
    return number<std::uint64_t>(statusField(process, 22));
}

bool ProcessTable::hasEnded(pid_t process, std::uint64_t started) const {
    std::error_code error;
    if (!fs::exists(root_ / std::to_string(process), error)) return !error;
    // Unreadable, for example for lack of a descriptor: no proof that it has ended.
    if (content(file(process, "stat")).empty()) return false;
    return startTime(process) != started;
}

std::optional<std::string> ProcessTable::variable(pid_t process, std::string_view name) const {
    const std::string environment = content(file(process, "environ"));
    for (const std::string_view assignment : parts(environment, '\0')) {
        if (assignment.size() > name.size() && assignment.starts_with(name) &&
            assignment[name.size()] == '=') {
            return std::string(assignment.substr(name.size() + 1));
        }
    }
    return std::nullopt;
}

} // namespace corvane

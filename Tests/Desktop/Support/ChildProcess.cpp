#include "Desktop/Support/ChildProcess.h"

#include "Desktop/Support/Wait.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace corvane::test {

namespace {

constexpr int notExecuted = 127;
// What is killed cannot clean up, nor report what a sanitizer found at its end.
constexpr std::chrono::seconds patience{10};

std::vector<char*> pointers(const std::vector<std::string>& strings) {
    std::vector<char*> result;
    result.reserve(strings.size() + 1);
    for (const std::string& string : strings)
        result.push_back(const_cast<char*>(string.c_str()));
    result.push_back(nullptr);
    return result;
}

// Runs in the child after fork(): only async-signal-safe calls.
[[noreturn]] void execute(const Command& command, char* const* arguments, char* const* environment) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    setsid();
    const char* const input = command.input.empty() ? "/dev/null" : command.input.c_str();
    const char* const output = command.output.empty() ? "/dev/null" : command.output.c_str();
    const int in = command.inputDescriptor >= 0 ? command.inputDescriptor : open(input, O_RDONLY | O_CLOEXEC);
    const int error = open(output, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    const int out = command.outputDescriptor >= 0 ? command.outputDescriptor : error;
    if (in < 0 || error < 0 || dup2(in, 0) < 0 || dup2(out, 1) < 0 || dup2(error, 2) < 0) _exit(notExecuted);
    if (!command.folder.empty() && chdir(command.folder.c_str()) != 0) _exit(notExecuted);
    if (command.inheritedDescriptor >= 0) fcntl(command.inheritedDescriptor, F_SETFD, 0);
    execvpe(arguments[0], arguments, environment);
    _exit(notExecuted);
}

} // namespace

ChildProcess::ChildProcess(const Command& command) {
    const std::vector<char*> arguments = pointers(command.arguments);
    const std::vector<char*> environment = pointers(command.environment);
    id_ = fork();
    if (id_ < 0) throw std::system_error(errno, std::generic_category(), "fork");
    if (id_ == 0) execute(command, arguments.data(), environment.data());
}

ChildProcess::~ChildProcess() {
    stop();
}

bool ChildProcess::isRunning() {
    return !wait(std::chrono::milliseconds(0));
}

std::optional<int> ChildProcess::wait(std::chrono::milliseconds timeout) {
    waitUntil(timeout, [this] {
        if (status_) return true;
        int status = 0;
        if (waitpid(id_, &status, WNOHANG) == id_)
            status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        return status_.has_value();
    });
    return status_;
}

void ChildProcess::signal(int number) const {
    if (!status_) kill(id_, number);
}

void ChildProcess::signalGroup(int number) const {
    if (status_) return;
    // A process that has just been created may not have its own group yet.
    if (kill(-id_, number) != 0) kill(id_, number);
}

void ChildProcess::stop() {
    if (status_) return;
    signalGroup(SIGTERM);
    signalGroup(SIGCONT);
    if (wait(patience)) return;
    signalGroup(SIGKILL);
    wait(patience);
}

} // namespace corvane::test

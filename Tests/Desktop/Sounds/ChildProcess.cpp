#include "Desktop/Sounds/ChildProcess.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace corvane::test {

namespace {

using Clock = std::chrono::steady_clock;

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    result.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        result.push_back(text.data());
    }
    result.push_back(nullptr);
    return result;
}

bool isReadable(int descriptor, std::chrono::milliseconds patience) {
    pollfd wanted{descriptor, POLLIN, 0};
    return poll(&wanted, 1, static_cast<int>(std::max<long>(0, patience.count()))) > 0;
}

std::chrono::milliseconds remaining(Clock::time_point deadline) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
}

} // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& arguments, const Environment& environment,
                           const std::filesystem::path& errors) {
    std::array<int, 2> input{};
    std::array<int, 2> output{};
    if (pipe2(input.data(), O_CLOEXEC) != 0 || pipe2(output.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe");
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errors.c_str(), O_WRONLY | O_CREAT | O_APPEND,
                                     0600);

    std::vector<std::string> variables;
    for (const auto& [name, value] : environment) {
        variables.push_back(name + "=" + value);
    }
    for (const char* name : {"PATH", "ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS"}) {
        const char* value = std::getenv(name);
        if (value != nullptr) variables.push_back(std::string(name).append("=").append(value));
    }
    std::vector<std::string> words = arguments;
    const int error = posix_spawnp(&id_, words.front().c_str(), &actions, nullptr, pointers(words).data(),
                                   pointers(variables).data());
    posix_spawn_file_actions_destroy(&actions);
    close(input[0]);
    close(output[1]);
    input_ = input[1];
    output_ = output[0];
    if (error != 0) {
        closeInput();
        close(output_);
        throw std::runtime_error("cannot run " + arguments.front());
    }
}

ChildProcess::~ChildProcess() {
    closeInput();
    if (!status_) {
        signal(SIGKILL);
        static_cast<void>(waitForEnd(std::chrono::seconds(10)));
    }
    close(output_);
}

void ChildProcess::write(const std::string& text) {
    if (::write(input_, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
        throw std::runtime_error("the program does not read");
    }
}

void ChildProcess::closeInput() {
    if (input_ >= 0) close(input_);
    input_ = -1;
}

std::string ChildProcess::read(std::chrono::milliseconds patience) {
    std::string bytes = std::move(unread_);
    unread_.clear();
    if (!bytes.empty() || !isReadable(output_, patience)) return bytes;
    bytes.resize(65536);
    const ssize_t count = ::read(output_, bytes.data(), bytes.size());
    bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return bytes;
}

std::optional<std::string> ChildProcess::readLine(std::chrono::milliseconds patience) {
    const Clock::time_point deadline = Clock::now() + patience;
    std::string text;
    while (text.find('\n') == std::string::npos) {
        const std::string more = read(remaining(deadline));
        if (more.empty()) return std::nullopt;
        text += more;
    }
    const std::size_t end = text.find('\n');
    unread_ = text.substr(end + 1);
    return text.substr(0, end);
}

void ChildProcess::signal(int number) const {
    kill(id_, number);
}

std::optional<int> ChildProcess::waitForEnd(std::chrono::milliseconds patience) {
    if (status_) return status_;
    const int handle = static_cast<int>(syscall(SYS_pidfd_open, id_, 0));
    const bool hasEnded = handle >= 0 && isReadable(handle, patience);
    if (handle >= 0) close(handle);
    if (!hasEnded) return std::nullopt;
    int status = 0;
    waitpid(id_, &status, 0);
    status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return status_;
}

} // namespace corvane::test

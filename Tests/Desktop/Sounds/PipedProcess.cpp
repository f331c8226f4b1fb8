#include "Desktop/Sounds/PipedProcess.h"

#include "Support/TestSupport.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace corvane::test {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// The end to read from, then the end to write to.
using Pipe = std::array<int, 2>;

Pipe makePipe() {
    Pipe ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
    return ends;
}

bool isReadable(int descriptor, milliseconds timeout) {
    pollfd wanted{descriptor, POLLIN, 0};
    return poll(&wanted, 1, static_cast<int>(std::max(milliseconds(0), timeout).count())) > 0;
}

} // namespace

PipedProcess::PipedProcess(Command command) {
    const Pipe input = makePipe();
    const Pipe output = makePipe();
    command.inputDescriptor = input[0];
    command.outputDescriptor = output[1];
    process_.emplace(command);
    close(input[0]);
    close(output[1]);
    input_ = input[1];
    output_ = output[0];
}

PipedProcess::~PipedProcess() {
    closeInput();
    process_.reset();
    close(output_);
}

void PipedProcess::write(const std::string& text) {
    if (::write(input_, text.data(), text.size()) != static_cast<ssize_t>(text.size()))
        throw std::system_error(errno, std::generic_category(), "the program does not read");
}

void PipedProcess::closeInput() {
    if (const int input = std::exchange(input_, -1); input >= 0) close(input);
}

std::string PipedProcess::read(milliseconds timeout) {
    std::string bytes = std::exchange(unread_, {});
    if (!bytes.empty() || !isReadable(output_, timeout)) return bytes;
    constexpr std::size_t most = 65536;
    bytes.resize(most);
    const ssize_t count = ::read(output_, bytes.data(), bytes.size());
    bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return bytes;
}

std::optional<std::string> PipedProcess::readLine(milliseconds timeout) {
    const Clock::time_point deadline = Clock::now() + timeout;
    std::string text;
    while (text.find('\n') == std::string::npos) {
        const std::string more = read(std::chrono::duration_cast<milliseconds>(deadline - Clock::now()));
        if (more.empty()) return std::nullopt;
        text += more;
    }
    const std::size_t end = text.find('\n');
    unread_ = text.substr(end + 1);
    return text.substr(0, end);
}

bool PipedProcess::hasMapped(const std::string& name) const {
    const std::string maps = fileBytes("/proc/" + std::to_string(process_->id()) + "/maps").value_or("");
    return maps.find(name) != std::string::npos;
}

std::optional<int> PipedProcess::wait(milliseconds timeout) {
    return process_->wait(timeout);
}

} // namespace corvane::test

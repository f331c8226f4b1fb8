#include "Support/HookRunner.h"

#include "Support/TestSupport.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

namespace corvane::test {

namespace {

int exitStatus(pid_t process) {
    int status = 0;
    while (waitpid(process, &status, 0) < 0) {
        if (errno != EINTR) return -1;
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// The null-terminated array that exec takes; `texts` must outlive it.
std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    result.reserve(texts.size() + 1);
    for (std::string& text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

} // namespace

HookRunner::~HookRunner() {
    for (const Running& running : running_)
        exitStatus(running.process);
}

void HookRunner::start(const Launch& launch) {
    const std::filesystem::path scratch = folder_ / ("run-" + std::to_string(started_++));
    const std::string input = scratch.string() + ".in";
    const Running running{0, scratch.string() + ".out", scratch.string() + ".err"};
    writeFile(input, launch.input);

    std::vector<std::string> arguments = launch.arguments;
    std::vector<std::string> environment;
    environment.reserve(launch.environment.size() + 1);
    for (const auto& [name, value] : launch.environment) {
        std::string& variable = environment.emplace_back(name);
        variable += '=';
        variable += value;
    }
    const char* const searchPath = std::getenv("PATH");
    environment.push_back(std::string("PATH=") + (searchPath == nullptr ? "/usr/bin:/bin" : searchPath));
    std::vector<char*> argv = pointers(arguments);
    std::vector<char*> envp = pointers(environment);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, input.c_str(), O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, running.output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    posix_spawn_file_actions_addopen(&actions, 2, running.errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    pid_t process = 0;
    const int error = posix_spawn(&process, argv.front(), &actions, nullptr, argv.data(), envp.data());
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        ADD_FAILURE() << "cannot start " << arguments.front() << ": error " << error;
        return;
    }
    running_.push_back({process, running.output, running.errors});
}

std::vector<Outcome> HookRunner::finish() {
    std::vector<Outcome> outcomes;
    for (const Running& running : std::exchange(running_, {})) {
        const int status = exitStatus(running.process);
        outcomes.push_back({status, fileBytes(running.output).value_or("(none)"),
                            fileBytes(running.errors).value_or("(none)")});
    }
    return outcomes;
}

Outcome HookRunner::run(const Launch& launch) {
    start(launch);
    const std::vector<Outcome> outcomes = finish();
    return outcomes.empty() ? Outcome{} : outcomes.front();
}

} // namespace corvane::test

#pragma once

#include "Support/TestSupport.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace corvane::test {

/// The result of a script.
struct Outcome {
    int status = -1;
    std::string output; // both streams
};

/// Runs a script to its end with exactly the given environment.
inline Outcome runScript(const std::string& program, const std::vector<std::string>& arguments,
                         const std::map<std::string, std::string>& environment,
                         const std::filesystem::path& folder = "/") {
    QProcess process;
    QProcessEnvironment variables;
    for (const auto& [name, value] : environment)
        variables.insert(QString::fromStdString(name), QString::fromStdString(value));
    process.setProcessEnvironment(variables);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setWorkingDirectory(QString::fromStdString(folder.string()));
    QStringList list;
    for (const std::string& argument : arguments)
        list.append(QString::fromStdString(argument));
    process.start(QString::fromStdString(program), list);
    constexpr int longest = 240'000; // ms; less than a test may take
    if (!process.waitForFinished(longest)) return {};
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            process.readAll().toStdString()};
}

/// The lines of a text.
inline std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    while (start < text.size()) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

} // namespace corvane::test

#include "Platform/Linux/DesktopEntry.h"

#include "Support/Text.h"

#include <optional>

namespace corvane::DesktopEntry {

namespace {

std::string_view takeLine(std::string_view& text) {
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return line;
}

/// The value of `key` in the main group; the first one if there are several, as desktops read it.
std::optional<std::string_view> value(std::string_view entry, std::string_view key) {
    bool isMainGroup = false;
    while (!entry.empty()) {
        const std::string_view line = text::trimmingWhitespace(takeLine(entry));
        if (line.starts_with('[')) {
            isMainGroup = line == "[Desktop Entry]";
            continue;
        }
        const std::size_t equals = line.find('=');
        if (!isMainGroup || line.starts_with('#') || equals == std::string_view::npos) continue;
        if (text::trimmingWhitespace(line.substr(0, equals)) == key) {
            return text::trimmingWhitespace(line.substr(equals + 1));
        }
    }
    return std::nullopt;
}

/// Undoes the escapes that every string of a desktop entry may hold.
std::string unescapedString(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            result += text[i];
            continue;
        }
        switch (const char letter = text[++i]) {
        case 's':
            result += ' ';
            break;
        case 'n':
            result += '\n';
            break;
        case 't':
            result += '\t';
            break;
        case 'r':
            result += '\r';
            break;
        default:
            if (letter != '\\') result += '\\';
            result += letter;
        }
    }
    return result;
}

} // namespace

std::string execArgument(std::string_view argument) {
    // Within quotes each of these needs a backslash, and in the file's strings every backslash is doubled.
    constexpr std::string_view specialInQuotes = R"("`$)";
    std::string result = "\"";
    for (const char character : argument) {
        if (static_cast<unsigned char>(character) < 0x20 || character == 0x7F) continue;
        if (character == '\\') {
            result += R"(\\\\)";
        } else if (character == '%') {
            result += "%%";
        } else {
            if (specialInQuotes.find(character) != std::string_view::npos) result += R"(\\)";
            result += character;
        }
    }
    return result + '"';
}

std::string execProgram(std::string_view entry) {
    const std::optional<std::string_view> line = value(entry, "Exec");
    if (!line) return {};
    const std::string command = unescapedString(*line);
    std::string program;
    const bool isQuoted = command.starts_with('"');
    for (std::size_t i = isQuoted ? 1 : 0; i < command.size(); ++i) {
        const char character = command[i];
        if (character == (isQuoted ? '"' : ' ')) break;
        const bool hasNext = i + 1 < command.size();
        const bool isEscape =
            (isQuoted && character == '\\') || (character == '%' && hasNext && command[i + 1] == '%');
        program += isEscape && hasNext ? command[++i] : character;
    }
    return program;
}

bool isDisabled(std::string_view entry) {
    return value(entry, "Hidden") == "true" || value(entry, "X-GNOME-Autostart-enabled") == "false";
}

} // namespace corvane::DesktopEntry

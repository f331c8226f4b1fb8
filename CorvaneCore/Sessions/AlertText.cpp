#include "Sessions/AlertText.h"

#include "Support/Text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

namespace corvane {

namespace {

// A space, the middle dot, a space.
constexpr std::string_view separator = " \u00B7 ";
constexpr std::string_view ellipsis = "\u2026";

constexpr std::string_view permissionPrefix = "Claude needs your permission to use ";
constexpr std::string_view idlePrompt = "waiting for your input";

// In user-perceived characters.
constexpr std::size_t longestMessage = 90;

std::string joined(std::string_view first, std::string_view middle, std::string_view last) {
    std::string result(first);
    result += middle;
    result += last;
    return result;
}

} // namespace

AlertText AlertText::waiting(const AgentSession& session, Words words) {
    const SessionStatus::Waiting* const wait = session.status.ifWaiting();
    const bool isForReply = wait != nullptr && wait->reason == EventKind::needsInput;

    AlertText text;
    text.title = filled(words(isForReply ? translatable("corvane::AlertText", "%1 is waiting for your reply")
                                         : translatable("corvane::AlertText", "%1 is waiting for you")),
                        {session.agent.displayName()});
    text.subtitle = session.repoName();
    if (const std::string message = plain(session.message, words); !message.empty()) {
        text.subtitle += separator;
        text.subtitle += message;
    }
    return text;
}

AlertText AlertText::done(const AgentSession& session, Words words) {
    return {filled(words(translatable("corvane::AlertText", "%1 finished")), {session.agent.displayName()}),
            session.repoName()};
}

std::string AlertText::statusLine(const AgentSession& session, Date now, Words words) {
    if (const SessionStatus::Done* const done = session.status.ifDone()) {
        const auto minutes = static_cast<std::int64_t>((now - done->at) / Seconds(60));
        if (minutes < 1) return words(translatable("corvane::AlertText", "Done just now"));
        return filled(words(translatable("corvane::AlertText", "Done %1 min ago")),
                      {std::to_string(minutes)});
    }
    if (const SessionStatus::Waiting* const wait = session.status.ifWaiting()) {
        const bool isForReply = wait->reason == EventKind::needsInput;
        return joined(words(isForReply ? translatable("corvane::AlertText", "Waiting for your reply")
                                       : translatable("corvane::AlertText", "Waiting for you")),
                      separator, clock(now - wait->since));
    }
    return words(translatable("corvane::AlertText", "Running"));
}

std::string AlertText::clock(Seconds seconds) {
    // The span between two dates can exceed the integer's range.
    constexpr double longest = 0x1p62;
    const auto whole = static_cast<long long>(std::clamp(seconds.count(), 0.0, longest));
    constexpr long long minute = 60;
    constexpr long long hour = 60 * minute;

    std::array<char, 32> line{};
    if (whole >= hour) {
        std::snprintf(line.data(), line.size(), "%lld:%02lld:%02lld", whole / hour, whole % hour / minute,
                      whole % minute);
    } else {
        std::snprintf(line.data(), line.size(), "%lld:%02lld", whole / minute, whole % minute);
    }
    return line.data();
}

std::string AlertText::plain(std::string_view text, Words words) {
    const std::string_view trimmed = text::trimmingWhitespace(text);
    if (trimmed.starts_with(permissionPrefix)) {
        return filled(words(translatable("corvane::AlertText", "wants to use %1")),
                      {trimmed.substr(permissionPrefix.size())});
    }
    // Adds nothing to the title.
    if (text::containsIgnoringCase(trimmed, idlePrompt)) return {};

    const std::string_view line = trimmed.substr(0, trimmed.find('\n'));
    if (text::prefixLength(line, longestMessage) == line.size()) return std::string(line);
    return joined(line.substr(0, text::prefixLength(line, longestMessage - 1)), ellipsis, {});
}

std::string AlertText::kept(std::string message) {
    if (message.size() <= longestKept) return message;
    const std::string_view trimmed = text::trimmingWhitespace(message);
    if (trimmed.starts_with(permissionPrefix) && trimmed.size() > longestKept) {
        // A line that is too wide is elided in the middle and shows both of its ends.
        constexpr std::size_t longestEnd = longestKept / 4;
        return joined(text::beginning(trimmed, longestKept - longestEnd), ellipsis,
                      text::end(trimmed, longestEnd));
    }
    if (trimmed.starts_with(permissionPrefix)) return std::string(trimmed);
    if (text::containsIgnoringCase(trimmed, idlePrompt)) return std::string(idlePrompt);

    const std::string_view line = trimmed.substr(0, trimmed.find('\n'));
    if (line.size() > longestKept) return joined(text::beginning(line, longestKept), ellipsis, {});
    // What follows keeps white space at the end of the line from becoming that of the message.
    return line.size() < trimmed.size() ? joined(line, "\n", ellipsis) : std::string(line);
}

} // namespace corvane

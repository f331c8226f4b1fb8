#pragma once

#include "Agents/EventPayload.h"
#include "Intake/AgentEvent.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A second, slow and simple implementation of reading event files, with another JSON parser.
namespace corvane::test {

/// Receives the other parser's events and keeps the members of the top-level object.
class ReferenceListener : public nlohmann::json_sax<nlohmann::json> {
  public:
    std::map<std::string, std::optional<std::string>> members; // none for values that are not strings
    std::map<std::string, std::string> firstStrings;           // of arrays that begin with one
    bool topIsObject = false;
    bool numberTooLarge = false;
    std::size_t deepest = 0;

    bool null() override { return value(std::nullopt); }
    bool boolean(bool /*value*/) override { return value(std::nullopt); }
    bool number_integer(number_integer_t /*value*/) override { return value(std::nullopt); }
    bool number_unsigned(number_unsigned_t /*value*/) override { return value(std::nullopt); }
    bool number_float(number_float_t /*value*/, const string_t& /*text*/) override {
        return value(std::nullopt);
    }
    bool string(string_t& text) override {
        if (depth_ == 2 && atArrayBegin_) firstStrings[name_] = text;
        return value(text);
    }
    bool binary(binary_t& /*value*/) override { return false; }
    bool start_object(std::size_t /*count*/) override {
        topIsObject = topIsObject || depth_ == 0;
        return open();
    }
    bool start_array(std::size_t /*count*/) override {
        open();
        atArrayBegin_ = true;
        return true;
    }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }
    bool key(string_t& name) override {
        if (depth_ == 1) name_ = name;
        return true;
    }
    bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                     const nlohmann::detail::exception& error) override {
        numberTooLarge = dynamic_cast<const nlohmann::detail::out_of_range*>(&error) != nullptr;
        return false;
    }

  private:
    bool value(std::optional<std::string> text) {
        atArrayBegin_ = false;
        if (depth_ == 1) {
            members[name_] = std::move(text);
            firstStrings.erase(name_);
        }
        return true;
    }
    bool open() {
        value(std::nullopt);
        deepest = std::max(deepest, ++depth_);
        return true;
    }
    bool close() {
        atArrayBegin_ = false;
        --depth_;
        return true;
    }

    std::size_t depth_ = 0;
    std::string name_;
    bool atArrayBegin_ = false;
};

/// `json` with the escape of U+FFFD in place of each escape of an unpaired surrogate, which the other parser
/// rejects. A backslash outside a string is an error before and after.
inline std::string withoutLoneSurrogates(std::string_view json) {
    const auto isUnit = [json](std::size_t at, std::string_view secondDigits) {
        constexpr std::string_view digits = "0123456789abcdefABCDEF";
        const std::string_view escape = json.substr(std::min(at, json.size()), 6);
        return escape.size() == 6 && escape.starts_with("\\u") && (escape[2] == 'd' || escape[2] == 'D') &&
               secondDigits.find(escape[3]) != std::string_view::npos &&
               digits.find(escape[4]) != std::string_view::npos &&
               digits.find(escape[5]) != std::string_view::npos;
    };
    constexpr std::string_view high = "89abAB";
    constexpr std::string_view low = "cdefCDEF";
    std::string result;
    for (std::size_t at = 0; at < json.size();) {
        std::size_t size = json[at] == '\\' ? 2 : 1;
        bool isLone = false;
        if (isUnit(at, high) && isUnit(at + 6, low)) {
            size = 12;
        } else if (isUnit(at, high) || isUnit(at, low)) {
            size = 6;
            isLone = true;
        }
        result += isLone ? "\\ufffd" : json.substr(at, size);
        at += size;
    }
    return result;
}

struct ReferenceObject {
    bool readable = false;
    std::map<std::string, std::optional<std::string>> members;
    std::map<std::string, std::string> firstStrings;

    [[nodiscard]] std::optional<std::string> string(const std::string& name) const {
        const auto found = members.find(name);
        return found == members.end() ? std::nullopt : found->second;
    }
    [[nodiscard]] std::optional<std::string> firstString(const std::string& name) const {
        const auto found = firstStrings.find(name);
        return found == firstStrings.end() ? std::nullopt : std::optional(found->second);
    }
};

/// None when the other parser cannot judge: it rejects numbers that no double can hold.
inline std::optional<ReferenceObject> referenceObject(std::string_view json) {
    // The other parser skips a byte-order mark and treats a zero byte as the end.
    if (json.starts_with("\xEF\xBB\xBF") || json.find('\0') != std::string_view::npos)
        return ReferenceObject{};
    ReferenceListener listener;
    const bool accepted = nlohmann::json::sax_parse(withoutLoneSurrogates(json), &listener);
    if (listener.numberTooLarge) return std::nullopt;
    if (!accepted || !listener.topIsObject || listener.deepest > EventPayload::maxDepth)
        return ReferenceObject{};
    return ReferenceObject{true, listener.members, listener.firstStrings};
}

inline std::optional<EventKind> referenceKind(const ReferenceObject& object) {
    static const std::map<std::string, EventKind> kinds{{"Stop", EventKind::finished},
                                                        {"UserPromptSubmit", EventKind::running},
                                                        {"PostToolUse", EventKind::running},
                                                        {"SessionEnd", EventKind::ended}};
    const std::string name = object.string("hook_event_name").value_or("");
    if (const auto found = kinds.find(name); found != kinds.end()) return found->second;
    if (name != "Notification") return std::nullopt;
    const auto type = object.string("notification_type");
    if (type) {
        if (*type == "permission_prompt") return EventKind::needsPermission;
        if (*type == "idle_prompt") return EventKind::needsInput;
        return std::nullopt;
    }
    // Correct for messages in ASCII only.
    std::string message = object.string("message").value_or("");
    std::transform(message.begin(), message.end(), message.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return message.find("permission") == std::string::npos ? EventKind::needsInput
                                                           : EventKind::needsPermission;
}

/// The event in a file whose header is ASCII; the outer optional is none when the other parser cannot judge.
inline std::optional<std::optional<AgentEvent>> referenceEvent(std::string_view text, Date date) {
    std::vector<std::string> lines{""};
    for (const char c : text) {
        if (c == '\n') {
            lines.emplace_back();
        } else {
            lines.back().push_back(c);
        }
    }
    std::string first = lines.front();
    while (!first.empty() && (first.front() == ' ' || first.front() == '\t'))
        first.erase(0, 1);
    while (!first.empty() && (first.back() == ' ' || first.back() == '\t'))
        first.pop_back();
    const auto separator = std::find(lines.begin(), lines.end(), "---");
    const std::optional<AgentEvent> nothing;
    if (first != "corvane-event 1" || separator == lines.end()) return nothing;

    std::map<std::string, std::string> header;
    for (auto line = lines.begin() + 1; line < separator; ++line) {
        const std::size_t equals = line->find('=');
        if (equals != std::string::npos) header[line->substr(0, equals)] = line->substr(equals + 1);
    }
    std::string payload;
    for (auto line = separator + 1; line < lines.end(); ++line) {
        payload += (line == separator + 1 ? "" : "\n") + *line;
    }
    const auto object = referenceObject(payload);
    if (!object) return std::nullopt;
    if (!object->readable) return nothing;

    AgentEvent event;
    event.terminalBundleID = header["bundle"];
    event.terminalProgram = header["term"];
    event.cwd = object->string("cwd").value_or("");
    event.date = date;
    if (header["source"] == "claude") {
        const auto kind = referenceKind(*object);
        if (!kind) return nothing;
        event.kind = *kind;
        event.sessionID = object->string("session_id").value_or(event.cwd);
        event.message = object->string("message").value_or("");
        return event;
    }
    if (header["source"] == "codex" && object->string("type") == "agent-turn-complete") {
        const std::string input = object->firstString("input-messages").value_or("");
        const bool isTitle = input.rfind("Generate a concise, single-line task title", 0) == 0 &&
                             input.find("\n\nUser prompt:\n") != std::string::npos;
        if (isTitle) return nothing;
        event.source = AgentKind::codex;
        event.kind = EventKind::finished;
        event.sessionID = object->string("thread-id").value_or(event.cwd);
        event.message = object->string("last-assistant-message").value_or("");
        return event;
    }
    return nothing;
}

} // namespace corvane::test

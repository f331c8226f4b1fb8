#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// A second, slow and simple JSON parser that keeps the text of numbers, and what installing and uninstalling
/// must do in its terms. Shares no code with the code under test; used by tests and fuzz targets.
namespace corvane::test::plain {

struct Member;

struct Value {
    char type = 'n'; ///< n(ull), b(oolean), d (number), s(tring), a(rray), o(bject)
    std::string text;
    std::vector<Value> elements;
    std::vector<Member> members;

    Value();
    Value(char givenType, std::string givenText, std::vector<Value> givenElements = {});
    Value(const Value&);
    Value(Value&&) noexcept;
    Value& operator=(const Value&);
    Value& operator=(Value&&) noexcept;
    ~Value();

    [[nodiscard]] const Value* member(std::string_view key) const;
    void removeMember(std::string_view key);
    void setMember(const std::string& key, Value value);
};

struct Member {
    std::string first;
    Value second;
};

inline Value::Value() = default;
inline Value::Value(char givenType, std::string givenText, std::vector<Value> givenElements)
    : type(givenType)
    , text(std::move(givenText))
    , elements(std::move(givenElements)) {}
inline Value::Value(const Value&) = default;
inline Value::Value(Value&&) noexcept = default;
inline Value& Value::operator=(const Value&) = default;
inline Value& Value::operator=(Value&&) noexcept = default;
inline Value::~Value() = default;

inline const Value* Value::member(std::string_view key) const {
    for (const auto& [name, value] : members) {
        if (name == key) return &value;
    }
    return nullptr;
}
inline void Value::removeMember(std::string_view key) {
    std::erase_if(members, [&](const auto& each) { return each.first == key; });
}
inline void Value::setMember(const std::string& key, Value value) {
    removeMember(key);
    members.push_back({key, std::move(value)});
}

/// Equal in meaning: the order of members does not count.
inline bool equal(const Value& left, const Value& right) {
    if (left.type != right.type || left.text != right.text || left.elements.size() != right.elements.size() ||
        left.members.size() != right.members.size()) {
        return false;
    }
    for (std::size_t i = 0; i < left.elements.size(); ++i) {
        if (!equal(left.elements[i], right.elements[i])) return false;
    }
    return std::all_of(left.members.begin(), left.members.end(), [&](const auto& each) {
        const Value* other = right.member(each.first);
        return other != nullptr && equal(each.second, *other);
    });
}

class Reader {
  public:
    explicit Reader(std::string_view text)
        : text_(text) {}

    std::optional<Value> document() {
        Value value;
        space();
        if (!read(value, 0)) return std::nullopt;
        space();
        return at_ == text_.size() ? std::optional(std::move(value)) : std::nullopt;
    }

  private:
    [[nodiscard]] int peek() const {
        return at_ < text_.size() ? static_cast<unsigned char>(text_[at_]) : -1;
    }
    bool take(char c) {
        if (peek() != c) return false;
        ++at_;
        return true;
    }
    void space() {
        while (peek() == ' ' || peek() == '\t' || peek() == '\n' || peek() == '\r')
            ++at_;
    }
    bool word(std::string_view expected) {
        if (text_.substr(at_, expected.size()) != expected) return false;
        at_ += expected.size();
        return true;
    }

    bool read(Value& value, int depth) {
        switch (peek()) {
        case '{':
            value.type = 'o';
            return depth < 1'024 && object(value, depth);
        case '[':
            value.type = 'a';
            return depth < 1'024 && array(value, depth);
        case '"':
            value.type = 's';
            return string(value.text);
        case 't':
            value = {'b', "true"};
            return word("true");
        case 'f':
            value = {'b', "false"};
            return word("false");
        case 'n':
            return word("null");
        default:
            value.type = 'd';
            return number(value.text);
        }
    }

    bool object(Value& value, int depth) {
        take('{');
        space();
        if (take('}')) return true;
        do {
            space();
            std::string key;
            Value item;
            if (!string(key)) return false;
            space();
            if (!take(':')) return false;
            space();
            if (!read(item, depth + 1)) return false;
            value.setMember(key, std::move(item));
            space();
        } while (take(','));
        return take('}');
    }

    bool array(Value& value, int depth) {
        take('[');
        space();
        if (take(']')) return true;
        do {
            space();
            Value item;
            if (!read(item, depth + 1)) return false;
            value.elements.push_back(std::move(item));
            space();
        } while (take(','));
        return take(']');
    }

    bool digits() {
        const std::size_t begin = at_;
        while (peek() >= '0' && peek() <= '9')
            ++at_;
        return at_ > begin;
    }

    bool number(std::string& text) {
        const std::size_t begin = at_;
        take('-');
        if (!take('0') && !digits()) return false;
        if (take('.') && !digits()) return false;
        if (take('e') || take('E')) {
            if (!take('+')) take('-');
            if (!digits()) return false;
        }
        text = text_.substr(begin, at_ - begin);
        return true;
    }

    bool hexadecimal(unsigned& unit) {
        unit = 0;
        for (int i = 0; i < 4; ++i) {
            const int c = peek();
            const std::string_view digits = "0123456789abcdef";
            const std::size_t digit = c < 0
                                          ? std::string_view::npos
                                          : digits.find(static_cast<char>(c >= 'A' && c <= 'F' ? c + 32 : c));
            if (digit == std::string_view::npos) return false;
            unit = unit * 16 + static_cast<unsigned>(digit);
            ++at_;
        }
        return true;
    }

    static void append(std::string& text, unsigned scalar) {
        const auto byte = [&](unsigned value) { text += static_cast<char>(value); };
        if (scalar < 0x80) {
            byte(scalar);
        } else if (scalar < 0x800) {
            byte(0xC0 | scalar >> 6U);
            byte(0x80 | (scalar & 63U));
        } else if (scalar < 0x10000) {
            byte(0xE0 | scalar >> 12U);
            byte(0x80 | (scalar >> 6U & 63U));
            byte(0x80 | (scalar & 63U));
        } else {
            byte(0xF0 | scalar >> 18U);
            byte(0x80 | (scalar >> 12U & 63U));
            byte(0x80 | (scalar >> 6U & 63U));
            byte(0x80 | (scalar & 63U));
        }
    }

    bool escape(std::string& text) {
        const int c = peek();
        ++at_;
        switch (c) {
        case '"':
        case '\\':
        case '/':
            text += static_cast<char>(c);
            return true;
        case 'b':
            text += '\b';
            return true;
        case 'f':
            text += '\f';
            return true;
        case 'n':
            text += '\n';
            return true;
        case 'r':
            text += '\r';
            return true;
        case 't':
            text += '\t';
            return true;
        case 'u':
            break;
        default:
            return false;
        }
        unsigned first = 0;
        unsigned second = 0;
        if (!hexadecimal(first)) return false;
        if (first >= 0xD800 && first < 0xDC00) {
            const std::size_t before = at_;
            if (word("\\u") && hexadecimal(second) && second >= 0xDC00 && second < 0xE000) {
                first = 0x10000 + ((first - 0xD800) << 10U) + (second - 0xDC00);
            } else {
                at_ = before;
            }
        }
        // An unpaired surrogate becomes three bytes that no other text has.
        append(text, first);
        return true;
    }

    /// One multi-byte character, checked by decoding it and encoding it again.
    bool character(std::string& text) {
        const auto lead = static_cast<unsigned>(peek());
        const std::size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
        const std::string_view bytes = text_.substr(at_, size);
        if (lead < 0xC0 || bytes.size() != size) return false;
        unsigned scalar = lead & (0x7FU >> size);
        for (const char c : bytes.substr(1)) {
            if ((static_cast<unsigned char>(c) & 0xC0U) != 0x80) return false;
            scalar = scalar << 6U | (static_cast<unsigned char>(c) & 63U);
        }
        std::string again;
        append(again, scalar);
        if (again != bytes || scalar > 0x10FFFF || (scalar >= 0xD800 && scalar < 0xE000)) return false;
        text += bytes;
        at_ += size;
        return true;
    }

    bool string(std::string& text) {
        if (!take('"')) return false;
        while (!take('"')) {
            const int c = peek();
            if (c < 0x20) return false;
            if (c == '\\') {
                ++at_;
                if (!escape(text)) return false;
            } else if (c >= 0x80) {
                if (!character(text)) return false;
            } else {
                text += static_cast<char>(c);
                ++at_;
            }
        }
        return true;
    }

    std::string_view text_;
    std::size_t at_ = 0;
};

/// Parses `bytes` as a settings document; none when they are unreadable.
inline std::optional<Value> settings(std::string_view bytes) {
    if (bytes.substr(0, 3) == "\xEF\xBB\xBF") bytes.remove_prefix(3);
    Value empty;
    empty.type = 'o';
    if (bytes.find_first_not_of(" \t\r\n") == std::string_view::npos) return empty;
    std::optional<Value> document = Reader(bytes).document();
    if (document && document->type != 'o') document.reset();
    return document;
}

inline bool isListOfObjects(const Value* value) {
    return value != nullptr && value->type == 'a' &&
           std::all_of(value->elements.begin(), value->elements.end(),
                       [](const Value& e) { return e.type == 'o'; });
}

inline bool isOwnEntry(const Value& entry) {
    const Value* command = entry.member("command");
    return command != nullptr && command->type == 's' &&
           command->text.find("Corvane/bin/corvane-hook") != std::string::npos;
}

inline bool isOwnGroup(const Value& group) {
    const Value* entries = group.member("hooks");
    return isListOfObjects(entries) &&
           std::any_of(entries->elements.begin(), entries->elements.end(), isOwnEntry);
}

/// What an install must leave of `document`, before its own groups are added.
inline Value foreignAfterInstall(Value document) {
    const Value* found = document.member("hooks");
    if (found == nullptr || found->type != 'o') {
        document.removeMember("hooks");
        return document;
    }
    Value hooks = *found;
    for (const char* event : {"Notification", "Stop", "UserPromptSubmit", "PostToolUse", "SessionEnd"}) {
        const Value* value = hooks.member(event);
        if (!isListOfObjects(value)) {
            hooks.removeMember(event);
            continue;
        }
        Value kept = *value;
        std::erase_if(kept.elements, isOwnGroup);
        hooks.setMember(event, std::move(kept));
    }
    document.setMember("hooks", std::move(hooks));
    return document;
}

inline bool holdsOwnEntries(const Value& document) {
    const Value* hooks = document.member("hooks");
    return hooks != nullptr && hooks->type == 'o' &&
           std::any_of(hooks->members.begin(), hooks->members.end(), [](const auto& event) {
               const std::vector<Value>& groups = event.second.elements;
               return isListOfObjects(&event.second) && std::any_of(groups.begin(), groups.end(), isOwnGroup);
           });
}

/// What an uninstall must leave of `document`.
inline Value afterUninstall(Value document) {
    if (!holdsOwnEntries(document)) return document;
    const Value* found = document.member("hooks");
    Value hooks;
    hooks.type = 'o';
    for (auto [event, value] : found->members) {
        if (isListOfObjects(&value)) {
            std::vector<Value> kept;
            for (Value& group : value.elements) {
                if (isOwnGroup(group)) {
                    Value entries = *group.member("hooks");
                    std::erase_if(entries.elements, isOwnEntry);
                    if (entries.elements.empty()) continue;
                    group.setMember("hooks", std::move(entries));
                }
                kept.push_back(group);
            }
            if (kept.empty()) continue;
            value.elements = std::move(kept);
        }
        hooks.members.push_back({event, value});
    }
    if (hooks.members.empty()) {
        document.removeMember("hooks");
    } else {
        document.setMember("hooks", std::move(hooks));
    }
    return document;
}

/// What an install must make of `document`.
inline Value afterInstall(const Value& document, const std::string& command) {
    const auto object = [] {
        Value value;
        value.type = 'o';
        return value;
    };
    Value result = foreignAfterInstall(document);
    Value hooks = result.member("hooks") == nullptr ? object() : *result.member("hooks");
    for (const std::string event :
         {"Notification", "Stop", "UserPromptSubmit", "PostToolUse", "SessionEnd"}) {
        Value entry = object();
        entry.setMember("type", {'s', "command"});
        entry.setMember("command", {'s', command});
        Value group = object();
        group.setMember("hooks", {'a', "", {entry}});
        if (event == "Notification" || event == "PostToolUse") group.setMember("matcher", {'s', ""});
        const Value* before = hooks.member(event);
        Value groups = before == nullptr ? Value{'a', ""} : *before;
        groups.elements.push_back(std::move(group));
        hooks.setMember(event, std::move(groups));
    }
    result.setMember("hooks", std::move(hooks));
    return result;
}

} // namespace corvane::test::plain

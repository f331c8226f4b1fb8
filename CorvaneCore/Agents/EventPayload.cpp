#include "Agents/EventPayload.h"

#include "Agents/JsonTokens.h"

#include <simdjson.h>

#include <algorithm>

namespace corvane {

namespace ondemand = simdjson::ondemand;

static_assert(EventPayload::padding >= simdjson::SIMDJSON_PADDING);

struct EventPayload::Parser {
    ondemand::parser parser;

    /// Grows in steps, so that successive documents of similar size share one allocation.
    bool reserve(std::size_t size) {
        constexpr std::size_t step = std::size_t{64} * 1024;
        if (size <= parser.capacity()) return true;
        // The library counts the scalars in the deepest container as a level of their own.
        return parser.allocate((size + step - 1) / step * step, maxDepth + 2) == simdjson::SUCCESS;
    }
};

namespace {

// The library has already located the tokens and checked that strings are closed and hold no control
// character, and that all bytes are UTF-8. Its iterators check brackets, commas and colons on the way, as
// long as every value is consumed rather than skipped. The rest is checked here: each scalar to its last
// byte, and the depth. Values are not converted: nobody needs them, and numbers need not fit any type.

bool isValidValue(ondemand::value value, std::size_t depth);

/// The text between the quotes; `token` begins with a quote and reaches up to the next token.
std::string_view stringLiteral(std::string_view token) {
    token = jsontokens::trimmingEnd(token);
    return token.substr(1, token.size() - 2);
}

/// The name of a member, escapes included. Only white space, the quote and the colon separate the name from
/// the value.
std::string_view nameLiteral(ondemand::field& field) {
    const char* const begin = field.key().raw();
    const std::string_view upToValue(begin,
                                     static_cast<std::size_t>(field.value().raw_json_token().data() - begin));
    return upToValue.substr(0, upToValue.find_last_of('"'));
}

bool isValidArray(ondemand::value& value, std::size_t depth) {
    ondemand::array array;
    if (depth > EventPayload::maxDepth || value.get_array().get(array)) return false;
    for (simdjson::simdjson_result<ondemand::value> next : array) {
        if (next.error() || !isValidValue(next.value_unsafe(), depth)) return false;
    }
    return true;
}

bool isValidObject(ondemand::value& value, std::size_t depth) {
    ondemand::object object;
    if (depth > EventPayload::maxDepth || value.get_object().get(object)) return false;
    for (simdjson::simdjson_result<ondemand::field> next : object) {
        ondemand::field field;
        if (std::move(next).get(field)) return false;
        if (!jsontokens::hasValidEscapes(nameLiteral(field)) || !isValidValue(field.value(), depth))
            return false;
    }
    return true;
}

/// `depth` is the number of containers around the value.
bool isValidValue(ondemand::value value, std::size_t depth) {
    const std::string_view token = value.raw_json_token();
    switch (token.front()) {
    case '{':
        return isValidObject(value, depth + 1);
    case '[':
        return isValidArray(value, depth + 1);
    case '"':
        // Consumed, not skipped: skipping mistakes a string before a colon for a name.
        return value.get_raw_json_string().error() == simdjson::SUCCESS &&
               jsontokens::hasValidEscapes(stringLiteral(token));
    case 't':
        return jsontokens::trimmingEnd(token) == "true";
    case 'f':
        return jsontokens::trimmingEnd(token) == "false";
    case 'n':
        return jsontokens::trimmingEnd(token) == "null";
    default:
        return jsontokens::isNumber(jsontokens::trimmingEnd(token));
    }
}

} // namespace

EventPayload::EventPayload()
    : parser_(std::make_unique<Parser>()) {}

EventPayload::~EventPayload() = default;

bool EventPayload::read(std::string_view json, std::span<const std::string_view> names) {
    members_.clear();
    for (const std::string_view name : names)
        members_.push_back({name, std::nullopt, std::nullopt});
    if (readDocument(json)) return true;
    members_.clear();
    return false;
}

bool EventPayload::readDocument(std::string_view json) {
    // Newer versions of the library skip a byte-order mark.
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (json.empty() || json.starts_with(byteOrderMark) || !parser_->reserve(json.size())) return false;

    ondemand::document document;
    ondemand::object object;
    if (parser_->parser.iterate(json.data(), json.size(), json.size() + padding).get(document)) return false;
    if (document.get_object().get(object)) return false;

    for (simdjson::simdjson_result<ondemand::field> next : object) {
        ondemand::field field;
        if (std::move(next).get(field)) return false;
        const std::string_view name = nameLiteral(field);
        const std::string_view value = field.value().raw_json_token();
        if (!jsontokens::hasValidEscapes(name) || !isValidValue(field.value(), 1)) return false;
        remember(name, value, json);
    }
    const bool nothingFollows = document.current_location().error() == simdjson::OUT_OF_BOUNDS;
    return nothingFollows;
}

void EventPayload::remember(std::string_view nameLiteral, std::string_view valueToken,
                            std::string_view json) {
    const auto rememberAs = [this, valueToken, json](std::string_view name) {
        const auto found = std::ranges::find(members_, name, &Member::name);
        if (found == members_.end()) return;
        *found = {found->name, std::nullopt, std::nullopt};
        if (valueToken.front() == '"') found->literal = stringLiteral(valueToken);
        if (valueToken.front() == '[')
            found->elements = json.substr(static_cast<std::size_t>(valueToken.data() + 1 - json.data()));
    };
    if (nameLiteral.find('\\') == std::string_view::npos) {
        rememberAs(nameLiteral);
    } else {
        rememberAs(jsontokens::unescaped(nameLiteral));
    }
}

std::optional<std::string> EventPayload::string(std::string_view name) const {
    const auto found = std::ranges::find(members_, name, &Member::name);
    if (found == members_.end() || !found->literal) return std::nullopt;
    return jsontokens::unescaped(*found->literal);
}

std::optional<std::string> EventPayload::firstString(std::string_view name) const {
    const auto found = std::ranges::find(members_, name, &Member::name);
    if (found == members_.end() || !found->elements) return std::nullopt;
    // The document is valid: a quote here begins an element, and another one ends it.
    const std::size_t quote = found->elements->find_first_not_of(" \t\n\r");
    if ((*found->elements)[quote] != '"') return std::nullopt;
    const std::size_t begin = quote + 1;
    std::size_t end = found->elements->find_first_of("\"\\", begin);
    while ((*found->elements)[end] == '\\')
        end = found->elements->find_first_of("\"\\", end + 2);
    return jsontokens::unescaped(found->elements->substr(begin, end - begin));
}

} // namespace corvane

#include "Support/Json.h"

#include <nlohmann/json.hpp>
#include <simdjson.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <span>
#include <utility>

namespace corvane {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// UTF-8 cannot represent an unpaired surrogate. In our strings it is this byte, which UTF-8 never uses,
// followed by the four digits of its escape.
constexpr char loneSurrogate = '\xFF';
constexpr std::size_t surrogateDigits = 4;

constexpr std::size_t unicodeEscapeSize = 6; // backslash, u, four digits

/// Whether an escape of a surrogate begins at `at`, whose second digit is one of `secondDigits`.
bool isSurrogate(std::string_view text, std::size_t at, std::string_view secondDigits) {
    const std::string_view escape = text.substr(std::min(at, text.size()), unicodeEscapeSize);
    return escape.size() == unicodeEscapeSize && escape.starts_with("\\u") &&
           (escape[2] == 'd' || escape[2] == 'D') && secondDigits.find(escape[3]) != std::string_view::npos &&
           escape.find_first_not_of("0123456789abcdefABCDEF", 2) == std::string_view::npos;
}
bool isHighSurrogate(std::string_view text, std::size_t at) {
    return isSurrogate(text, at, "89abAB");
}
bool isLowSurrogate(std::string_view text, std::size_t at) {
    return isSurrogate(text, at, "cdefCDEF");
}

/// Feeds a document to the library's reader. Outside strings it passes on only the first two digits of every
/// run of digits: no number is then too large for the reader, which would reject it, while the document's
/// validity stays the same ("0" and "01" still differ). Inside strings it passes on U+FFFD for an unpaired
/// surrogate, which the reader would reject too. The real text of both is taken from the document.
class Cursor {
  public:
    explicit Cursor(std::string_view text)
        : text_(text) {}

    [[nodiscard]] bool atEnd() const { return position_ == text_.size(); }
    [[nodiscard]] char character() const {
        constexpr std::string_view shown = "\\ufffd";
        if (!inString_ || halves_.empty()) return text_[position_];
        const std::size_t inEscape = position_ - halves_.back();
        return inEscape < shown.size() ? shown[inEscape] : text_[position_];
    }

    void advance() {
        const char passed = text_[position_++];
        if (inString_) {
            if (escaped_) {
                escaped_ = false;
            } else if (passed == '\\') {
                escaped_ = true;
                noteSurrogate(position_ - 1);
            } else if (passed == '"') {
                inString_ = false;
            }
            return;
        }
        inString_ = passed == '"';
        if (inString_) {
            stringBegin_ = position_;
            halves_.clear();
        }
        if (!isDigit(passed)) {
            digits_ = 0;
        } else if (++digits_ == 2) {
            while (!atEnd() && isDigit(character()))
                ++position_;
        }
    }

    /// The number that the reader has just finished: it has read one character beyond, unless the document
    /// ended.
    [[nodiscard]] std::string_view number() const {
        std::size_t end = position_;
        if (!isDigit(text_[end - 1])) --end;
        const std::size_t before = text_.substr(0, end).find_last_not_of("0123456789+-.eE");
        const std::size_t begin = before == std::string_view::npos ? 0 : before + 1;
        return text_.substr(begin, end - begin);
    }

    /// The string whose closing quote the reader has just passed, and which it has read as `shown`.
    [[nodiscard]] std::string string(const std::string& shown) const {
        if (halves_.empty()) return shown;
        std::string whole;
        std::size_t begin = stringBegin_;
        for (const std::size_t half : halves_) {
            whole += unescaped(begin, half);
            whole += loneSurrogate;
            whole += text_.substr(half + 2, surrogateDigits);
            begin = half + unicodeEscapeSize;
        }
        return whole + unescaped(begin, position_ - 1);
    }

  private:
    void noteSurrogate(std::size_t at) {
        if (at < pairEnd_) return;
        if (isHighSurrogate(text_, at) && isLowSurrogate(text_, at + unicodeEscapeSize)) {
            pairEnd_ = at + 2 * unicodeEscapeSize;
        } else if (isHighSurrogate(text_, at) || isLowSurrogate(text_, at)) {
            halves_.push_back(at);
        }
    }

    /// Decodes a part of a string that the reader has validated.
    [[nodiscard]] std::string unescaped(std::size_t begin, std::size_t end) const {
        std::string part = "\"";
        part += text_.substr(begin, end - begin);
        return nlohmann::json::parse(part += '"').get<std::string>();
    }

    std::string_view text_;
    std::size_t position_ = 0;
    int digits_ = 0;
    bool inString_ = false;
    bool escaped_ = false;
    std::size_t stringBegin_ = 0;
    std::size_t pairEnd_ = 0;         // of the surrogate pair passed last
    std::vector<std::size_t> halves_; // the escapes of unpaired surrogates in the current string
};

/// The cursor as the input iterator that the library requires; the end iterator has no cursor.
class Characters {
  public:
    using iterator_category = std::input_iterator_tag; // NOLINT(readability-identifier-naming)
    using value_type = char;                           // NOLINT(readability-identifier-naming)
    using difference_type = std::ptrdiff_t;            // NOLINT(readability-identifier-naming)
    using pointer = const char*;                       // NOLINT(readability-identifier-naming)
    using reference = char;                            // NOLINT(readability-identifier-naming)

    Characters() = default;
    explicit Characters(Cursor& cursor)
        : cursor_(&cursor) {}

    char operator*() const { return cursor_->character(); }
    Characters& operator++() {
        cursor_->advance();
        return *this;
    }
    Characters operator++(int) {
        Characters before = *this;
        ++*this;
        return before;
    }
    friend bool operator==(const Characters& left, const Characters& right) {
        return left.isEnd() == right.isEnd();
    }

  private:
    [[nodiscard]] bool isEnd() const { return cursor_ == nullptr || cursor_->atEnd(); }

    Cursor* cursor_ = nullptr;
};

class Builder final : public nlohmann::json_sax<nlohmann::json> {
  public:
    explicit Builder(const Cursor& cursor)
        : cursor_(cursor) {}

    Json takeRoot() { return std::move(root_); }

    bool null() override { return add(Json()); }
    bool boolean(bool value) override { return add(Json(value)); }
    bool number_integer(number_integer_t /*value*/) override { return addNumber(); }
    bool number_unsigned(number_unsigned_t /*value*/) override { return addNumber(); }
    bool number_float(number_float_t /*value*/, const string_t& /*text*/) override { return addNumber(); }
    bool string(string_t& value) override { return add(Json(cursor_.string(value))); }
    bool binary(binary_t& /*value*/) override { return false; }
    bool start_object(std::size_t /*size*/) override { return open(Json::Object()); }
    bool start_array(std::size_t /*size*/) override { return open(Json::Array()); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }
    bool key(string_t& name) override {
        // Keys must not differ only in the case of these digits.
        std::string& key = open_.back().key = cursor_.string(name);
        for (std::size_t at = key.find(loneSurrogate); at != std::string::npos;
             at = key.find(loneSurrogate, at + 1)) {
            for (char& digit : std::span(key).subspan(at + 1, surrogateDigits))
                if (digit >= 'A' && digit <= 'F') digit = static_cast<char>(digit - 'A' + 'a');
        }
        return true;
    }
    bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                     const nlohmann::detail::exception& /*error*/) override {
        return false;
    }

  private:
    struct Container {
        Json value;
        std::string key;
    };

    bool addNumber() { return add(Json(Json::Number{std::string(cursor_.number())})); }

    bool open(Json container) {
        if (open_.size() == Json::maximumDepth) return false;
        open_.push_back({std::move(container), {}});
        return true;
    }

    bool close() {
        Json finished = std::move(open_.back().value);
        open_.pop_back();
        return add(std::move(finished));
    }

    bool add(Json value) {
        if (open_.empty()) {
            root_ = std::move(value);
        } else if (Json::Array* array = open_.back().value.ifArray()) {
            array->push_back(std::move(value));
        } else if (Json::Object* object = open_.back().value.ifObject()) {
            // In documents that are already sorted, each member takes constant time.
            object->insert_or_assign(object->end(), std::move(open_.back().key), std::move(value));
        }
        return true;
    }

    const Cursor& cursor_;
    std::vector<Container> open_;
    Json root_;
};

class Writer {
  public:
    explicit Writer(Json::Layout layout)
        : indented_(layout == Json::Layout::indented) {}

    std::string takeText() { return std::move(text_); }

    void write(const Json& value) {
        if (const Json::Object* object = value.ifObject()) {
            writeItems(*object, '{', '}');
        } else if (const Json::Array* array = value.ifArray()) {
            writeItems(*array, '[', ']');
        } else if (const std::string* string = value.ifString()) {
            writeString(*string);
        } else if (const Json::Number* number = value.ifNumber()) {
            text_ += number->text;
        } else if (const bool* boolean = value.ifBoolean()) {
            text_ += *boolean ? "true" : "false";
        } else {
            text_ += "null";
        }
    }

  private:
    template <typename Container>
    void writeItems(const Container& items, char opening, char closing) {
        text_ += opening;
        if (!items.empty()) {
            ++depth_;
            bool first = true;
            for (const auto& item : items) {
                if (!first) text_ += ',';
                first = false;
                breakLine();
                writeItem(item);
            }
            --depth_;
            breakLine();
        }
        text_ += closing;
    }

    void writeItem(const Json& element) { write(element); }
    void writeItem(const Json::Object::value_type& member) {
        writeString(member.first);
        text_ += indented_ ? ": " : ":";
        write(member.second);
    }

    void breakLine() {
        if (!indented_) return;
        text_ += '\n';
        text_.append(2 * depth_, ' ');
    }

    void writeString(std::string_view string) {
        text_ += '"';
        std::size_t plain = 0; // where the run that needs no escape begins
        for (std::size_t i = 0; i < string.size(); ++i) {
            const auto byte = static_cast<unsigned char>(string[i]);
            if (byte >= 0x20 && byte != '"' && byte != '\\' && string[i] != loneSurrogate) continue;
            text_ += string.substr(plain, i - plain);
            plain = i + 1;
            writeEscape(string[i]);
        }
        text_ += string.substr(plain);
        text_ += '"';
    }

    void writeEscape(char c) {
        constexpr std::string_view special = "\"\\\b\f\n\r\t";
        constexpr std::string_view letters = "\"\\bfnrt";
        constexpr std::string_view hexadecimal = "0123456789abcdef";
        if (c == loneSurrogate) {
            text_ += "\\u"; // its digits follow
        } else if (const std::size_t found = special.find(c); found != std::string_view::npos) {
            text_ += '\\';
            text_ += letters[found];
        } else {
            const auto byte = static_cast<unsigned char>(c);
            text_ += "\\u00";
            text_ += hexadecimal[byte >> 4U];
            text_ += hexadecimal[byte & 0xFU];
        }
    }

    std::string text_;
    std::size_t depth_ = 0;
    bool indented_;
};

/// The number whose text this is, as the library's `Value`; the same in every locale.
template <typename Value>
std::optional<Value> converted(std::string_view text) {
    const simdjson::padded_string padded(text);
    simdjson::ondemand::parser parser;
    simdjson::ondemand::document document;
    Value value{};
    if (parser.iterate(padded).get(document) != simdjson::SUCCESS ||
        document.get<Value>().get(value) != simdjson::SUCCESS) {
        return std::nullopt;
    }
    return value;
}

} // namespace

std::optional<double> Json::Number::toDouble() const {
    return converted<double>(text);
}

std::optional<std::int64_t> Json::Number::toInteger() const {
    if (const std::optional<std::int64_t> exact = converted<std::int64_t>(text)) return exact;
    const std::optional<double> value = converted<double>(text);
    const bool fits = value && std::trunc(*value) == *value && *value >= -0x1p63 && *value < 0x1p63;
    return fits ? std::optional(static_cast<std::int64_t>(*value)) : std::nullopt;
}

Json::Json(Number value)
    : value_(std::move(value)) {}
Json::Json(std::string value)
    : value_(std::move(value)) {}
Json::Json(std::string_view value)
    : value_(std::string(value)) {}
Json::Json(const char* value)
    : value_(std::string(value)) {}
Json::Json(Array value)
    : value_(std::move(value)) {}
Json::Json(Object value)
    : value_(std::move(value)) {}

Json Json::integer(std::int64_t value) {
    return Number{std::to_string(value)};
}

Json Json::real(double value) {
    return Number{nlohmann::json(value).dump()};
}

std::optional<Json> Json::parse(std::string_view text) {
    // The library treats a zero byte as the end of the document and skips a byte-order mark.
    if (text.find('\0') != std::string_view::npos || text.starts_with("\xEF\xBB\xBF")) return std::nullopt;
    Cursor cursor(text);
    Builder builder(cursor);
    if (!nlohmann::json::sax_parse(Characters(cursor), Characters(), &builder)) return std::nullopt;
    return builder.takeRoot();
}

std::optional<std::string> Json::text() const {
    const std::string* const string = ifString();
    if (string == nullptr) return std::nullopt;
    std::string text = *string;
    for (std::size_t at = text.find(loneSurrogate); at != std::string::npos; at = text.find(loneSurrogate))
        text.replace(at, 1 + surrogateDigits, "\xEF\xBF\xBD");
    return text;
}

std::string Json::write(Layout layout) const {
    Writer writer(layout);
    writer.write(*this);
    return writer.takeText();
}

bool Json::isNull() const {
    return std::holds_alternative<std::monostate>(value_);
}
const bool* Json::ifBoolean() const {
    return std::get_if<bool>(&value_);
}
const Json::Number* Json::ifNumber() const {
    return std::get_if<Number>(&value_);
}
const std::string* Json::ifString() const {
    return std::get_if<std::string>(&value_);
}
const Json::Array* Json::ifArray() const {
    return std::get_if<Array>(&value_);
}
Json::Array* Json::ifArray() {
    return std::get_if<Array>(&value_);
}
const Json::Object* Json::ifObject() const {
    return std::get_if<Object>(&value_);
}
Json::Object* Json::ifObject() {
    return std::get_if<Object>(&value_);
}

const Json* Json::find(std::string_view key) const {
    const Object* object = ifObject();
    if (object == nullptr) return nullptr;
    const auto found = object->find(key);
    return found == object->end() ? nullptr : &found->second;
}

} // namespace corvane

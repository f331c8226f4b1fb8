#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace corvane {

/// A JSON value that preserves everything of the document it was read from except layout, key order and the
/// earlier of duplicate keys. Numbers stay the text of the document, to the last digit and whatever their
/// size. Strings are UTF-8 and may hold U+0000. An unpaired surrogate, which JavaScript escapes when text was
/// cut inside a character, is written as it was read. A plain value.
class Json {
  public:
    /// A number by its text, which follows JSON's grammar: "-0", "1e999" and 30-digit decimals are kept as
    /// they are.
    struct Number {
        std::string text;
        bool operator==(const Number&) const = default;

        /// The nearest double; none when the number is out of range.
        [[nodiscard]] std::optional<double> toDouble() const;
        /// The value of an integer, however it is written: "5", "5.0", "50e-1". None when it does not fit.
        /// One of more than 53 bits must be written without decimal point and exponent to be exact.
        [[nodiscard]] std::optional<std::int64_t> toInteger() const;
    };
    using Array = std::vector<Json>;
    /// Ordered by the keys' UTF-8 bytes.
    using Object = std::map<std::string, Json, std::less<>>;

    enum class Layout {
        compact,  ///< No white space at all.
        indented, ///< One member or element per line, two spaces per level, `"key": value`; empty
                  ///< containers are `{}` and `[]`.
    };

    /// How deeply arrays and objects may nest in a document to be parsed; the outermost one counts as 1.
    static constexpr std::size_t maximumDepth = 1'024;

    /// null
    Json() = default;
    // Implicit, so that documents can be written as nested braces.
    template <std::same_as<bool> Boolean>
    Json(Boolean value) // NOLINT(google-explicit-constructor)
        : value_(value) {}
    Json(Number value);           // NOLINT(google-explicit-constructor)
    Json(std::string value);      // NOLINT(google-explicit-constructor)
    Json(std::string_view value); // NOLINT(google-explicit-constructor)
    Json(const char* value);      // NOLINT(google-explicit-constructor)
    Json(Array value);            // NOLINT(google-explicit-constructor)
    Json(Object value);           // NOLINT(google-explicit-constructor)
    static Json integer(std::int64_t value);
    /// A number with the shortest text that parses back to exactly `value`, which must be finite.
    static Json real(double value);

    /// Parses one whole document, strictly: nothing but white space around the value, no comments, valid
    /// UTF-8, no byte-order mark. Of duplicate keys the last one counts. None when `text` is anything else or
    /// nests deeper than `maximumDepth`. Time and memory are linear in the size of `text`.
    [[nodiscard]] static std::optional<Json> parse(std::string_view text);

    /// The document's text without a line feed at its end. Keys are sorted by their UTF-8 bytes; slashes and
    /// non-ASCII characters are not escaped.
    [[nodiscard]] std::string write(Layout layout) const;

    [[nodiscard]] bool isNull() const;
    /// The value if it is of that type, else null. The pointers are valid until this value is changed or
    /// destroyed.
    [[nodiscard]] const bool* ifBoolean() const;
    [[nodiscard]] const Number* ifNumber() const;
    /// An unpaired surrogate is the byte FF followed by the four digits of its escape, in values and in keys.
    [[nodiscard]] const std::string* ifString() const;
    [[nodiscard]] const Array* ifArray() const;
    [[nodiscard]] Array* ifArray();
    [[nodiscard]] const Object* ifObject() const;
    [[nodiscard]] Object* ifObject();
    /// The string in UTF-8, with U+FFFD for each unpaired surrogate; none when this is not a string.
    [[nodiscard]] std::optional<std::string> text() const;
    /// The member `key`; null when there is none or this is not an object.
    [[nodiscard]] const Json* find(std::string_view key) const;

    /// Numbers are equal when their texts are.
    bool operator==(const Json&) const = default;

  private:
    std::variant<std::monostate, bool, Number, std::string, Array, Object> value_;
};

} // namespace corvane

#include "Agents/JsonTokens.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>

namespace corvane::jsontokens {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

const char* skipDigits(const char* position, const char* end) {
    while (position != end && isDigit(*position))
        ++position;
    return position;
}

/// The value of the four hexadecimal digits at `position`.
std::optional<std::uint32_t> fourHexDigits(const char* position, const char* end) {
    if (end - position < 4) return std::nullopt;
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i) {
        const char c = position[i];
        std::uint32_t digit = 0;
        if (isDigit(c)) {
            digit = static_cast<std::uint32_t>(c - '0');
        } else if (c >= 'a' && c <= 'f') {
            digit = static_cast<std::uint32_t>(c - 'a') + 10;
        } else if (c >= 'A' && c <= 'F') {
            digit = static_cast<std::uint32_t>(c - 'A') + 10;
        } else {
            return std::nullopt;
        }
        value = value << 4 | digit;
    }
    return value;
}

struct Escape {
    std::ptrdiff_t length = 0; // in bytes, backslash included; 0 for an invalid escape
    std::uint32_t codePoint = 0;
};

Escape unicodeEscape(const char* position, const char* end) {
    constexpr std::ptrdiff_t single = 6; // backslash, u, four digits
    constexpr std::uint32_t replacementCharacter = 0xFFFD;
    const auto first = fourHexDigits(position + 2, end);
    if (!first) return {};
    const bool isHighSurrogate = *first >= 0xD800 && *first < 0xDC00;
    const bool isLowSurrogate = *first >= 0xDC00 && *first < 0xE000;
    if (isLowSurrogate) return {single, replacementCharacter};
    if (!isHighSurrogate) return {single, *first};

    const Escape lone{single, replacementCharacter};
    if (end - position < 2 * single || position[single] != '\\' || position[single + 1] != 'u') return lone;
    const auto second = fourHexDigits(position + single + 2, end);
    if (!second || *second < 0xDC00 || *second >= 0xE000) return lone;
    return {2 * single, 0x10000 + ((*first - 0xD800) << 10) + (*second - 0xDC00)};
}

/// Reads the escape whose backslash is at `position`.
Escape escapeAt(const char* position, const char* end) {
    if (end - position < 2) return {};
    switch (position[1]) {
    case '"':
    case '\\':
    case '/':
        return {2, static_cast<std::uint32_t>(position[1])};
    case 'b':
        return {2, '\b'};
    case 'f':
        return {2, '\f'};
    case 'n':
        return {2, '\n'};
    case 'r':
        return {2, '\r'};
    case 't':
        return {2, '\t'};
    case 'u':
        return unicodeEscape(position, end);
    default:
        return {};
    }
}

const char* nextBackslash(const char* position, const char* end) {
    // Escapes are often adjacent; then this check is cheaper than the call.
    if (position == end || *position == '\\') return position;
    const void* const found = std::memchr(position, '\\', static_cast<std::size_t>(end - position));
    return found == nullptr ? end : static_cast<const char*>(found);
}

// Long texts are full of escapes, nearly all of them one of four. Checking blocks of bytes in parallel is
// more than twice as fast as going from one escape to the next. Every processor that we build for has vectors
// of this size.
using Vector [[gnu::vector_size(16)]] = signed char;

constexpr std::ptrdiff_t blockSize = 256;
static_assert(blockSize % sizeof(Vector) == 0);

Vector loadVector(const char* position) {
    Vector vector;
    std::memcpy(&vector, position, sizeof vector);
    return vector;
}

/// Whether a common letter follows each backslash among the `blockSize` bytes at `position`; one more byte
/// must be readable. If so, no escape that begins here is invalid, wherever the escapes begin.
bool hasOnlyCommonEscapes(const char* position) {
    Vector uncommon{};
    for (std::ptrdiff_t i = 0; i < blockSize; i += static_cast<std::ptrdiff_t>(sizeof uncommon)) {
        const Vector next = loadVector(position + i + 1);
        const Vector isCommon = (next == 'n') | (next == '"') | (next == '\\') | (next == 't');
        uncommon |= (loadVector(position + i) == '\\') & ~isCommon;
    }
    std::array<std::uint64_t, 2> lanes{};
    static_assert(sizeof lanes == sizeof uncommon);
    std::memcpy(lanes.data(), &uncommon, sizeof lanes);
    return (lanes[0] | lanes[1]) == 0;
}

/// Whether the byte at `position` belongs to the escape that an earlier backslash begins.
bool isEscaped(const char* begin, const char* position) {
    const char* first = position;
    while (first != begin && first[-1] == '\\')
        --first;
    return (position - first) % 2 != 0;
}

void appendUtf8(std::string& text, std::uint32_t codePoint) {
    const auto append = [&text](std::uint32_t byte) { text.push_back(static_cast<char>(byte)); };
    if (codePoint < 0x80) {
        append(codePoint);
    } else if (codePoint < 0x800) {
        append(0xC0 | codePoint >> 6);
        append(0x80 | (codePoint & 0x3F));
    } else if (codePoint < 0x10000) {
        append(0xE0 | codePoint >> 12);
        append(0x80 | (codePoint >> 6 & 0x3F));
        append(0x80 | (codePoint & 0x3F));
    } else {
        append(0xF0 | codePoint >> 18);
        append(0x80 | (codePoint >> 12 & 0x3F));
        append(0x80 | (codePoint >> 6 & 0x3F));
        append(0x80 | (codePoint & 0x3F));
    }
}

} // namespace

std::string_view trimmingEnd(std::string_view token) {
    return token.substr(0, token.find_last_not_of(" \t\n\r") + 1);
}

bool isNumber(std::string_view token) {
    const char* position = token.data();
    const char* const end = position + token.size();
    if (position != end && *position == '-') ++position;
    if (position == end || !isDigit(*position)) return false;
    position = *position == '0' ? position + 1 : skipDigits(position, end);

    if (position != end && *position == '.') {
        const char* const fraction = position + 1;
        position = skipDigits(fraction, end);
        if (position == fraction) return false;
    }
    if (position != end && (*position == 'e' || *position == 'E')) {
        ++position;
        if (position != end && (*position == '+' || *position == '-')) ++position;
        const char* const exponent = position;
        position = skipDigits(exponent, end);
        if (position == exponent) return false;
    }
    return position == end;
}

bool hasValidEscapes(std::string_view literal) {
    const char* const begin = literal.data();
    const char* const end = begin + literal.size();
    const char* position = nextBackslash(begin, end);
    while (position != end) {
        const char* const firstBlock = position;
        while (end - position > blockSize && hasOnlyCommonEscapes(position))
            position += blockSize;
        if (position != firstBlock && isEscaped(firstBlock, position)) ++position;

        const char* const stop = end - position > blockSize ? position + blockSize : end;
        position = nextBackslash(position, end);
        while (position < stop) {
            const Escape escape = escapeAt(position, end);
            if (escape.length == 0) return false;
            position = nextBackslash(position + escape.length, end);
        }
    }
    return true;
}

std::string unescaped(std::string_view literal) {
    std::string text;
    text.reserve(literal.size());
    const char* position = literal.data();
    const char* const end = position + literal.size();
    while (position != end) {
        const char* const backslash = nextBackslash(position, end);
        text.append(position, backslash);
        if (backslash == end) break;
        const Escape escape = escapeAt(backslash, end);
        if (escape.length == 0) break;
        appendUtf8(text, escape.codePoint);
        position = backslash + escape.length;
    }
    return text;
}

} // namespace corvane::jsontokens

#include "Support/Text.h"

#include <simdjson.h>
#include <unicode/brkiter.h>
#include <unicode/casemap.h>
#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>
#include <memory>

namespace corvane::text {

namespace {

struct Character {
    std::size_t length; // in bytes
    bool isWhitespace;
};

// No character takes more than four bytes, so it is enough to look at that much of the text.
constexpr std::size_t longestCharacter = 4;

// ICU reads UTF-8 by macros, whose casts are not ours.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wold-style-cast"
#pragma GCC diagnostic ignored "-Wsign-conversion"
#pragma GCC diagnostic ignored "-Wconversion"

Character firstCharacter(std::string_view text) {
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    const auto size = static_cast<std::int32_t>(std::min(text.size(), longestCharacter));
    std::int32_t position = 0;
    UChar32 character = 0;
    U8_NEXT(bytes, position, size, character);
    return {static_cast<std::size_t>(position), character >= 0 && u_isUWhiteSpace(character)};
}

Character lastCharacter(std::string_view text) {
    const std::size_t size = std::min(text.size(), longestCharacter);
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data() + text.size() - size);
    auto position = static_cast<std::int32_t>(size);
    UChar32 character = 0;
    U8_PREV(bytes, 0, position, character);
    return {size - static_cast<std::size_t>(position), character >= 0 && u_isUWhiteSpace(character)};
}

#pragma GCC diagnostic pop

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// `size`, or more if that would split a character of `text`; at most all of it.
std::size_t upToCharacter(std::string_view text, std::size_t size) {
    if (size >= text.size()) return text.size();
    const std::size_t last = std::min(text.size(), size + longestCharacter - 1);
    while (size < last && isContinuation(text[size]))
        ++size;
    return size;
}

bool isAscii(std::string_view text) {
    unsigned char bits = 0;
    for (const char byte : text)
        bits |= static_cast<unsigned char>(byte);
    return bits < 0x80;
}

void appendFolded(std::string& folded, std::string_view text) {
    if (isAscii(text)) {
        const std::size_t before = folded.size();
        folded.append(text);
        for (std::size_t i = before; i < folded.size(); ++i) {
            const char byte = folded[i];
            folded[i] = byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + ('a' - 'A')) : byte;
        }
        return;
    }
    icu::StringByteSink<std::string> sink(&folded, static_cast<std::int32_t>(text.size()));
    UErrorCode status = U_ZERO_ERROR;
    icu::CaseMap::utf8Fold(0, {text.data(), static_cast<std::int32_t>(text.size())}, sink, nullptr, status);
}

/// The end of the ASCII white space at the beginning of `text`, which can be megabytes.
std::size_t asciiWhitespaceEnd(std::string_view text) {
    return std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size());
}

} // namespace

std::string_view trimmingSpacesAndTabs(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::string_view trimmingWhitespace(std::string_view text) {
    std::size_t begin = asciiWhitespaceEnd(text);
    while (begin < text.size()) {
        const Character character = firstCharacter(text.substr(begin));
        if (!character.isWhitespace) break;
        begin += character.length;
    }
    text.remove_prefix(begin);
    while (!text.empty()) {
        const Character character = lastCharacter(text);
        if (!character.isWhitespace) break;
        text.remove_suffix(character.length);
    }
    return text;
}

bool containsIgnoringCase(std::string_view text, std::string_view word) {
    // In pieces, since a text can be megabytes. Folding looks at one character at a time.
    constexpr std::size_t pieceSize = 4096;
    std::string folded; // the end of the previous pieces, in which the word may begin, then the piece
    while (!text.empty()) {
        const std::size_t size = upToCharacter(text, pieceSize);
        appendFolded(folded, text.substr(0, size));
        if (folded.find(word) != std::string::npos) return true;
        text.remove_prefix(size);
        folded.erase(0, folded.size() - std::min(folded.size(), word.size()));
    }
    return word.empty();
}

std::size_t prefixLength(std::string_view text, std::size_t count) {
    // A character takes at least one byte.
    if (text.size() <= count) return text.size();

    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> characters(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    UText* const utext =
        utext_openUTF8(nullptr, text.data(), static_cast<std::int64_t>(text.size()), &status);
    if (U_SUCCESS(status)) characters->setText(utext, status);

    std::int32_t end = 0;
    for (std::size_t i = 0; i < count && U_SUCCESS(status); ++i) {
        const std::int32_t next = characters->next();
        if (next == icu::BreakIterator::DONE) break;
        end = next;
    }
    utext_close(utext);
    // Without ICU's data there are no boundaries; a text that is too long is better than none.
    if (U_FAILURE(status)) return text.size();
    return static_cast<std::size_t>(end);
}

std::string_view beginning(std::string_view text, std::size_t size) {
    if (size >= text.size()) return text;
    const std::size_t least = size - std::min(size, longestCharacter - 1);
    while (size > least && isContinuation(text[size]))
        --size;
    return text.substr(0, size);
}

std::string_view end(std::string_view text, std::size_t size) {
    if (size >= text.size()) return text;
    return text.substr(upToCharacter(text, text.size() - size));
}

std::string lastPathComponent(std::string_view path) {
    const std::size_t last = path.find_last_not_of('/');
    if (last == std::string_view::npos) return std::string(path);
    const std::string_view trimmed = path.substr(0, last + 1);
    const std::size_t slash = trimmed.find_last_of('/');
    return std::string(slash == std::string_view::npos ? trimmed : trimmed.substr(slash + 1));
}

bool isUtf8(std::string_view text) {
    return simdjson::validate_utf8(text.data(), text.size());
}

} // namespace corvane::text

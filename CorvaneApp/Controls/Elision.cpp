#include "Controls/Elision.h"

#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/utext.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace corvane::text {

namespace {

constexpr std::string_view ellipsis = "…";

// No line in a window shows more characters on either side of the ellipsis.
constexpr std::size_t longestSide = 512;

// Byte offsets of the ends of the text's first characters and of the beginnings of its last ones, those
// nearest to the text's ends first.
struct Boundaries {
    std::vector<std::size_t> heads{0};
    std::vector<std::size_t> tails;
};

// Isolate marks around a part are not characters of their own: they stay with its first and its last one.
bool isWithinMarks(std::string_view text, std::size_t position) {
    constexpr std::array isolate{'\xE2', '\x81', '\xA8'}; // U+2068; a literal may not leave it open
    constexpr std::string_view popIsolate = "\u2069";
    return text.substr(0, position).ends_with(std::string_view(isolate.data(), isolate.size())) ||
           text.substr(position).starts_with(popIsolate);
}

Boundaries boundaries(std::string_view text) {
    Boundaries result;
    result.tails.push_back(text.size());
    const auto add = [text](std::vector<std::size_t>& side, std::int32_t found) {
        const auto position = static_cast<std::size_t>(found);
        if (position == 0 || position == text.size() || !isWithinMarks(text, position))
            side.push_back(position);
    };

    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> characters(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    UText* const utext =
        utext_openUTF8(nullptr, text.data(), static_cast<std::int64_t>(text.size()), &status);
    if (U_SUCCESS(status)) characters->setText(utext, status);
    if (U_SUCCESS(status)) {
        characters->first();
        while (result.heads.size() <= longestSide) {
            const std::int32_t position = characters->next();
            if (position == icu::BreakIterator::DONE) break;
            add(result.heads, position);
        }
        characters->last();
        while (result.tails.size() <= longestSide) {
            const std::int32_t position = characters->previous();
            if (position == icu::BreakIterator::DONE) break;
            add(result.tails, position);
        }
    }
    utext_close(utext);
    return result;
}

} // namespace

std::string elidingMiddle(std::string_view text, double width, const Measure& measure) {
    // Most lines fit: finding character boundaries would load a mebibyte of the library into memory.
    if (text.size() <= longestSide && measure(text) <= width) return std::string(text);
    const Boundaries ends = boundaries(text);
    // Without its data the library finds no boundaries; then nothing can be elided.
    if (ends.heads.size() == 1) return std::string(text);
    const bool isWholeKnown = ends.heads.back() == text.size();
    if (isWholeKnown && measure(text) <= width) return std::string(text);

    const auto keeping = [&](std::size_t count) {
        const std::size_t head = ends.heads[count - count / 2];
        const std::size_t tail = ends.tails[count / 2];
        std::string result(text.substr(0, head));
        result += ellipsis;
        result += text.substr(tail);
        return result;
    };

    std::size_t fitting = 0;
    std::size_t tooMany = isWholeKnown ? ends.heads.size() - 1 : 2 * longestSide - 1;
    while (tooMany - fitting > 1) {
        const std::size_t middle = fitting + (tooMany - fitting) / 2;
        (measure(keeping(middle)) <= width ? fitting : tooMany) = middle;
    }
    return keeping(fitting);
}

} // namespace corvane::text

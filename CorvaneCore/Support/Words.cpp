#include "Support/Words.h"

#include <cstddef>

namespace corvane {

std::string inEnglish(const Phrase& phrase) {
    return phrase.key;
}

std::string filled(std::string_view pattern, std::initializer_list<std::string_view> arguments) {
    std::string result;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const bool isPlace =
            pattern[i] == '%' && i + 1 < pattern.size() && pattern[i + 1] >= '1' && pattern[i + 1] <= '9';
        const std::size_t place = isPlace ? static_cast<std::size_t>(pattern[i + 1] - '1') : arguments.size();
        if (place < arguments.size()) {
            result += *(arguments.begin() + place);
            ++i;
        } else {
            result += pattern[i];
        }
    }
    return result;
}

} // namespace corvane

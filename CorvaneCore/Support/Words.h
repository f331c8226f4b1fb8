#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace corvane {

/// A text for users, identified by its key, which is its English wording. The context tells translators where
/// it appears and distinguishes it from texts of the same wording elsewhere.
struct Phrase {
    const char* context;
    const char* key;
};

/// The phrase of this context and key. Both are string literals: the catalogues' keys are extracted from the
/// sources by this function's name.
[[nodiscard]] constexpr Phrase translatable(const char* context, const char* key) {
    return {context, key};
}

/// Translates a phrase into the user's language, in UTF-8; `inEnglish` where no other language is available.
using Words = std::string (*)(const Phrase& phrase);

/// The key itself.
[[nodiscard]] std::string inEnglish(const Phrase& phrase);

/// `pattern` with every "%1", "%2" and so on replaced by the argument of that number. Placeholders within the
/// arguments are not replaced, nor are numbers without an argument.
[[nodiscard]] std::string filled(std::string_view pattern, std::initializer_list<std::string_view> arguments);

} // namespace corvane

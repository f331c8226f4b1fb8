#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace corvane {

/// A text for users by its key, which is its English wording. The context tells translators where it stands,
/// and apart from texts of the same wording elsewhere.
struct Phrase {
    const char* context;
    const char* key;
};

/// The phrase of this context and key. Both are string literals: the catalogues' keys are extracted from the
/// sources by this function's name.
[[nodiscard]] constexpr Phrase translatable(const char* context, const char* key) {
    return {context, key};
}

/// Gives a phrase in the words that users read, in UTF-8; `inEnglish` where no other words are known.
using Words = std::string (*)(const Phrase& phrase);

/// The key itself.
[[nodiscard]] std::string inEnglish(const Phrase& phrase);

/// `pattern` with the arguments in place of "%1", "%2" and so on, each as often as it occurs. What the
/// arguments hold is left as it is; a number without an argument too.
[[nodiscard]] std::string filled(std::string_view pattern, std::initializer_list<std::string_view> arguments);

} // namespace corvane

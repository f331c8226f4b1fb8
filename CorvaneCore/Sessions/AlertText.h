#pragma once

#include "Sessions/SessionBoard.h"
#include "Support/Date.h"
#include "Support/Words.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace corvane {

/// The texts of an alert; UTF-8. A plain value and the functions that compose it, in English or in the words
/// given. All are pure if `words` is.
struct AlertText {
    std::string title;    ///< first, bold line of a banner
    std::string subtitle; ///< second line

    bool operator==(const AlertText&) const = default;

    /// The texts for a session that waits for the user.
    [[nodiscard]] static AlertText waiting(const AgentSession& session, Words words = inEnglish);

    /// The texts for a session that has finished.
    [[nodiscard]] static AlertText done(const AgentSession& session, Words words = inEnglish);

    /// One line about what `session` is doing at `now`.
    [[nodiscard]] static std::string statusLine(const AgentSession& session, Date now,
                                                Words words = inEnglish);

    /// "M:SS", from one hour on "H:MM:SS". Truncated to whole seconds; negative counts as zero. `seconds`
    /// must be finite.
    [[nodiscard]] static std::string clock(Seconds seconds);

    /// An agent's raw message, cleaned up for a banner: its first line, of at most 90 user-perceived
    /// characters. A permission prompt becomes "wants to use " and all that it names; a generic prompt for
    /// input becomes empty.
    [[nodiscard]] static std::string plain(std::string_view text, Words words = inEnglish);

    /// The most bytes of a message that are worth keeping.
    static constexpr std::size_t longestKept = std::size_t{16} * 1024;

    /// `message`, which can be megabytes, reduced to what alerts show or speak, in little more than
    /// `longestKept` bytes; up to that size it is returned unchanged. `plain` gives the same result, except
    /// that what a permission prompt names loses its middle, and a first line of few characters with very
    /// many combining marks loses its end.
    [[nodiscard]] static std::string kept(std::string message);
};

} // namespace corvane

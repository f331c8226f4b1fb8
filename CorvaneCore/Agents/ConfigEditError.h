#pragma once

#include "Support/Words.h"

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

namespace corvane {

/// Why an agent's configuration file was left as it is. Thrown by the editors and the connector before
/// anything is changed. Equal when case, sentence and text are.
class ConfigEditError : public std::exception {
  public:
    enum class Case : std::uint8_t {
        unreadable, ///< The file's content is not what the agent could have written.
        taken,      ///< The place in the file that the application needs belongs to another program.
    };

    /// `reason`: what is wrong, such as "settings.json is not valid JSON"; no full stop.
    static ConfigEditError unreadable(std::string reason);
    /// `sentence`: the message for users, with "%1" in place of `line`, the other program's line.
    static ConfigEditError taken(Phrase sentence, std::string line);
    /// `taken` for Codex: `line` is the other program's notify line, without surrounding spaces and tabs.
    static ConfigEditError codexNotifyTaken(std::string line);

    [[nodiscard]] Case kind() const { return kind_; }
    /// The reason or the line.
    [[nodiscard]] const std::string& detail() const { return detail_; }

    /// The reason, translated by `words`, or the line.
    [[nodiscard]] std::string detail(Words words) const;

    /// Sentences for users, with a full stop at the end.
    [[nodiscard]] std::string description(Words words = inEnglish) const;
    /// The same as `detail()`.
    [[nodiscard]] const char* what() const noexcept override { return detail_.c_str(); }

    friend bool operator==(const ConfigEditError& left, const ConfigEditError& right) {
        return left.kind_ == right.kind_ && left.detail_ == right.detail_ &&
               std::string_view(left.sentence_.key) == right.sentence_.key;
    }

  private:
    ConfigEditError(Case kind, Phrase sentence, std::string detail);

    Case kind_;
    Phrase sentence_;
    std::string detail_;
};

} // namespace corvane

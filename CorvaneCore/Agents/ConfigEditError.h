#pragma once

#include "Support/Words.h"

#include <cstdint>
#include <exception>
#include <string>

namespace corvane {

/// Why an agent's configuration file is left as it is. Thrown by the editors and the connector; nothing has
/// been changed when it is. Equal when case and text are.
class ConfigEditError : public std::exception {
  public:
    enum class Case : std::uint8_t {
        unreadable,       ///< The file's content is not what the agent could have written.
        codexNotifyTaken, ///< Codex's one place for a program to notify belongs to another program.
    };

    /// `reason`: what is wrong, such as "settings.json is not valid JSON"; no full stop.
    static ConfigEditError unreadable(std::string reason);
    /// `line`: the other program's line, without spaces and tabs around it.
    static ConfigEditError codexNotifyTaken(std::string line);

    [[nodiscard]] Case kind() const { return kind_; }
    /// The reason or the line.
    [[nodiscard]] const std::string& detail() const { return detail_; }

    /// The reason in these words, or the line.
    [[nodiscard]] std::string detail(Words words) const;

    /// Sentences for users, with a full stop at the end.
    [[nodiscard]] std::string description(Words words = inEnglish) const;
    /// The same as `detail()`.
    [[nodiscard]] const char* what() const noexcept override { return detail_.c_str(); }

    friend bool operator==(const ConfigEditError& left, const ConfigEditError& right) {
        return left.kind_ == right.kind_ && left.detail_ == right.detail_;
    }

  private:
    ConfigEditError(Case kind, std::string detail);

    Case kind_;
    std::string detail_;
};

} // namespace corvane

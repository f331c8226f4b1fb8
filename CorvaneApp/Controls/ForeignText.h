#pragma once

#include <QString>

/// Prepares texts from outside, such as a project's name or an agent's message, for display among the
/// application's own texts.
namespace corvane::foreign {

/// On one line: control characters and line breaks become spaces, and the invisible characters that embed,
/// override or isolate a direction are removed, since their effect could extend beyond the text's end.
[[nodiscard]] QString line(QString text);

/// `line` between isolate marks, so that its direction does not affect the text around it. Empty if
/// `isBlank`.
[[nodiscard]] QString isolated(const QString& text);

/// Whether `line` shows nothing.
[[nodiscard]] bool isBlank(const QString& text);

/// Formats `text` for QToolTip, which renders any text that looks like markup: shown literally, on as many
/// lines as it needs.
[[nodiscard]] QString toolTip(const QString& text);

} // namespace corvane::foreign

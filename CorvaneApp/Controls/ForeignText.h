#pragma once

#include <QString>

/// Texts that come from outside, such as a project's name or an agent's message, made fit to be shown among
/// the application's own words.
namespace corvane::foreign {

/// On one line: control characters and line breaks become spaces, and the invisible characters that embed,
/// override or isolate a direction are left out, since they would reach beyond the text's own end.
[[nodiscard]] QString line(QString text);

/// `line` that keeps its direction to itself wherever it is put. Empty where it would show nothing.
[[nodiscard]] QString isolated(const QString& text);

/// Whether `line` would show nothing.
[[nodiscard]] bool isBlank(const QString& text);

/// For QToolTip, which takes any text that looks like markup for such: shows `text` as it is, on as many
/// lines as it needs.
[[nodiscard]] QString toolTip(const QString& text);

} // namespace corvane::foreign

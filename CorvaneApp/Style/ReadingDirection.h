#pragma once

#include <QString>
#include <Qt>

namespace corvane {

/// The direction in which a text is read: that of its first strong letter outside of isolates, or `layout`'s
/// where it has none. English words keep their full stop at their end in a right-to-left interface.
[[nodiscard]] Qt::LayoutDirection readingDirection(const QString& text, Qt::LayoutDirection layout);

} // namespace corvane

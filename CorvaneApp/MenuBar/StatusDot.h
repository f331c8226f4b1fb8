#pragma once

#include "Sessions/SessionBoard.h"
#include "Style/TextScale.h"
#include "Style/Tokens.h"

#include <QIcon>

class QPainter;

/// The dot before a session's name, coloured by what the session does.
namespace corvane::statusdot {

inline constexpr Scaled side{8};

[[nodiscard]] QColor color(const SessionStatus& status, Look look);

/// Fills `dot`. With high contrast, the faint dot of a running session has a ring.
void paint(QPainter& painter, QRectF dot, const SessionStatus& status, Look look);

/// The dot in the middle of the square that a menu has for its icons.
[[nodiscard]] QIcon icon(const SessionStatus& status, Look look);

} // namespace corvane::statusdot

#pragma once

class QWidget;

namespace corvane::windows {

/// Shows `window`, also from minimised and from another workspace, and asks the system to bring it to the
/// front with the keyboard.
void present(QWidget& window);

} // namespace corvane::windows

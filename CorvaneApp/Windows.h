#pragma once

class QWidget;

namespace corvane::windows {

/// Shows `window`, also from minimised, and asks the window manager to bring it to the front.
void present(QWidget& window);

} // namespace corvane::windows

#pragma once

class QWidget;

namespace corvane {

/// Brings a window that is shown on another workspace to the one that the user looks at, where a window that
/// asks to be active would stay where it is, unseen. Does nothing elsewhere. Main thread only.
void bringToUsersWorkspace(const QWidget& window);

/// Makes this application the active one, where applications rather than windows are active; the window in
/// question is on the screen already. A request, which the system may turn down. Does nothing elsewhere. Main
/// thread only.
void activateApplication();

} // namespace corvane

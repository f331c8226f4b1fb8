#pragma once

namespace corvane {

/// Makes this application the active one, where applications rather than windows are active; the window in
/// question is on the screen already. A request, which the system may turn down. Does nothing elsewhere. Main
/// thread only.
void activateApplication();

} // namespace corvane

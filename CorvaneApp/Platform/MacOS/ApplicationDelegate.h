#pragma once

namespace corvane {

/// Posted on the default notification centre, with no object, when the user opens the running application
/// again.
inline constexpr const char* reopenNotification = "CorvaneReopen";

/// Sets the application's delegate. Call it once, before the QApplication is created: Qt then installs its
/// own delegate, which forwards to this one and must not be replaced later.
void installApplicationDelegate();

} // namespace corvane

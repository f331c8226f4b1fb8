#pragma once

namespace corvane {

/// Posted on the default notification centre, with no object, when the user opens the running application
/// again.
inline constexpr const char* reopenNotification = "CorvaneReopen";

/// Gives the application a delegate. To be called once, before the QApplication is made: Qt puts one of its
/// own in front then and passes on what this one answers, and must not be displaced later.
void installApplicationDelegate();

} // namespace corvane

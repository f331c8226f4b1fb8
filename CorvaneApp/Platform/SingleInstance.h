#pragma once

#include <QObject>

namespace corvane {

/// Keeps the application to one running instance per user session, and reports further starts. Main thread
/// only.
class SingleInstance : public QObject {
    Q_OBJECT

  public:
    /// Claims to be the session's only instance. Returns false if another process is: this one should exit
    /// with status 0, and the other has been asked to show its window, unless this one was started at login,
    /// when nobody expects a window. If several processes claim at the same time, exactly one succeeds.
    /// Leftovers of a crashed process do no harm.
    [[nodiscard]] virtual bool claim() = 0;

  Q_SIGNALS:
    /// The application was started or opened again.
    void reopened();
};

} // namespace corvane

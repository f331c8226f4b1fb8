#pragma once

#include <QObject>

namespace corvane {

/// Keeps the application to one running instance per user session, and reports further starts. Main thread
/// only.
class SingleInstance : public QObject {
    Q_OBJECT

  public:
    /// Claims to be the session's only instance. Returns false if another process is: this one should end
    /// with status 0, and that process has been asked to come forward, unless this one was started at login,
    /// where nobody asks for a window. Of processes that claim at the same time exactly one gets true.
    /// Leftovers of a crashed process do no harm.
    [[nodiscard]] virtual bool claim() = 0;

  Q_SIGNALS:
    /// The application was started or opened again.
    void reopened();
};

} // namespace corvane

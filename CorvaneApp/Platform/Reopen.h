#pragma once

#include <QObject>

namespace corvane {

/// Sees to it that a user's session has one running application, and hears when it is started again. Main
/// thread only.
class Reopen : public QObject {
    Q_OBJECT

  public:
    /// Tries to be the one. False when another process is: it has been asked to come forward then, and this
    /// process should end with status 0. Of processes that ask at the same instant exactly one gets true.
    /// What a crashed process left behind is no obstacle.
    [[nodiscard]] virtual bool claim() = 0;

  Q_SIGNALS:
    /// The application was started or opened again.
    void reopened();
};

} // namespace corvane

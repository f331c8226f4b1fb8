#pragma once

#include <QObject>

class QSocketNotifier;

namespace corvane {

/// Turns the signals by which a session or a terminal ends a program (SIGTERM, SIGINT, SIGHUP) into
/// `received`, so that the application quits through its own event loop. One per process; main thread.
class UnixSignals : public QObject {
    Q_OBJECT

  public:
    UnixSignals();
    ~UnixSignals() override;

  Q_SIGNALS:
    void received();

  private:
    QSocketNotifier* notifier_ = nullptr;
};

} // namespace corvane

#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

namespace corvane {

/// Moves all clocks of the banners together, so that three of them wake the process once a second and not
/// three times; and where something else happens once a second anyway, at that time. Main thread only.
class SecondHand : public QObject {
    Q_OBJECT

  public:
    /// The application's instance, created on the first call.
    static SecondHand& instance();

    /// Ticks once a second from now on, or from when another clock was started, until each clock has been
    /// stopped.
    void startClock();
    void stopClock();
    [[nodiscard]] bool isRunning() const { return timer_.isActive(); }

    /// Tells that a pass of the application's own loop is under way: the next tick is now, if it is about
    /// due.
    void beat();

  Q_SIGNALS:
    void ticked();

  private:
    explicit SecondHand(QObject* parent);

    void tick();

    QTimer timer_;
    QElapsedTimer sinceTick_;
    int clocks_ = 0;
};

} // namespace corvane

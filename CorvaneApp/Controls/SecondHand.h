#pragma once

#include <QObject>
#include <QTimer>

#include <chrono>

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
    /// Once for each `startClock`.
    void stopClock();
    /// Whether any clock runs, so that it ticks.
    [[nodiscard]] bool isRunning() const { return timer_.isActive(); }

    /// Tells that a pass of the application's own loop ends: the next tick is now. The banners then show this
    /// time, and the other views that at which the pass began: they differ by a second where one begins
    /// during the pass.
    void beat();

  Q_SIGNALS:
    void ticked();

  private:
    explicit SecondHand(QObject* parent);

    /// Ticks, and again after `next` unless a beat comes before.
    void tick(std::chrono::milliseconds next);

    QTimer timer_;
    int clocks_ = 0;
};

} // namespace corvane

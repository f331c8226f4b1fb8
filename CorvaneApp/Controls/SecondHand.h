#pragma once

#include <QObject>
#include <QTimer>

#include <chrono>

namespace corvane {

/// Ticks the clocks of all banners together, so that three of them wake the process once a second and not
/// three times; and where something else happens once a second anyway, at the same time. Main thread only.
class SecondHand : public QObject {
    Q_OBJECT

  public:
    /// The application's instance, created on the first call.
    static SecondHand& instance();

    /// Starts ticking once a second, unless another clock has started it already, until every clock has been
    /// stopped.
    void startClock();
    /// To be called once for each `startClock`.
    void stopClock();
    /// Whether it ticks, that is, any clock runs.
    [[nodiscard]] bool isRunning() const { return timer_.isActive(); }

    /// To be called when a pass of the application's loop ends: ticks now. The banners then show the current
    /// time, and the other views the time at which the pass began: these differ by a second where one begins
    /// during the pass.
    void beat();

  Q_SIGNALS:
    void ticked();

  private:
    explicit SecondHand(QObject* parent);

    /// Ticks now, and again after `next` unless `beat` is called before.
    void tick(std::chrono::milliseconds next);

    QTimer timer_;
    int clocks_ = 0;
};

} // namespace corvane

#include "Platform/Shared/QtScheduler.h"

#include <QTimer>

#include <utility>

namespace corvane {

void QtScheduler::after(std::chrono::milliseconds delay, std::function<void()> work) {
    // Owned here rather than by the event loop, so that what the work captures is destroyed no later than the
    // scheduler.
    auto* const timer = new QTimer(&context_);
    timer->setSingleShot(true);
    timer->setTimerType(Qt::PreciseTimer);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, work = std::move(work)] {
        timer->deleteLater();
        work();
    });
    timer->start(delay);
}

} // namespace corvane

#include "QtScheduler.h"

#include <QTimer>

#include <utility>

namespace corvane {

void QtScheduler::after(std::chrono::milliseconds delay, std::function<void()> work) {
    QTimer::singleShot(delay, Qt::PreciseTimer, &context_, std::move(work));
}

} // namespace corvane

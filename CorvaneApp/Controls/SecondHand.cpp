#include "Controls/SecondHand.h"

#include <QCoreApplication>
#include <QPointer>

#include <chrono>

namespace corvane {

namespace {

constexpr std::chrono::milliseconds second{1000};
// How long to wait for a late beat.
constexpr std::chrono::milliseconds tolerance{100};

} // namespace

SecondHand& SecondHand::instance() {
    static QPointer<SecondHand> hand;
    if (!hand) hand = new SecondHand(QCoreApplication::instance());
    return *hand;
}

SecondHand::SecondHand(QObject* parent)
    : QObject(parent) {
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, [this] { tick(second); });
}

void SecondHand::startClock() {
    if (clocks_++ == 0) timer_.start(second);
}

void SecondHand::stopClock() {
    if (--clocks_ == 0) timer_.stop();
}

void SecondHand::beat() {
    if (clocks_ > 0) tick(second + tolerance);
}

void SecondHand::tick(std::chrono::milliseconds next) {
    Q_EMIT ticked();
    if (clocks_ > 0) timer_.start(next);
}

} // namespace corvane

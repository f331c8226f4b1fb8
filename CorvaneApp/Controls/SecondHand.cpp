#include "Controls/SecondHand.h"

#include <QCoreApplication>
#include <QPointer>

#include <chrono>

namespace corvane {

namespace {

constexpr std::chrono::milliseconds second{1000};
// How much earlier than a second after the last tick a beat becomes the next one, and how long to wait for a
// late beat.
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
    connect(&timer_, &QTimer::timeout, this, [this] {
        tick();
        if (clocks_ > 0) timer_.start(second);
    });
}

void SecondHand::startClock() {
    if (clocks_++ > 0) return;
    sinceTick_.start();
    timer_.start(second);
}

void SecondHand::stopClock() {
    if (--clocks_ == 0) timer_.stop();
}

void SecondHand::beat() {
    if (clocks_ == 0 || !sinceTick_.hasExpired((second - tolerance).count())) return;
    tick();
    if (clocks_ > 0) timer_.start(second + tolerance);
}

void SecondHand::tick() {
    sinceTick_.start();
    Q_EMIT ticked();
}

} // namespace corvane

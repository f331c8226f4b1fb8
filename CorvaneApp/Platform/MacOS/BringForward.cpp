#include "Platform/MacOS/BringForward.h"

#include "Platform/Scheduler.h"

#include <chrono>

namespace corvane {

namespace {

// What the system takes to change the active application, and no longer than a user waits without noticing.
constexpr std::chrono::milliseconds patience{300};

} // namespace

void bringForward(const std::shared_ptr<OtherApplication>& other, OurState ourState, Scheduler& scheduler) {
    // The system takes no activation away from an application that has not offered it.
    if (ourState == OurState::active) other->yield();
    if (!other->request()) {
        other->requestFromFront();
        return;
    }
    scheduler.after(patience, [other] {
        if (!other->isActive()) other->requestFromFront();
    });
}

} // namespace corvane

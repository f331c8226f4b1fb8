#include "Platform/MacOS/BringForward.h"

#include "Platform/Scheduler.h"

#include <chrono>

namespace corvane {

namespace {

// Long enough for the system to change the active application, and too short for a user to notice.
constexpr std::chrono::milliseconds patience{300};

} // namespace

void bringForward(const std::shared_ptr<OtherApplication>& other, OurState ourState, Scheduler& scheduler) {
    // The system does not deactivate an application that has not yielded.
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

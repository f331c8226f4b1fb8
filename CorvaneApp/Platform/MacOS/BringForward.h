#pragma once

#include <cstdint>
#include <memory>

namespace corvane {

class Scheduler;

/// Another application that is to become the active one, as the system has it.
class OtherApplication {
  public:
    OtherApplication() = default;
    OtherApplication(const OtherApplication&) = delete;
    OtherApplication& operator=(const OtherApplication&) = delete;
    virtual ~OtherApplication() = default;

    [[nodiscard]] virtual bool isActive() const = 0;
    /// Lets it take over from this application, which has to be the active one.
    virtual void yield() = 0;
    /// Asks it to become active. True when the request was sent, which says nothing about its fate.
    [[nodiscard]] virtual bool request() = 0;
    /// Asks the application in front to give way to it.
    virtual void requestFromFront() = 0;
};

/// Whether this application is the active one.
enum class OurState : std::uint8_t { inactive, active };

/// Asks in one way, looks again a little later, asks in the other way, and leaves it at that.
void bringForward(const std::shared_ptr<OtherApplication>& other, OurState ourState, Scheduler& scheduler);

} // namespace corvane

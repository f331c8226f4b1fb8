#pragma once

#include <cstdint>
#include <memory>

namespace corvane {

class Scheduler;

/// The interface to another application that is to be activated.
class OtherApplication {
  public:
    OtherApplication() = default;
    OtherApplication(const OtherApplication&) = delete;
    OtherApplication& operator=(const OtherApplication&) = delete;
    virtual ~OtherApplication() = default;

    [[nodiscard]] virtual bool isActive() const = 0;
    /// Yields activation to it from this application, which must be active.
    virtual void yield() = 0;
    /// Requests its activation. Returns whether the request was sent, which does not mean that it succeeds.
    [[nodiscard]] virtual bool request() = 0;
    /// Requests its activation on behalf of the frontmost application.
    virtual void requestFromFront() = 0;
};

/// Whether this application is the active one.
enum class OurState : std::uint8_t { inactive, active };

/// Requests activation, checks the result a little later, and if necessary retries once on behalf of the
/// frontmost application.
void bringForward(const std::shared_ptr<OtherApplication>& other, OurState ourState, Scheduler& scheduler);

} // namespace corvane

#pragma once

#include "Platform/Applications.h"

namespace corvane {

class Scheduler;

/// The running applications by bundle identifier, as the system lists them.
class MacApplications : public Applications {
  public:
    /// `scheduler` must outlive this.
    explicit MacApplications(Scheduler& scheduler)
        : scheduler_(scheduler) {}

    /// By the identifier only: on macOS every terminal passes it to the programs inside.
    void activate(const Terminal& terminal, Report report) override;

  private:
    Scheduler& scheduler_;
};

} // namespace corvane

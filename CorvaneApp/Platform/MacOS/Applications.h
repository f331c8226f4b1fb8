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

    void activate(const std::string& bundleID) override;

    /// Does nothing: every terminal here tells its identifier to what runs in it.
    void activateTerminal(const std::string& agent, const std::string& directory) override;

  private:
    Scheduler& scheduler_;
};

} // namespace corvane

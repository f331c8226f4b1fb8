#pragma once

#include <memory>

namespace corvane {

/// Keeps the system from throttling the process while none of its windows is visible (App Nap), which would
/// stretch the second between two passes over the inbox. The computer may still sleep.
class Activity {
  public:
    Activity();
    Activity(const Activity&) = delete;
    Activity& operator=(const Activity&) = delete;
    ~Activity();

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace corvane

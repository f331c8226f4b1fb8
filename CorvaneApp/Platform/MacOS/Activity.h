#pragma once

#include <memory>

namespace corvane {

/// Keeps the system from slowing the process down while none of its windows is seen, which would stretch the
/// second between two looks at the inbox. The computer may sleep all the same.
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

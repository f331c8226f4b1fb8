#pragma once

#include <QString>

#include <cstdint>
#include <functional>
#include <memory>

namespace corvane {

/// Where a notification is posted: the system posts each on only one of these.
enum class NotificationCenter : std::uint8_t { application, workspace, everyProcess };

/// Observes the notifications of one name during its lifetime. Main thread only.
class Observation {
  public:
    /// `work` is called from the event loop, after all synchronous observers.
    Observation(NotificationCenter center, const QString& name, std::function<void()> work);
    Observation(const Observation&) = delete;
    Observation& operator=(const Observation&) = delete;
    ~Observation();

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace corvane

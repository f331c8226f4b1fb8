#pragma once

#include <QString>

#include <cstdint>
#include <functional>
#include <memory>

namespace corvane {

/// Where a notification is posted: the system tells each on one of these only.
enum class NotificationCenter : std::uint8_t { application, workspace, everyProcess };

/// Hears the notifications of one name for as long as it lives. Main thread only.
class Observation {
  public:
    /// `work` is called from the event loop, after those who hear the notification at once.
    Observation(NotificationCenter center, const QString& name, std::function<void()> work);
    Observation(const Observation&) = delete;
    Observation& operator=(const Observation&) = delete;
    ~Observation();

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace corvane

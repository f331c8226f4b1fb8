#pragma once

#include "Platform/Scheduler.h"

#include <QObject>

namespace corvane {

/// Runs work from the application's event loop.
class QtScheduler : public Scheduler {
  public:
    void after(std::chrono::milliseconds delay, std::function<void()> work) override;

  private:
    QObject context_;
};

} // namespace corvane

#pragma once

#include "Platform/Announcer.h"

namespace corvane {

/// Posts announcements on the application, which exists even when it has no window.
class MacAnnouncer : public Announcer {
  public:
    void announce(const QString& text) override;
};

} // namespace corvane

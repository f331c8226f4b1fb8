#pragma once

#include "Platform/Announcer.h"

namespace corvane {

/// Announces banners by their accessible role: a screen reader speaks a notification's name when it is shown,
/// which Qt tells it at each show of a banner's view, a refreshed one included. A second, free announcement
/// would be spoken twice.
class LinuxAnnouncer : public Announcer {
  public:
    LinuxAnnouncer();

    void announce(const QString& text, QWidget& banner) override;
};

} // namespace corvane

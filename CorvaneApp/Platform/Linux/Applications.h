#pragma once

#include "Platform/Applications.h"

namespace corvane {

/// Applications by the X11 class of their windows.
class LinuxApplications : public Applications {
  public:
    void activate(const std::string& bundleID) override;
};

} // namespace corvane

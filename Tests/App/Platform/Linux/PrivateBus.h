#pragma once

#include "Support/TestSupport.h"

#include <QProcess>
#include <QString>

namespace corvane::test {

/// A private session bus, which becomes that of this process. Create it before anything else uses the bus.
class PrivateBus {
  public:
    PrivateBus();
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    [[nodiscard]] QString address() const { return address_; }

  private:
    ScratchFolder folder_{"bus"};
    QProcess daemon_;
    QString address_;
};

} // namespace corvane::test

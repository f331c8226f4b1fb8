#pragma once

#include "Platform/Linux/WindowRaiser.h"

#include <QByteArray>

#include <cstdint>
#include <vector>

namespace corvane {

/// The windows in sway's description of its tree, the one used last first, and sway's own numbers of them.
struct SwayTree {
    std::vector<OpenWindow> windows;
    std::vector<std::int64_t> numbers;

    /// Ignores what it does not understand: other versions may describe more, or less.
    [[nodiscard]] static SwayTree parse(const QByteArray& json);
};

/// Raises native and X11 windows under sway, through its own protocol.
class SwayWindowRaiser : public WindowRaiser {
  public:
    explicit SwayWindowRaiser(QString socket);

    void raise(const WindowSearch& search, QObject& context, Report report) override;

  private:
    QString socket_;
};

} // namespace corvane

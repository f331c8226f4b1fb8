#pragma once

#include "Platform/Linux/SwayIpc.h"
#include "Platform/Linux/WindowRaiser.h"

#include <QByteArray>

#include <chrono>
#include <cstdint>
#include <vector>

namespace corvane {

/// The windows in sway's description of its tree, the most recently used first, and sway's own IDs of them.
struct SwayTree {
    std::vector<OpenWindow> windows;
    std::vector<std::int64_t> numbers;

    /// Ignores what it does not understand: other versions may describe more, or less.
    [[nodiscard]] static SwayTree parse(const QByteArray& json);
};

/// Raises native and X11 windows under sway, through its own protocol.
class SwayWindowRaiser : public WindowRaiser {
  public:
    /// Each of sway's replies may take up to `limit`.
    explicit SwayWindowRaiser(QString socket, std::chrono::milliseconds limit = sway::patience);

    void raise(const WindowSearch& search, QObject& context, Report report) override;

  private:
    QString socket_;
    std::chrono::milliseconds limit_;
};

} // namespace corvane

#pragma once

#include "Platform/Linux/WindowRaiser.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <functional>
#include <optional>

namespace corvane {

/// Parses the script's description of the windows, in JSON, the most recently used first; empty if it is
/// malformed.
[[nodiscard]] std::vector<OpenWindow> kwinWindows(const QByteArray& json);

/// Raises native and X11 windows under KWin 5.27 and 6, where only scripts know the native ones. No outside
/// text is inserted into the script: it describes all windows to this process, which replies with the index
/// of the one to raise.
class KWinWindowRaiser : public WindowRaiser {
  public:
    /// The time limit for the whole operation.
    static constexpr std::chrono::milliseconds patience{2000};

    explicit KWinWindowRaiser(std::chrono::milliseconds limit = patience)
        : limit_(limit) {}

    void raise(const WindowSearch& search, QObject& context, Report report) override;

  private:
    std::chrono::milliseconds limit_;
};

} // namespace corvane

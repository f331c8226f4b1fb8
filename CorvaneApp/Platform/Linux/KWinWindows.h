#pragma once

#include "Platform/Linux/WindowRaiser.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <functional>
#include <optional>

namespace corvane {

/// The windows that the script has described, in JSON, the one used last first; empty if it is not a
/// description.
[[nodiscard]] std::vector<OpenWindow> kwinWindows(const QByteArray& json);

/// Raises native and X11 windows under KWin 5.27 and 6, whose scripts alone know native ones. The script gets
/// nothing foreign: it describes all windows to this process, which replies with the number of the one to
/// raise.
class KWinWindowRaiser : public WindowRaiser {
  public:
    /// How long the whole takes at most.
    static constexpr std::chrono::milliseconds patience{2000};

    explicit KWinWindowRaiser(std::chrono::milliseconds limit = patience)
        : limit_(limit) {}

    void raise(const WindowSearch& search, QObject& context, Report report) override;

  private:
    std::chrono::milliseconds limit_;
};

} // namespace corvane

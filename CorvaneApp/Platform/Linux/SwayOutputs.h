#pragma once

#include "Platform/Linux/SwayIpc.h"

#include <QByteArray>
#include <QMargins>
#include <QObject>
#include <QRect>
#include <QString>

#include <chrono>
#include <optional>
#include <vector>

namespace corvane {

/// One of sway's outputs, in its coordinates, which are those of XWayland.
struct SwayOutput {
    QRect area;
    QMargins reserved; ///< what bars and gaps take at its edges
    bool isFocused = false;

    bool operator==(const SwayOutput&) const = default;
};

/// Which outputs there are, by sway's own protocol: bars are invisible to X11 there. What is known is as of
/// the last reply; empty in other sessions. Main thread only.
class SwayOutputs : public QObject {
    Q_OBJECT

  public:
    /// `socket`: sway's, if it runs, whose replies may take `limit`. Asks it at once.
    explicit SwayOutputs(std::optional<QString> socket, std::chrono::milliseconds limit = sway::patience);

    /// The outputs in sway's replies about its outputs and its workspaces. Ignores what it does not
    /// understand.
    [[nodiscard]] static std::vector<SwayOutput> parse(const QByteArray& outputs,
                                                       const QByteArray& workspaces);

    [[nodiscard]] const std::vector<SwayOutput>& outputs() const { return outputs_; }
    /// The output with most of `area`; null if none has any of it.
    [[nodiscard]] const SwayOutput* at(const QRect& area) const;
    /// The one that the user works on; null if unknown.
    [[nodiscard]] const SwayOutput* focused() const;

    /// Asks sway anew, asynchronously. Sway does not report when a bar comes or goes.
    void refresh();

  Q_SIGNALS:
    /// The outputs differ from what was known.
    void changed();

  private:
    std::optional<QString> socket_;
    std::chrono::milliseconds limit_;
    std::vector<SwayOutput> outputs_;
    bool isAsking_ = false;
};

} // namespace corvane

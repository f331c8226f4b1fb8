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

/// Sway's outputs, queried through its own protocol, since its bars are invisible to X11. The state is that
/// of the last reply; empty in other sessions. Main thread only.
class SwayOutputs : public QObject {
    Q_OBJECT

  public:
    /// `socket` is sway's, if it runs; each of its replies may take up to `limit`. Queries it at once.
    explicit SwayOutputs(std::optional<QString> socket, std::chrono::milliseconds limit = sway::patience);

    /// Parses sway's replies about its outputs and its workspaces. Ignores what it does not understand.
    [[nodiscard]] static std::vector<SwayOutput> parse(const QByteArray& outputs,
                                                       const QByteArray& workspaces);

    [[nodiscard]] const std::vector<SwayOutput>& outputs() const { return outputs_; }
    /// The output that shows most of `area`; null if none shows any of it.
    [[nodiscard]] const SwayOutput* at(const QRect& area) const;
    /// The output with the focus; null if unknown.
    [[nodiscard]] const SwayOutput* focused() const;

    /// Queries sway again, asynchronously. Sway does not report when a bar appears or disappears.
    void refresh();

  Q_SIGNALS:
    /// The outputs differ from those of the previous reply.
    void changed();

  private:
    std::optional<QString> socket_;
    std::chrono::milliseconds limit_;
    std::vector<SwayOutput> outputs_;
    bool isAsking_ = false;
};

} // namespace corvane

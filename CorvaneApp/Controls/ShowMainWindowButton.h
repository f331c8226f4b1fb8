#pragma once

#include <QAction>

#include <functional>

namespace corvane {

/// The menu entry "Corvane", which opens the main window: Ctrl+0, Command-0 on macOS. Main thread only.
class ShowMainWindowButton : public QAction {
    Q_OBJECT

  public:
    /// `parent` takes ownership of the entry.
    ShowMainWindowButton(std::function<void()> openWindow, QObject* parent);
};

} // namespace corvane

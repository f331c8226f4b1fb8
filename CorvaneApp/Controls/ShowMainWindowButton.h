#pragma once

#include <QAction>

#include <functional>

namespace corvane {

/// The entry "Corvane" of a window's menu, which opens the main window: Ctrl+0, Command-0 on macOS. Main
/// thread only.
class ShowMainWindowButton : public QAction {
    Q_OBJECT

  public:
    /// `parent` owns the entry.
    ShowMainWindowButton(std::function<void()> openWindow, QObject* parent);
};

} // namespace corvane

#pragma once

#include "Controls/WindowCommands.h"

#include <QMenuBar>

namespace corvane {

/// The menus of systems that show one menu bar for all windows of an application. They act on the window that
/// is active. Main thread only.
class ApplicationMenuBar {
  public:
    explicit ApplicationMenuBar(const CommandHandlers& handlers);

    [[nodiscard]] const QMenuBar& bar() const { return bar_; }

  private:
    // Without a parent: Qt shows a window's own bar for other windows too, and has its shortcuts act on that
    // one.
    QMenuBar bar_;
};

} // namespace corvane

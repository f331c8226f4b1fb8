#pragma once

#include "Controls/WindowCommands.h"

#include <QMenuBar>

namespace corvane {

/// The menus of systems that show one menu bar for all windows of an application. They act on the active
/// window. Main thread only.
class ApplicationMenuBar {
  public:
    explicit ApplicationMenuBar(const CommandHandlers& handlers);

    [[nodiscard]] const QMenuBar& bar() const { return bar_; }

  private:
    // No parent: Qt would show a window's own bar for other windows too, with shortcuts that act on that
    // window.
    QMenuBar bar_;
};

} // namespace corvane

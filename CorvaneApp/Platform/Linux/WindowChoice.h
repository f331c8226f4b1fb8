#pragma once

#include <QString>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <sys/types.h>
#include <vector>

/// Chooses which of a desktop's windows to raise. Pure functions.
namespace corvane {

/// A window as a window manager describes it. Its texts come from other programs.
struct OpenWindow {
    pid_t process = 0;               ///< as the window reports it
    std::optional<std::uint32_t> id; ///< the X11 window; none for a native Wayland window
    QString windowClass;             ///< the X11 class or the Wayland application ID
    QString title;
};

/// How to find the window.
struct WindowSearch {
    /// A process and its ancestors; the windows of an earlier one are preferred. If empty, windows are found
    /// by `classes`.
    std::vector<pid_t> processes;
    /// The X11 window that the process believes it runs in.
    std::optional<std::uint32_t> windowID;
    /// Window class names, ignoring case.
    std::vector<QString> classes;
    QString directory; ///< the working directory of the program in the window
    QString agent;     ///< that program's name
};

/// How well a window's title matches this directory and this program: 0 if it names neither, more for the
/// directory than for the program, and most for the directory's path. `home` is the user's home folder, which
/// titles abbreviate to "~".
[[nodiscard]] int titleRank(const QString& title, const QString& directory, const QString& agent,
                            const QString& home);

/// The index of the window to raise; none if no window matches. `windows`: the most recently used first. Of
/// several windows of a process it is the one with the ID, else the one whose title has the highest rank,
/// else the most recently used.
[[nodiscard]] std::optional<std::size_t> chooseWindow(const std::vector<OpenWindow>& windows,
                                                      const WindowSearch& search);

} // namespace corvane

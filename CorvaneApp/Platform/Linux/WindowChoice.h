#pragma once

#include <QString>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <sys/types.h>
#include <vector>

/// Which of a desktop's windows is the one to raise. Pure functions.
namespace corvane {

/// A window as a window manager describes it. Every text is foreign.
struct OpenWindow {
    pid_t process = 0;               ///< as the window reports it
    std::optional<std::uint32_t> id; ///< the X11 window; none for a native Wayland window
    QString windowClass;             ///< the X11 class or the Wayland application ID
    QString title;
};

/// What leads to the window.
struct WindowSearch {
    /// A process and its ancestors; the windows of an earlier one are preferred. If there are none, windows
    /// are found by `classes`.
    std::vector<pid_t> processes;
    /// The X11 window that the process believes it runs in.
    std::optional<std::uint32_t> windowID;
    /// Names of windows' classes, ignoring case.
    std::vector<QString> classes;
    QString directory; ///< the working directory of the program in the window
    QString agent;     ///< that program's name
};

/// How much a window's title speaks for this directory and this program: 0 if it names neither, more for the
/// directory than for the program, and most for the directory's path. `home` is the user's home folder, for
/// which titles have "~".
[[nodiscard]] int titleRank(const QString& title, const QString& directory, const QString& agent,
                            const QString& home);

/// The index of the window to raise; none if the search leads to none. `windows`: the one used last first. Of
/// several windows of a process it is the one with the ID, else the one whose title has the highest rank,
/// else the one used last.
[[nodiscard]] std::optional<std::size_t> chooseWindow(const std::vector<OpenWindow>& windows,
                                                      const WindowSearch& search);

} // namespace corvane

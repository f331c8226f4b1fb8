#pragma once

class QWidget;

namespace corvane {

/// Brings the application's own windows to the front. Main thread only.
class Activation {
  public:
    Activation() = default;
    Activation(const Activation&) = delete;
    Activation& operator=(const Activation&) = delete;
    virtual ~Activation() = default;

    /// Shows `window` on the user's current workspace, restored if it is minimised, and asks the system to
    /// bring it to the front with the keyboard focus. The system may decline; the window is shown all the
    /// same.
    virtual void present(QWidget& window) = 0;
};

} // namespace corvane

#pragma once

#include <QObject>
#include <QPoint>
#include <QRect>

#include <chrono>
#include <functional>
#include <optional>

class QWidget;

namespace corvane {

/// Has a control ignore presses of the pointer for the desktop's double-click interval after it has appeared
/// or moved under the pointer. So the second press of a double-click acts on nothing that the first one has
/// brought there, and a press that was meant for another window does not land in one that has just opened.
/// What means something else from now on is another control for that reason ("Connect", "Remove"), not
/// another text. The keyboard and assistive technology press at any time. Scrolling a control under the
/// pointer is the user's own doing and does not count.
///
/// Main thread only; belongs to its control and goes with it.
class PressGuard : public QObject {
  public:
    /// Where the pointer is on the desktop, and how much time has passed since some moment.
    struct Surroundings {
        std::function<QPoint()> pointer;
        std::function<std::chrono::milliseconds()> now;
    };

    static PressGuard* install(QWidget& control);

    /// Has all guards look at `surroundings`, for tests; without functions at the real ones again.
    static void setSurroundings(Surroundings surroundings);

  protected:
    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    explicit PressGuard(QWidget& control);
    void watchAncestors();
    /// Compares the control's place with the last one.
    void follow();
    [[nodiscard]] QRect place() const;
    [[nodiscard]] bool isTooSoon() const;

    QWidget& control_;
    QRect place_; // on the desktop; empty while it is not shown
    std::optional<std::chrono::milliseconds> arrival_;
};

} // namespace corvane

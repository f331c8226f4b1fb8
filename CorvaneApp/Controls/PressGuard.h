#pragma once

#include <QObject>
#include <QPoint>
#include <QRect>

#include <chrono>
#include <functional>
#include <optional>

class QWidget;

namespace corvane {

/// Makes a control ignore pointer presses for the desktop's double-click interval after it has appeared or
/// moved under the pointer. So the second press of a double-click does not hit what the first one has put
/// there, and a press meant for another window does not land in one that has just opened. For the same reason
/// a button that changes its meaning is replaced by another control ("Connect", "Remove") instead of getting
/// another text. Presses from the keyboard and assistive technology always work. Scrolling a control under
/// the pointer is the user's own action and does not count.
///
/// Main thread only; owned by its control.
class PressGuard : public QObject {
  public:
    /// The pointer's position on the desktop, and a monotonic clock.
    struct Surroundings {
        std::function<QPoint()> pointer;
        std::function<std::chrono::milliseconds()> now;
    };

    static PressGuard* install(QWidget& control);

    /// Makes all guards use `surroundings`, for tests; empty functions restore the real ones.
    static void setSurroundings(Surroundings surroundings);

  protected:
    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    explicit PressGuard(QWidget& control);
    void watchAncestors();
    /// Compares the control's place with its previous one.
    void follow();
    [[nodiscard]] QRect place() const;
    [[nodiscard]] bool isTooSoon() const;

    QWidget& control_;
    QRect place_; // on the desktop; empty while hidden
    std::optional<std::chrono::milliseconds> arrival_;
};

} // namespace corvane

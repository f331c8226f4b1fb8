#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <vector>

class QWidget;

namespace corvane {

/// Keeps panels above everything else although a window manager, which does not manage them, raises other
/// windows over them: raises them again when the active window changes and, under a window manager that does
/// not report the active window, once a second while a panel is shown. Elsewhere it does not raise them every
/// second. Windows of a screen locker stay above them. Main thread only.
class StackingGuard : public QObject {
    Q_OBJECT

  public:
    StackingGuard();

    /// Stacks a window that is about to be mapped below a screen locker, even for the first frame.
    static void prepare(const QWidget& window);
    /// Keeps a shown window in front of all others until it is released, starting at the event loop's next
    /// iteration.
    void raise(QWidget& window);
    /// Lowers the window below those that are still kept in front. Call it before the window is destroyed.
    void release(QWidget& window);

    /// Keeps the windows below `others` (open windows, which may be managed) instead of in front of
    /// everything, until it is called with none.
    void keepBelow(const std::vector<QWidget*>& others);

    enum class Beat { asNeeded, always };
    /// Whether `secondPassed` is emitted under every window manager, or only where windows are raised again
    /// each second.
    void setBeat(Beat beat);

    /// The windows that are kept in front, the frontmost last.
    [[nodiscard]] const std::vector<QWidget*>& windows() const { return windows_; }
    /// Call it when one of them has moved.
    void noteMove() { Q_EMIT arrangementChanged(); }

  Q_SIGNALS:
    /// One of the windows was added, moved or removed.
    void arrangementChanged();
    /// Emitted once a second while a panel is shown, as set by `setBeat`.
    void secondPassed();

  private:
    void restore();
    void followWindowManager();
    /// Queues one `restore` for the event loop's next iteration.
    void restoreSoon();

    std::vector<QWidget*> windows_;
    std::vector<QPointer<QWidget>> above_;
    bool isRestoring_ = false;   // in the event loop's next iteration
    bool isActiveKnown_ = false; // whether the window manager reports the active window
    Beat beat_ = Beat::asNeeded;
    QTimer timer_;
};

} // namespace corvane

#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <vector>

class QWidget;

namespace corvane {

/// Keeps panels above everything else where a window manager, which does not know of them, raises its own
/// windows over them: puts them in front again when the active window changes and, under a window manager
/// that does not tell, once a second while a panel is shown. It does not fight for the place each second
/// elsewhere: a screen locker's window must stay on top. Main thread only.
class StackingGuard : public QObject {
    Q_OBJECT

  public:
    StackingGuard();

    /// Keeps a shown window in front of all others, from the event loop's next turn on, until it is released.
    void raise(QWidget& window);
    /// Puts the window behind those that are still kept in front. To be called before it is destroyed.
    void release(QWidget& window);

    /// Has the windows stay below `others`, which are open and unlike them may be managed, instead of in
    /// front, until this is called without any.
    void keepBelow(const std::vector<QWidget*>& others);

    /// The windows that are kept in front, the frontmost last.
    [[nodiscard]] const std::vector<QWidget*>& windows() const { return windows_; }
    /// To be called when one of them has moved.
    void noteMove() { Q_EMIT arrangementChanged(); }

  Q_SIGNALS:
    /// One of the windows has come, moved or gone.
    void arrangementChanged();
    /// A second has passed with a panel on the screen: a moment to look whether the desktop is still the
    /// same.
    void secondPassed();

  private:
    void restore();
    /// Has it run once in the event loop's next turn.
    void restoreSoon();

    std::vector<QWidget*> windows_;
    std::vector<QPointer<QWidget>> above_;
    bool isRestoring_ = false; // in the event loop's next turn
    QTimer timer_;
};

} // namespace corvane

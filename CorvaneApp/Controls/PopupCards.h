#pragma once

#include <QMargins>
#include <QObject>
#include <QRect>

class QComboBox;
class QMenu;
class QMouseEvent;
class QWidget;

namespace corvane {

class WindowShadow;

/// Where a menu's card of `size` belongs if Qt has put its window, which includes the room for the shadow, at
/// no pointer: in the window's corner, or at the edge of the screen or of its work area to which Qt has moved
/// the window back. All in desktop coordinates.
[[nodiscard]] QRect cardAtEdge(QSize size, const QRect& window, const QRect& screen, const QRect& workArea);

/// Has every menu and every picker's list of the application appear as a card like the tray panel: with round
/// corners, and with a shadow where the desktop blends windows. The style paints the card; this gives its
/// window the room, the shape and the place. Main thread only.
class PopupCards : public QObject {
    Q_OBJECT

  public:
    /// Works from now on for as long as it lives. `shadow` must outlive it.
    explicit PopupCards(WindowShadow& shadow);

    /// The card in the window's coordinates: all of it but the room for the shadow.
    [[nodiscard]] static QRect card(const QWidget& popup);

  protected:
    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    /// Makes room for the shadow. Whether the popup had another one before.
    bool makeRoom(QWidget& popup);
    void placeMenu(QMenu& menu);
    void placeList(QWidget& popup, QComboBox& picker);
    /// What lies below the card.
    void paintGround(QWidget& popup);
    void cut(QWidget& popup);
    /// Has what lies behind a menu blurred where the desktop can. A list's rows are opaque.
    void blur(QMenu& menu);
    /// A press on the shadow is one beside the menu. Whether it was one.
    bool pressBeside(QMenu& menu, const QMouseEvent& event);

    WindowShadow& shadow_;
};

} // namespace corvane

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

/// Where a menu's card of `size` belongs if Qt has placed its window, which includes the room for the shadow,
/// at no pointer: in the window's corner, or at the edge of the screen or work area to which Qt has moved the
/// window back. All in desktop coordinates.
[[nodiscard]] QRect cardAtEdge(QSize size, const QRect& window, const QRect& screen, const QRect& workArea);

/// Makes every menu and every picker's list of the application a card like the tray panel: with round
/// corners, and with a shadow where the desktop blends windows. The style paints the card; this sets its
/// window's margins, shape and position. Main thread only.
class PopupCards : public QObject {
    Q_OBJECT

  public:
    /// Takes effect at once, for as long as it exists. `shadow` must outlive it.
    explicit PopupCards(WindowShadow& shadow);

    /// The card in the window's coordinates: the window without the room for the shadow.
    [[nodiscard]] static QRect card(const QWidget& popup);

  protected:
    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    /// Makes room for the shadow; returns whether the popup's margins changed.
    bool makeRoom(QWidget& popup);
    void placeMenu(QMenu& menu);
    void placeList(QWidget& popup, QComboBox& picker);
    /// Paints what is below the card.
    void paintGround(QWidget& popup);
    void cut(QWidget& popup);
    /// Blurs what is behind a menu where the desktop can. A list's rows are opaque.
    void blur(QMenu& menu);
    /// Passes a press on the menu's shadow on as one outside of the menu; returns whether it was one.
    bool pressBeside(QMenu& menu, const QMouseEvent& event);

    WindowShadow& shadow_;
};

} // namespace corvane

#pragma once

#include "Platform/PanelHost.h"
#include "Style/Tokens.h"

#include <QElapsedTimer>
#include <QRect>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <memory>

namespace corvane {

class AppModel;
class Screens;
class TrayPanelView;
class WindowShadow;
struct PlatformServices;

/// The origin of a panel of `size` for an icon at `icon`: below or above it, or beside it on a vertical bar,
/// with a gap, and within `available`, the work area of the icon's screen. All in desktop coordinates.
[[nodiscard]] QPoint panelOrigin(QSize size, const QRect& icon, const QRect& available);

/// Where to expect an icon whose position is unknown, on a screen with this work area: at the tray's end of
/// the bar, in the upper corner if no bar is known. All in desktop coordinates.
[[nodiscard]] QRect expectedIcon(const QRect& screen, const QRect& available, Qt::LayoutDirection direction);

/// The window that drops down from the tray icon. It takes the keyboard focus and closes when it loses it, on
/// Escape, and when the icon is pressed again. Main thread only.
class TrayPanel : public QWidget {
    Q_OBJECT

  public:
    /// Creates the content, as a child of the panel, at the current text size.
    using MakeView = std::function<TrayPanelView*(QWidget* parent)>;

    /// `model` and what `services` refers to must outlive the panel.
    TrayPanel(AppModel& model, const PlatformServices& services, MakeView makeView);

    [[nodiscard]] TrayPanelView& view() const { return *view_; }
    /// Paints the background of a panel's card of this size at the painter's origin; translucent where the
    /// desktop blurs what is behind it.
    enum class Fill { opaque, overBlur };
    static void paintCard(QPainter& painter, QSize card, Look look, Fill fill = Fill::opaque);
    /// Where the card is on the desktop, without the margins for its shadow.
    [[nodiscard]] QRect cardGeometry() const;

    /// The same including those margins.
    [[nodiscard]] QRect windowGeometry() const { return cardGeometry().marginsAdded(margins_); }

    /// Rebuilds the content at the current text size.
    void rebuild();

    /// Opens at the icon, or where one is to be expected if `icon` is empty. The pointer is no help: on
    /// Wayland desktops only its last position above an X11 window is known.
    void open(QRect icon);

    /// Handles a press on the icon. The same press may have taken the focus and closed the panel already.
    void toggle(QRect icon);

  Q_SIGNALS:
    /// Emitted when the icon's menu is requested, at `place` on the desktop, by a press on the part of the
    /// icon that the panel's shadow covers.
    void menuRequested(QPoint place);

  protected:
    void showEvent(QShowEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    [[nodiscard]] QRect likelyIcon() const;
    void layOut();
    /// Cuts the window to the card's shape where nothing blends it, and limits the blur behind it to that
    /// shape.
    void cut();
    /// Follows a compositor that starts, exits or toggles an effect while the panel is open.
    void followDesktop();
    void followKeyboard();
    void closeForKeyboard();
    /// Closes because of something that may be a press on the icon, which is reported next.
    void closeForPress();

    AppModel& model_;
    MakeView makeView_;
    WindowShadow& shadow_;
    Screens& screens_;
    TrayPanelView* view_ = nullptr;
    std::unique_ptr<PanelHost> host_;
    QRect icon_;
    QPoint cardOrigin_;
    QMargins margins_;
    bool isBlended_ = false;
    bool isBlurredBehind_ = false;
    QTimer keyboardLoss_;
    bool hadKeyboard_ = false; // since it was opened
    QElapsedTimer closedByPress_;
};

} // namespace corvane

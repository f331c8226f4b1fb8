#include "Controls/PopupCards.h"

#include "Platform/WindowShadow.h"
#include "Style/CorvaneStyle.h"
#include "Style/TextScale.h"
#include "Style/Tokens.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QCursor>
#include <QLayout>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>

#include <algorithm>
#include <cstdlib>

namespace corvane {

namespace {

// How far the card of a picker's list extends beyond the picker, so that its text lies over the picker's own.
constexpr Scaled listOverhang{2};

/// The picker whose list `popup` holds; null if it is none.
QComboBox* pickerOf(const QWidget& popup) {
    return popup.inherits("QComboBoxPrivateContainer") ? qobject_cast<QComboBox*>(popup.parentWidget())
                                                       : nullptr;
}

const QScreen& screenAt(QPoint place, const QWidget& popup) {
    const QScreen* const screen = QGuiApplication::screenAt(place);
    return screen != nullptr ? *screen : *popup.screen();
}

/// `card` moved onto `screen`.
QRect keptOn(const QRect& screen, QRect card) {
    card.moveLeft(std::max(screen.left(), std::min(card.left(), screen.right() + 1 - card.width())));
    card.moveTop(std::max(screen.top(), std::min(card.top(), screen.bottom() + 1 - card.height())));
    return card;
}

// How far from the position requested for it Qt may place a menu, in pixels.
constexpr int reach = 3;

bool isNear(int first, int second) {
    return std::abs(first - second) <= reach;
}

/// Whether Qt has put the window of a menu at `pointer`, on whichever side of it there was room.
bool isAt(QPoint pointer, const QRect& window, const QRect& screen) {
    return window.adjusted(-reach, -reach, reach, reach).contains(pointer) &&
           (isNear(window.left(), pointer.x()) || isNear(window.right(), pointer.x()) ||
            isNear(window.right(), screen.right()) || isNear(window.left(), screen.left())) &&
           (isNear(window.top(), pointer.y()) || isNear(window.bottom(), pointer.y()) ||
            isNear(window.bottom(), screen.bottom()));
}

} // namespace

QRect cardAtEdge(QSize size, const QRect& window, const QRect& screen, const QRect& workArea) {
    QRect card(window.topLeft(), size);
    for (const QRect& area : {screen, workArea}) {
        if (isNear(window.right(), area.right())) card.moveRight(area.right());
        if (isNear(window.bottom(), area.bottom())) card.moveBottom(area.bottom());
    }
    return card;
}

PopupCards::PopupCards(WindowShadow& shadow)
    : shadow_(shadow) {
    // The animations would show a snapshot without the shadow, and nothing else in the application moves like
    // that.
    for (const Qt::UIEffect effect : {Qt::UI_AnimateMenu, Qt::UI_FadeMenu, Qt::UI_AnimateCombo})
        QApplication::setEffectEnabled(effect, false);
    qApp->installEventFilter(this);
}

QRect PopupCards::card(const QWidget& popup) {
    return popup.rect().marginsRemoved(popup.contentsMargins());
}

bool PopupCards::eventFilter(QObject* object, QEvent* event) {
    auto* const popup = qobject_cast<QWidget*>(object);
    if (popup == nullptr || !popup->isWindow()) return false;
    auto* const menu = qobject_cast<QMenu*>(popup);
    QComboBox* const picker = menu == nullptr ? pickerOf(*popup) : nullptr;
    if (menu == nullptr && picker == nullptr) return false;
    switch (event->type()) {
    case QEvent::Polish:
        makeRoom(*popup);
        if (menu != nullptr) {
            connect(menu, &QMenu::aboutToShow, this, [this, menu] {
                if (!makeRoom(*menu)) return;
                // A menu lays out its entries again when its font changes, but not when its margins do.
                QEvent change(QEvent::FontChange);
                QCoreApplication::sendEvent(menu, &change);
            });
        }
        break;
    case QEvent::Show:
        if (event->spontaneous()) break;
        if (menu != nullptr) {
            placeMenu(*menu);
        } else {
            makeRoom(*popup);
            placeList(*popup, *picker);
        }
        cut(*popup);
        if (menu != nullptr) blur(*menu);
        break;
    case QEvent::Resize:
        cut(*popup);
        if (menu != nullptr) blur(*menu);
        break;
    case QEvent::Paint:
        paintGround(*popup);
        break;
    case QEvent::MouseButtonPress:
        return menu != nullptr && pressBeside(*menu, *static_cast<QMouseEvent*>(event));
    default:
        break;
    }
    return false;
}

bool PopupCards::makeRoom(QWidget& popup) {
    const QMargins room = shadow_.margins();
    if (popup.contentsMargins() == room) return false;
    popup.setContentsMargins(room);
    return true;
}

void PopupCards::placeMenu(QMenu& menu) {
    const QMargins room = menu.contentsMargins();
    if (room.isNull()) return;
    // Qt has put the window where the card belongs.
    const QRect window = menu.geometry();
    QRect card = window.marginsRemoved(room);
    const auto* const bar = qobject_cast<QMenuBar*>(menu.parentWidget());
    QRect anchor(QCursor::pos(), QSize(1, 1));
    if (bar != nullptr) {
        const QRect item = bar->actionGeometry(menu.menuAction());
        anchor = QRect(bar->mapToGlobal(item.topLeft()), item.size());
    }
    const QScreen& present = screenAt(window.topLeft(), menu);
    const QRect screen = present.geometry();
    if (bar != nullptr || isAt(anchor.topLeft(), window, screen)) {
        card.moveLeft(menu.isRightToLeft() ? anchor.right() + 1 - card.width() : anchor.left());
        const bool isAbove = window.bottom() <= anchor.top() + reach;
        card.moveTop(isAbove ? anchor.top() - card.height()
                             : (bar != nullptr ? anchor.bottom() + 1 : anchor.top()));
    } else {
        // Opened by keyboard, or beside the bar that the pointer is on. The work area is Qt's own, since Qt
        // has placed the window by it.
        card = cardAtEdge(card.size(), window, screen, present.availableGeometry());
    }
    menu.move(keptOn(screen, card).marginsAdded(room).topLeft());
}

void PopupCards::placeList(QWidget& popup, QComboBox& picker) {
    const int padding = CorvaneStyle::menuPadding();
    popup.layout()->setContentsMargins(padding, 0, padding, 0); // Qt itself adds it above and below
    for (QWidget* const part : popup.findChildren<QWidget*>()) {
        part->setAutoFillBackground(false); // it lies on the card
        // All choices fit: no scroll arrows, which Qt may show before it knows the room.
        if (part->inherits("QComboBoxPrivateScroller")) part->setMaximumHeight(0);
    }
    QAbstractItemView& list = *picker.view();
    const Look look = Tokens::look(picker.palette());
    QPalette palette = Tokens::palette(look);
    palette.setColor(QPalette::Window, Tokens::surface.color(look)); // Qt fills each row with it
    list.setPalette(palette);
    const int row = list.sizeHintForRow(0);
    const int width = std::max(picker.width() + 2 * listOverhang, list.sizeHintForColumn(0) + 2 * padding);
    QRect card(0, 0, width, picker.count() * row + 2 * padding);
    const QPoint corner = picker.mapToGlobal(QPoint());
    card.moveLeft(picker.isRightToLeft() ? corner.x() + picker.width() + listOverhang - width
                                         : corner.x() - listOverhang);
    // The current choice lies over the picker.
    const int present = std::max(0, picker.currentIndex());
    card.moveTop(corner.y() + (picker.height() - row) / 2 - padding - present * row);
    popup.setGeometry(keptOn(screenAt(corner, popup).geometry(), card).marginsAdded(popup.contentsMargins()));
}

void PopupCards::paintGround(QWidget& popup) {
    const Look look = Tokens::look(popup.palette());
    QPainter painter(&popup);
    if (!shadow_.isBlended()) {
        // The card covers the pixels along the cut corners only in part: the rest of them would be black.
        painter.fillRect(popup.rect(), Tokens::divider(look));
        return;
    }
    if (look.isHighContrast()) return;
    const QRect card = PopupCards::card(popup);
    shadow_.paint(painter, popup, CorvaneStyle::popupOutline(QRect(QPoint(), card.size())), card.size());
}

void PopupCards::cut(QWidget& popup) {
    shadow_.cut(popup, CorvaneStyle::popupOutline(card(popup)));
}

void PopupCards::blur(QMenu& menu) {
    const bool isBlurred = shadow_.isBlurredBehind();
    menu.setProperty(CorvaneStyle::blurredBehindProperty, isBlurred);
    shadow_.setBlurBehind(menu, isBlurred ? CorvaneStyle::popupOutline(card(menu)) : QPainterPath());
}

bool PopupCards::pressBeside(QMenu& menu, const QMouseEvent& event) {
    if (!menu.rect().contains(event.pos()) || card(menu).contains(event.pos())) return false;
    QMouseEvent outside(event.type(), QPointF(-1, -1), event.globalPosition(), event.button(),
                        event.buttons(), event.modifiers());
    QCoreApplication::sendEvent(&menu, &outside);
    return true;
}

} // namespace corvane

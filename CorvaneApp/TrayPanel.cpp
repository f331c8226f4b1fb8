#include "TrayPanel.h"

#include "AppModel.h"
#include "Platform/CardWindow.h"
#include "Shapes.h"
#include "Tokens.h"
#include "Windows.h"

#include <QApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>

#include <algorithm>
#include <chrono>
#include <utility>

namespace corvane {

namespace {

constexpr qreal radius = 12;
constexpr int iconGap = 4;
constexpr int screenMargin = 4;
// Window managers take the focus away for a moment while they give it to a new window.
constexpr std::chrono::milliseconds focusPatience{150};
// Between the focus going away and the press that took it being told.
constexpr std::chrono::milliseconds samePress{300};

/// `value` kept so that `length` from it on lies within the range; at its start where it is too long.
int kept(int value, int length, int start, int end) {
    return std::max(start, std::min(value, end - length));
}

} // namespace

QPoint panelOrigin(QSize size, const QRect& icon, const QRect& available) {
    const QRect room = available.adjusted(screenMargin, screenMargin, -screenMargin, -screenMargin);
    const int right = room.x() + room.width();
    const int bottom = room.y() + room.height();
    const QPoint middle = icon.center();
    const bool isLeftBar = middle.x() < available.left() && middle.y() >= available.top();
    const bool isRightBar = middle.x() > available.right() && middle.y() >= available.top();
    QPoint origin;
    if (isLeftBar || isRightBar) {
        origin.setX(isLeftBar ? icon.x() + icon.width() + iconGap : icon.x() - iconGap - size.width());
        origin.setY(middle.y() - size.height() / 2);
    } else {
        origin.setX(middle.x() - size.width() / 2);
        const bool isAbove = middle.y() > available.center().y();
        origin.setY(isAbove ? icon.y() - iconGap - size.height() : icon.y() + icon.height() + iconGap);
    }
    return {kept(origin.x(), size.width(), room.x(), right),
            kept(origin.y(), size.height(), room.y(), bottom)};
}

TrayPanel::TrayPanel(AppModel& model, MenuBarView::Actions actions)
    : QWidget(nullptr,
              Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::NoDropShadowWindowHint)
    , model_(model)
    , view_(new MenuBarView(model, std::move(actions), this)) {
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(tr("Corvane"));
    setWindowRole(QStringLiteral("panel"));
    windows::tellRole<TrayPanel>();
    connect(view_, &MenuBarView::heightChanged, this, &TrayPanel::arrange);
    connect(view_, &MenuBarView::left, this, &QWidget::hide);
    keyboardLoss_.setSingleShot(true);
    keyboardLoss_.setInterval(focusPatience);
    connect(&keyboardLoss_, &QTimer::timeout, this, &TrayPanel::closeForKeyboard);
    host_ = PanelHost::make(*this);
    connect(host_.get(), &PanelHost::keyboardChanged, this, &TrayPanel::followKeyboard);
    connect(host_.get(), &PanelHost::pressedElsewhere, this, &TrayPanel::closeForPress);
}

void TrayPanel::open(QRect icon) {
    icon_ = icon.isEmpty() ? QRect(QCursor::pos(), QSize(1, 1)) : icon;
    // The agents write their own files.
    model_.refreshConnections();
    isBlended_ = cardwindow::isBlended();
    margins_ = cardwindow::margins();
    arrange();
    keyboardLoss_.stop();
    // No control has the keyboard's place at first; Tab and the arrows give it to one.
    view_->setFocus();
    host_->present();
    arrange();
}

void TrayPanel::toggle(QRect icon) {
    const bool wasClosedByThis = closedByPress_.isValid() && !closedByPress_.hasExpired(samePress.count());
    closedByPress_.invalidate();
    if (isVisible()) {
        hide();
    } else if (!wasClosedByThis) {
        open(icon);
    }
}

QRect TrayPanel::cardGeometry() const {
    return {cardOrigin_, view_->size()};
}

void TrayPanel::arrange() {
    if (icon_.isEmpty()) return;
    const QScreen* screen = QGuiApplication::screenAt(icon_.center());
    if (screen == nullptr) screen = QGuiApplication::primaryScreen();
    if (screen == nullptr) return;
    const QSize card = view_->sizeHint();
    cardOrigin_ = panelOrigin(card, icon_, screen->availableGeometry());
    view_->setGeometry(QRect(QPoint(margins_.left(), margins_.top()), card));
    setFixedSize(card.grownBy(margins_));
    const QPoint cardPlace(margins_.left(), margins_.top());
    host_->setGeometry(QRect(cardOrigin_ - cardPlace, size()), outline().translated(cardPlace));
}

QPainterPath TrayPanel::outline() const {
    const QRectF card(QPointF(), QSizeF(view_->size()));
    if (isBlended_) return shapes::continuousRoundedRect(card, radius);
    QPainterPath square;
    square.addRect(card);
    return square;
}

void TrayPanel::paintEvent(QPaintEvent* /*event*/) {
    const ColorScheme scheme = Tokens::scheme(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (isBlended_) cardwindow::paintShadow(painter, *this, outline(), view_->size());
    painter.translate(view_->pos());
    painter.fillPath(outline(), Tokens::surface.color(scheme));
    QPen pen(Tokens::hairline(scheme), 1);
    const QRectF card(QPointF(), QSizeF(view_->size()));
    pen.setJoinStyle(Qt::MiterJoin);
    if (isBlended_) {
        painter.strokePath(shapes::insideStroke(card, radius, 1), pen);
    } else {
        painter.setPen(pen);
        painter.drawRect(card.adjusted(0.5, 0.5, -0.5, -0.5));
    }
}

// A click beside the card, on its shadow, is one outside of the panel, even where the icon lies below. It
// cannot be let through: window managers that put a frame around every window keep it for themselves.
void TrayPanel::mousePressEvent(QMouseEvent* event) {
    if (!view_->geometry().contains(event->pos())) hide();
}

void TrayPanel::followKeyboard() {
    if (host_->hasKeyboard()) {
        keyboardLoss_.stop();
    } else if (isVisible()) {
        keyboardLoss_.start();
    }
}

void TrayPanel::closeForKeyboard() {
    if (!host_->hasKeyboard()) closeForPress();
}

void TrayPanel::closeForPress() {
    if (!isVisible()) return;
    closedByPress_.start();
    hide();
}

void TrayPanel::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        hide();
    } else {
        QWidget::keyPressEvent(event);
    }
}

} // namespace corvane

#include "MenuBar/TrayPanel.h"

#include "Controls/WindowRole.h"
#include "MenuBar/TrayPanelView.h"
#include "Model/AppModel.h"
#include "Platform/Platform.h"
#include "Platform/Screens.h"
#include "Platform/WindowShadow.h"
#include "Style/Shapes.h"
#include "Style/TextScale.h"
#include "Style/Tokens.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>

#include <algorithm>
#include <chrono>
#include <optional>
#include <utility>

namespace corvane {

namespace {

constexpr Scaled radius{12.0};
constexpr int iconGap = 4;
constexpr int screenMargin = 4;
// Window managers take the focus away for a moment while they give it to a new window.
constexpr std::chrono::milliseconds focusPatience{150};
// A menu that has opened the panel first returns the focus to the menu's own window, and a busy desktop is
// slow.
constexpr std::chrono::milliseconds firstFocusPatience{1000};
// The longest time between losing the focus and the event of the press that took it. The press itself may
// take the focus, as one on the menu bar's item does since macOS 27: without this the panel would close and
// open again.
constexpr std::chrono::milliseconds samePress{300};

/// `value` clamped so that a span of `length` from it is within the range; the range's start if that is too
/// long.
int kept(int value, int length, int start, int end) {
    return std::max(start, std::min(value, end - length));
}

QPainterPath outline(QSize size) {
    return shapes::continuousRoundedRect(QRectF(QPointF(0, 0), QSizeF(size)), radius);
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
        const int below = icon.y() + icon.height() + iconGap;
        // A menu in the lower half of the screen may have space below it; a bar at the edge has none.
        const bool isAbove = middle.y() > available.center().y() && below + size.height() > bottom;
        origin.setY(isAbove ? icon.y() - iconGap - size.height() : below);
    }
    return {kept(origin.x(), size.width(), room.x(), right),
            kept(origin.y(), size.height(), room.y(), bottom)};
}

QRect expectedIcon(const QRect& screen, const QRect& available, Qt::LayoutDirection direction) {
    const int below = screen.bottom() - available.bottom();
    const int left = available.left() - screen.left();
    const int right = screen.right() - available.right();
    const int above = available.top() - screen.top();
    const int widest = std::max({below, left, right, above});
    const QSize point(1, 1);
    if (widest == above)
        return {QPoint(direction == Qt::RightToLeft ? screen.left() : screen.right(), screen.top()), point};
    if (widest == below) {
        return {QPoint(direction == Qt::RightToLeft ? screen.left() : screen.right(), screen.bottom()),
                point};
    }
    return {QPoint(widest == left ? screen.left() : screen.right(), available.bottom()), point};
}

TrayPanel::TrayPanel(AppModel& model, const PlatformServices& services, MakeView makeView)
    : QWidget(nullptr,
              Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::NoDropShadowWindowHint)
    , model_(model)
    , makeView_(std::move(makeView))
    , shadow_(services.windowShadow)
    , screens_(services.screens)
    , host_(services.panelHosts.make(*this)) {
    installWindowRole<TrayPanel>();
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(tr("Corvane"));
    setWindowRole(QStringLiteral("panel"));
    rebuild();
    keyboardLoss_.setSingleShot(true);
    connect(&keyboardLoss_, &QTimer::timeout, this, &TrayPanel::closeForKeyboard);
    connect(&model_, &AppModel::changed, this, &TrayPanel::followDesktop);
    connect(host_.get(), &PanelHost::keyboardChanged, this, &TrayPanel::followKeyboard);
    connect(host_.get(), &PanelHost::pressedElsewhere, this, &TrayPanel::closeForPress);
}

void TrayPanel::rebuild() {
    if (view_ != nullptr) {
        // Its button may be the one being pressed.
        view_->hide();
        view_->deleteLater();
    }
    view_ = makeView_(this);
    connect(view_, &TrayPanelView::heightChanged, this, &TrayPanel::layOut);
    connect(view_, &TrayPanelView::left, this, &QWidget::hide);
    view_->show();
    // So that the arrow keys still work.
    if (isVisible()) view_->setFocus();
    layOut();
}

void TrayPanel::open(QRect icon) {
    icon_ = icon.isEmpty() ? likelyIcon() : icon;
    // Agents and users change the configuration files, too.
    model_.refreshConnections();
    isBlended_ = shadow_.isBlended();
    isBlurredBehind_ = shadow_.isBlurredBehind();
    margins_ = shadow_.margins();
    layOut();
    keyboardLoss_.stop();
    hadKeyboard_ = false;
    // No control has the focus at first; Tab and the arrow keys move it to one.
    view_->setFocus();
    view_->prepareToOpen();
    host_->present();
    layOut();
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

QRect TrayPanel::likelyIcon() const {
    const std::optional<QRect> available = screens_.mainVisibleFrame();
    if (!available) return {};
    const QScreen* screen = QGuiApplication::screenAt(available->center());
    if (screen == nullptr) screen = QGuiApplication::primaryScreen();
    return screen != nullptr ? expectedIcon(screen->geometry(), *available, layoutDirection()) : QRect();
}

void TrayPanel::layOut() {
    if (icon_.isEmpty()) return;
    const std::optional<QRect> available = screens_.visibleFrameAt(icon_.center());
    if (!available) return;
    const QSize card = view_->sizeHint();
    cardOrigin_ = panelOrigin(card, icon_, *available);
    view_->setGeometry(QRect(QPoint(margins_.left(), margins_.top()), card));
    setContentsMargins(margins_);
    setFixedSize(card.grownBy(margins_));
    const QPoint cardPlace(margins_.left(), margins_.top());
    host_->setGeometry(QRect(cardOrigin_ - cardPlace, size()), outline(card).translated(cardPlace));
    if (isVisible()) cut();
}

void TrayPanel::cut() {
    const QPainterPath card = outline(view_->size()).translated(view_->pos());
    shadow_.cut(*this, card);
    shadow_.setBlurBehind(*this, isBlurredBehind_ ? card : QPainterPath());
}

void TrayPanel::followDesktop() {
    const bool isBlended = shadow_.isBlended();
    const bool isBlurredBehind = shadow_.isBlurredBehind();
    if (!isVisible() || (isBlended == isBlended_ && isBlurredBehind == isBlurredBehind_)) return;
    isBlended_ = isBlended;
    isBlurredBehind_ = isBlurredBehind;
    margins_ = shadow_.margins();
    layOut();
    update();
}

void TrayPanel::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    cut();
}

void TrayPanel::paintCard(QPainter& painter, QSize card, Look look, Fill fill) {
    constexpr qreal edge = 1;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(outline(card), Tokens::cardFill(look, fill == Fill::overBlur));
    painter.strokePath(shapes::insideStroke(QRectF(QPointF(0, 0), QSizeF(card)), radius, edge),
                       QPen(Tokens::hairline(look), edge));
}

void TrayPanel::paintEvent(QPaintEvent* /*event*/) {
    const Look look = Tokens::look(palette());
    const QSize card = view_->size();
    QPainter painter(this);
    // The card covers the pixels along the cut corners only in part: the rest of them would be black.
    if (!isBlended_) painter.fillRect(rect(), Tokens::divider(look));
    if (isBlended_ && !look.isHighContrast()) shadow_.paint(painter, *this, outline(card), card);
    painter.translate(view_->pos());
    paintCard(painter, card, look, isBlurredBehind_ ? Fill::overBlur : Fill::opaque);
}

// A click on the card's shadow counts as one outside of the panel; if the icon is below, as one on the icon.
// It cannot be passed through: reparenting window managers would take it themselves.
void TrayPanel::mousePressEvent(QMouseEvent* event) {
    if (view_->geometry().contains(event->pos())) return;
    hide();
    const QPoint place = event->globalPosition().toPoint();
    if (event->button() == Qt::RightButton && icon_.contains(place)) Q_EMIT menuRequested(place);
}

void TrayPanel::followKeyboard() {
    if (host_->hasKeyboard()) {
        hadKeyboard_ = true;
        keyboardLoss_.stop();
    } else if (isVisible()) {
        keyboardLoss_.start(hadKeyboard_ ? focusPatience : firstFocusPatience);
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

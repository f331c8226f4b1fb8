#include "MenuBar/SessionList.h"

#include "Style/TextScale.h"
#include "Style/Tokens.h"

#include <QKeyEvent>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <utility>

namespace corvane {

namespace {

constexpr Scaled thumbWidth{6};
constexpr Scaled thumbMargin{3};
constexpr Scaled thumbRadius{3};
constexpr Scaled shortestThumb{32};
constexpr Scaled fadeHeight{16};
// How long the thumb stays visible after the list was opened or has scrolled.
constexpr std::chrono::milliseconds thumbTime{1000};

/// Fades the first or the last lines of the list into its background.
class Fade : public QWidget {
  public:
    Fade(Qt::Edge edge, QWidget* parent)
        : QWidget(parent)
        , edge_(edge) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

  protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        const QColor surface = Tokens::surface.color(Tokens::look(palette()));
        QColor clear = surface;
        clear.setAlpha(0);
        QLinearGradient gradient(0, 0, 0, height());
        gradient.setColorAt(0, edge_ == Qt::TopEdge ? surface : clear);
        gradient.setColorAt(1, edge_ == Qt::TopEdge ? clear : surface);
        QPainter(this).fillRect(rect(), gradient);
    }

  private:
    Qt::Edge edge_;
};

/// Shows the list's scroll position, and scrolls it when dragged.
class Thumb : public QWidget {
  public:
    Thumb(QScrollBar& bar, QWidget* parent)
        : QWidget(parent)
        , bar_(bar) {
        setAttribute(Qt::WA_Hover);
    }

    /// Positions itself at the trailing edge of `list`.
    void follow(QRect list, Qt::LayoutDirection direction) {
        track_ = list.adjusted(0, thumbMargin, 0, -thumbMargin);
        const int content = bar_.maximum() + bar_.pageStep();
        const int length = std::clamp<int>(track_.height() * bar_.pageStep() / std::max(1, content),
                                           shortestThumb, track_.height());
        const int room = track_.height() - length;
        const int top = track_.top() + (bar_.maximum() > 0 ? room * bar_.value() / bar_.maximum() : 0);
        const int x = direction == Qt::RightToLeft ? list.left() + thumbMargin
                                                   : list.right() + 1 - thumbMargin - thumbWidth;
        setGeometry(x, top, thumbWidth, length);
    }

  protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        const Look look = Tokens::look(palette());
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(underMouse() || isDragged_ ? Tokens::scrollThumbHovered(look)
                                                    : Tokens::scrollThumb(look));
        painter.drawRoundedRect(rect(), thumbRadius, thumbRadius);
    }

    void mousePressEvent(QMouseEvent* event) override {
        isDragged_ = true;
        grip_ = event->pos().y();
        update();
    }

    void mouseMoveEvent(QMouseEvent* event) override {
        const int room = track_.height() - height();
        if (!isDragged_ || room <= 0) return;
        const int top = mapToParent(event->pos()).y() - grip_ - track_.top();
        bar_.setValue(qRound(static_cast<double>(top) * bar_.maximum() / room));
    }

    void mouseReleaseEvent(QMouseEvent* /*event*/) override {
        isDragged_ = false;
        update();
    }

  private:
    QScrollBar& bar_;
    QRect track_;
    bool isDragged_ = false;
    int grip_ = 0;
};

} // namespace

SessionList::SessionList(std::function<void(const AgentSession&)> onTap, QWidget* parent)
    : QScrollArea(parent)
    , onTap_(std::move(onTap))
    , upperFade_(new Fade(Qt::TopEdge, this))
    , lowerFade_(new Fade(Qt::BottomEdge, this))
    , thumb_(new Thumb(*verticalScrollBar(), this))
    , thumbTimer_(new QTimer(this)) {
    setFrameShape(NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(false);
    auto* const content = new QWidget;
    setWidget(content);
    content->setAutoFillBackground(false);
    thumbTimer_->setSingleShot(true);
    connect(thumbTimer_, &QTimer::timeout, this, &SessionList::updateOverlays);
    verticalScrollBar()->setSingleStep(scaled(SessionRow::rowHeight) / 2);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this] {
        thumbTimer_->start(thumbTime);
        updateOverlays();
    });
    connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, &SessionList::updateOverlays);
    updateOverlays();
}

bool SessionList::setSessions(const std::vector<AgentSession>& sessions, Date now) {
    std::vector<SessionRow*> old = std::exchange(rows_, {});
    const std::vector<SessionRow*> before = old;
    const auto focused =
        std::find_if(old.begin(), old.end(), [](SessionRow* row) { return row->hasFocus(); });
    const auto focusedPlace = static_cast<std::size_t>(focused - old.begin());
    const bool hadFocus = focused != old.end();

    for (const AgentSession& session : sessions) {
        const auto known = std::find_if(old.begin(), old.end(), [&session](const SessionRow* row) {
            return row != nullptr && row->session().agent == session.agent &&
                   row->session().sessionID == session.sessionID;
        });
        if (known != old.end()) {
            (*known)->setSession(session, now);
            rows_.push_back(std::exchange(*known, nullptr));
        } else {
            auto* const row = new SessionRow(session, now, onTap_, widget());
            row->installEventFilter(this);
            rows_.push_back(row);
        }
    }
    if (rows_ == before) return false;

    layOut();
    for (SessionRow* const row : rows_)
        row->show();
    if (hadFocus && old[focusedPlace] != nullptr) {
        // Move the focus before its row is removed, or it would go to the next widget in the tab order.
        if (rows_.empty()) {
            parentWidget()->setFocus();
        } else {
            rows_[std::min(focusedPlace, rows_.size() - 1)]->setFocus(Qt::TabFocusReason);
        }
    }
    for (SessionRow* const row : old) {
        if (row == nullptr) continue;
        row->hide();
        row->deleteLater(); // it may be the one being pressed
    }
    return true;
}

void SessionList::showFromTop() {
    verticalScrollBar()->setValue(0);
    thumbTimer_->start(thumbTime);
    updateOverlays();
}

int SessionList::wantedHeight() const {
    int height = 0;
    for (const SessionRow* const row : rows_)
        height += row->sizeHint().height();
    return std::min(height, scaled(largestHeight));
}

bool SessionList::moveFocus(int step) {
    if (rows_.empty()) return false;
    const auto focused =
        std::find_if(rows_.begin(), rows_.end(), [](SessionRow* row) { return row->hasFocus(); });
    SessionRow* target = step > 0 ? rows_.front() : rows_.back();
    if (focused != rows_.end()) {
        const auto place = (focused - rows_.begin()) + step;
        if (place < 0 || place >= static_cast<std::ptrdiff_t>(rows_.size())) return false;
        target = rows_[static_cast<std::size_t>(place)];
    }
    target->setFocus(step > 0 ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

bool SessionList::eventFilter(QObject* object, QEvent* event) {
    // Scrolls a row into view however it got the focus.
    if (event->type() == QEvent::FocusIn) ensureWidgetVisible(static_cast<QWidget*>(object), 0, 0);
    if (event->type() == QEvent::KeyPress) {
        // A button would move the focus out of the list.
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Up || key == Qt::Key_Down) {
            moveFocus(key == Qt::Key_Down ? 1 : -1);
            return true;
        }
    }
    return QScrollArea::eventFilter(object, event);
}

void SessionList::layOut() {
    int y = 0;
    for (SessionRow* const row : rows_) {
        const int height = row->sizeHint().height();
        row->setGeometry(0, y, viewport()->width(), height);
        y += height;
    }
    widget()->resize(viewport()->width(), y);
    updateOverlays();
}

void SessionList::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    layOut();
}

void SessionList::changeEvent(QEvent* event) {
    QScrollArea::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) updateOverlays();
}

void SessionList::enterEvent(QEnterEvent* /*event*/) {
    updateOverlays();
}

void SessionList::leaveEvent(QEvent* /*event*/) {
    updateOverlays();
}

void SessionList::updateOverlays() {
    const QScrollBar& bar = *verticalScrollBar();
    // Does not cover the card's edge.
    constexpr int edge = 1;
    const bool fades = !Tokens::look(palette()).isHighContrast();
    upperFade_->setGeometry(edge, 0, width() - 2 * edge, fadeHeight);
    upperFade_->setVisible(fades && bar.value() > bar.minimum());
    lowerFade_->setGeometry(edge, height() - fadeHeight, width() - 2 * edge, fadeHeight);
    lowerFade_->setVisible(fades && bar.value() < bar.maximum());
    for (QWidget* const fade : {upperFade_, lowerFade_})
        fade->raise();
    static_cast<Thumb*>(thumb_)->follow(rect(), layoutDirection());
    thumb_->setVisible(bar.maximum() > 0 && (underMouse() || thumbTimer_->isActive()));
    thumb_->raise();
}

} // namespace corvane

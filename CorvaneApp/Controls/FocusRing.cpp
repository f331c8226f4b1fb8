#include "Controls/FocusRing.h"

#include "Style/Shapes.h"
#include "Style/TextScale.h"
#include "Style/Tokens.h"

#include <QApplication>
#include <QFocusEvent>
#include <QFocusFrame>
#include <QKeyEvent>
#include <QPainter>

namespace corvane {

namespace {

bool isFromKeyboard(Qt::FocusReason reason) {
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
           reason == Qt::ShortcutFocusReason;
}

// Whether the focus returns to where it was, from another window or from the control's own popup.
bool isReturn(Qt::FocusReason reason) {
    return reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason ||
           reason == Qt::MenuBarFocusReason;
}

// False for a modifier alone, and for the window's keys: Escape and shortcuts.
bool isForTheControl(const QKeyEvent& event) {
    switch (event.key()) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
    case Qt::Key_Escape:
        return false;
    default:
        return (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) == 0;
    }
}

// A QFocusFrame, since that is outside of the accessible tree and takes no clicks; FocusRing sets its
// geometry.
class Frame : public QFocusFrame {
  public:
    Frame(QWidget* parent, qreal radius, FocusRing::Shape shape)
        : QFocusFrame(parent)
        , radius_(radius)
        , shape_(shape) {}

  protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QPen pen(Tokens::primary.color(Tokens::look(palette())), FocusRing::width);
        if (shape_ == FocusRing::Shape::continuousCorners) {
            painter.strokePath(shapes::insideStroke(rect(), radius_, FocusRing::width), pen);
            return;
        }
        constexpr qreal inset = FocusRing::width / 2.0;
        const QRectF line = QRectF(rect()).adjusted(inset, inset, -inset, -inset);
        painter.setPen(pen);
        painter.drawRoundedRect(line, line.height() / 2, line.height() / 2);
    }

  private:
    qreal radius_;
    FocusRing::Shape shape_;
};

} // namespace

int FocusRing::distance() {
    constexpr int gap = 2;
    return scaled(gap) + width;
}

FocusRing* FocusRing::install(QWidget& control, QMargins outset, qreal radius, Shape shape) {
    return new FocusRing(control, outset, radius, shape);
}

FocusRing::FocusRing(QWidget& control, QMargins outset, qreal radius, Shape shape)
    : QObject(&control)
    , control_(control)
    , outset_(outset)
    , radius_(radius)
    , shape_(shape) {
    control.installEventFilter(this);
}

FocusRing::~FocusRing() {
    delete frame_;
}

bool FocusRing::isShown() const {
    return frame_ && frame_->isVisibleTo(control_.parentWidget());
}

bool FocusRing::eventFilter(QObject* object, QEvent* event) {
    if (object != &control_) {
        if (event->type() == QEvent::MouseButtonPress) hide();
        return false;
    }
    switch (event->type()) {
    case QEvent::FocusIn: {
        const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
        if (isFromKeyboard(reason)) {
            show();
        } else if (!isReturn(reason)) {
            hide();
        }
        break;
    }
    case QEvent::FocusOut:
        if (!isReturn(static_cast<QFocusEvent*>(event)->reason())) hide();
        break;
    case QEvent::KeyPress:
        if (control_.hasFocus() && isForTheControl(*static_cast<QKeyEvent*>(event))) show();
        break;
    case QEvent::MouseButtonPress:
    case QEvent::Hide:
        hide();
        break;
    case QEvent::ParentAboutToChange:
        delete frame_;
        break;
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::ZOrderChange:
        follow();
        break;
    default:
        break;
    }
    return false;
}

void FocusRing::show() {
    if (control_.parentWidget() == nullptr) return;
    if (!frame_) frame_ = new Frame(control_.parentWidget(), radius_, shape_);
    follow();
    frame_->show();
    // While the ring is visible, a press anywhere hides it.
    qApp->installEventFilter(this);
}

void FocusRing::hide() {
    if (frame_) frame_->hide();
    qApp->removeEventFilter(this);
}

void FocusRing::follow() {
    if (!frame_) return;
    // In right-to-left layouts the leading margin is the right one.
    QMargins outset = outset_;
    if (control_.isRightToLeft()) outset = {outset.right(), outset.top(), outset.left(), outset.bottom()};
    frame_->setGeometry(control_.geometry().marginsAdded(outset));
    frame_->raise();
}

} // namespace corvane

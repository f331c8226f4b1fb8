#include "Controls/PressGuard.h"

#include <QAbstractScrollArea>
#include <QCursor>
#include <QEvent>
#include <QGuiApplication>
#include <QStyleHints>
#include <QWidget>

#include <utility>

namespace corvane {

namespace {

PressGuard::Surroundings& surroundings() {
    static PressGuard::Surroundings present;
    return present;
}

QPoint pointer() {
    return surroundings().pointer ? surroundings().pointer() : QCursor::pos();
}

std::chrono::milliseconds now() {
    if (surroundings().now) return surroundings().now();
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
}

/// Whether `widget` is the content of a scroll area.
bool isScrolled(const QWidget& widget) {
    const QWidget* const viewport = widget.parentWidget();
    if (viewport == nullptr) return false;
    const auto* const area = qobject_cast<QAbstractScrollArea*>(viewport->parentWidget());
    return area != nullptr && area->viewport() == viewport;
}

} // namespace

PressGuard* PressGuard::install(QWidget& control) {
    return new PressGuard(control);
}

PressGuard::PressGuard(QWidget& control)
    : QObject(&control)
    , control_(control) {
    control_.installEventFilter(this);
}

void PressGuard::setSurroundings(Surroundings newSurroundings) {
    surroundings() = std::move(newSurroundings);
}

QRect PressGuard::place() const {
    return control_.isVisible() ? QRect(control_.mapToGlobal(QPoint()), control_.size()) : QRect();
}

void PressGuard::watchAncestors() {
    for (QWidget* ancestor = control_.parentWidget(); ancestor != nullptr;
         ancestor = ancestor->parentWidget()) {
        ancestor->installEventFilter(this);
        if (ancestor->isWindow()) return;
    }
}

void PressGuard::follow() {
    const QRect former = std::exchange(place_, place());
    if (place_ == former || place_.isEmpty()) return;
    const QPoint position = pointer();
    if (place_.contains(position) && !former.contains(position)) arrival_ = now();
}

bool PressGuard::isTooSoon() const {
    const std::chrono::milliseconds interval(QGuiApplication::styleHints()->mouseDoubleClickInterval());
    return arrival_ && now() - *arrival_ < interval;
}

bool PressGuard::eventFilter(QObject* object, QEvent* event) {
    switch (event->type()) {
    case QEvent::Show:
        if (object != &control_) break;
        watchAncestors();
        follow();
        break;
    case QEvent::Move:
        if (isScrolled(*static_cast<QWidget*>(object))) {
            place_ = place();
        } else {
            follow();
        }
        break;
    case QEvent::Resize:
        if (object == &control_) follow();
        break;
    case QEvent::Hide:
        if (object == &control_) place_ = QRect();
        break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        if (object == &control_ && isTooSoon()) {
            // Accepted, so that no widget below gets it either.
            event->accept();
            return true;
        }
        break;
    default:
        break;
    }
    return QObject::eventFilter(object, event);
}

} // namespace corvane

#include "Controls/PopupWatch.h"

#include <QCoreApplication>
#include <QEvent>
#include <QWidget>

#include <algorithm>
#include <utility>

namespace corvane {

PopupWatch::PopupWatch() {
    QCoreApplication::instance()->installEventFilter(this);
}

void PopupWatch::add(QWidget& window, std::function<QRect()> place) {
    added_.push_back({&window, std::move(place)});
    connect(&window, &QObject::destroyed, this, [this](const QObject* gone) {
        std::erase_if(added_, [gone](const Added& added) { return added.window == gone; });
    });
}

const PopupWatch::Added* PopupWatch::added(const QWidget& window) const {
    const auto found = std::find_if(added_.begin(), added_.end(),
                                    [&window](const Added& added) { return added.window == &window; });
    return found != added_.end() ? &*found : nullptr;
}

std::vector<OpenPopup> PopupWatch::open() const {
    std::vector<OpenPopup> result;
    for (QWidget* const window : open_) {
        const Added* const added = this->added(*window);
        result.push_back({window, added != nullptr ? added->place() : window->geometry()});
    }
    return result;
}

bool PopupWatch::eventFilter(QObject* object, QEvent* event) {
    const QEvent::Type type = event->type();
    const bool isPlace = type == QEvent::Move || type == QEvent::Resize;
    // Minimising and restoring a window cause spontaneous events.
    const bool isVisibility = (type == QEvent::Show || type == QEvent::Hide) && !event->spontaneous();
    if ((!isPlace && !isVisibility) || !object->isWidgetType()) return false;
    auto* const window = static_cast<QWidget*>(object);
    if (!window->isWindow() || (window->windowType() != Qt::Popup && added(*window) == nullptr)) return false;

    const bool wasOpen = std::erase(open_, window) > 0;
    const bool isOpen = type == QEvent::Show || (wasOpen && type != QEvent::Hide);
    if (isOpen) open_.push_back(window);
    if (isOpen || wasOpen) Q_EMIT changed();
    return false;
}

} // namespace corvane

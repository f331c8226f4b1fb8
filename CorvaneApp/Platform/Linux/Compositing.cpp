#include "Platform/Linux/Compositing.h"

#include "Platform/Linux/X11.h"
#include "Platform/Linux/XEvents.h"

#include <QCoreApplication>
#include <QPointer>

#include <utility>

namespace corvane {

Compositing& Compositing::instance() {
    static QPointer<Compositing> compositing;
    if (!compositing) compositing = new Compositing(QCoreApplication::instance());
    return *compositing;
}

Compositing::Compositing(QObject* parent)
    : QObject(parent) {
    XEvents& events = XEvents::instance();
    const xcb_atom_t selection = x11::atom(x11::compositingSelection());
    // Every X server of this century has the extension that this needs. Without it, a change is noticed only
    // together with another one.
    events.watchSelection(selection);
    // Queued: a new manager announces its effects on the root window a moment after it has acquired the
    // selection.
    connect(
        &events, &XEvents::selectionOwnerChanged, this,
        [this, selection](xcb_atom_t changed) {
            if (changed == selection) follow();
        },
        Qt::QueuedConnection);
    connect(
        &events, &XEvents::propertyChanged, this,
        [this, blur = x11::atom(x11::blurRegionName)](xcb_atom_t name) {
            if (name == blur) follow();
        },
        Qt::QueuedConnection);
    follow();
}

void Compositing::follow() {
    const xcb_window_t manager = x11::compositingManager();
    const bool isBlended = x11::isComposited();
    const bool isBlurredBehind = x11::blursBehind();
    const bool isManagerNew = std::exchange(manager_, manager) != manager;
    const bool isBlendingNew = std::exchange(isBlended_, isBlended) != isBlended;
    const bool isBlurNew = std::exchange(isBlurredBehind_, isBlurredBehind) != isBlurredBehind;
    if (isManagerNew || isBlendingNew || isBlurNew) Q_EMIT changed();
}

} // namespace corvane

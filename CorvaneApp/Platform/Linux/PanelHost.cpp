#include "Platform/Linux/PanelHost.h"

#include "Platform/Linux/SwayIpc.h"
#include "Platform/Linux/X11.h"

#include <QEvent>
#include <QWidget>

#include <chrono>

namespace corvane {

namespace {

// Sway learns of a window, and of its size, some time after the X server, and centres it then.
constexpr std::chrono::milliseconds requestGap{40};
constexpr int requestCount = 6;

} // namespace

LinuxPanelHost::LinuxPanelHost(QWidget& window, Activation& activation, PanelDamage& damage,
                               std::optional<QString> sway)
    : PlainPanelHost(window, activation)
    , window_(window)
    , damage_(damage)
    , sway_(std::move(sway)) {
    damage_.add(window_);
    second_.setInterval(std::chrono::seconds(1));
    connect(&second_, &QTimer::timeout, this, [this] { damage_.reportAll(); });
    again_.setSingleShot(true);
    again_.setInterval(requestGap);
    connect(&again_, &QTimer::timeout, this, &LinuxPanelHost::askSway);
    connect(&desktop_, &DesktopPresses::pressed, this, &PanelHost::pressedElsewhere);
    window_.installEventFilter(this);
}

LinuxPanelHost::~LinuxPanelHost() {
    damage_.remove(window_);
}

void LinuxPanelHost::setGeometry(const QRect& geometry, const QPainterPath& outline) {
    if (geometry.topLeft() != place_) damage_.reportAll();
    PlainPanelHost::setGeometry(geometry, outline);
    place_ = geometry.topLeft();
    if (window_.isVisible()) placeBySway();
}

void LinuxPanelHost::present() {
    // Each time: window managers remove the state from a window that is hidden.
    if (!window_.isVisible()) x11::leaveOutOfTaskBars(static_cast<xcb_window_t>(window_.winId()));
    PlainPanelHost::present();
    placeBySway();
}

bool LinuxPanelHost::eventFilter(QObject* /*object*/, QEvent* event) {
    switch (event->type()) {
    case QEvent::Show:
        desktop_.start();
        damage_.reportAll();
        second_.start();
        break;
    case QEvent::Hide:
        desktop_.stop();
        damage_.reportAll();
        second_.stop();
        break;
    case QEvent::UpdateRequest: // its contents are about to be painted
        damage_.reportAll();
        break;
    default:
        break;
    }
    return false;
}

void LinuxPanelHost::placeBySway() {
    if (!sway_) return;
    requestsLeft_ = requestCount;
    askSway();
}

void LinuxPanelHost::askSway() {
    if (!window_.isVisible() || requestsLeft_ == 0) return;
    --requestsLeft_;
    const QPointF pixels = QPointF(place_) * window_.devicePixelRatioF();
    const QString command = QStringLiteral("[id=%1] move absolute position %2 %3")
                                .arg(window_.winId())
                                .arg(qRound(pixels.x()))
                                .arg(qRound(pixels.y()));
    // The reply only indicates whether sway knows the window yet.
    sway::ask(*sway_, sway::Request::runCommand, command.toUtf8(), *this,
              [this](const std::optional<QByteArray>& /*json*/) { again_.start(); });
}

} // namespace corvane

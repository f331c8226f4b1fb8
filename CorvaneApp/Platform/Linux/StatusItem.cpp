#include "Platform/Linux/StatusItem.h"

#include "Platform/Linux/NotifierPlace.h"
#include "Platform/Linux/X11.h"
#include "Platform/Linux/XEvents.h"
#include "Style/StatusIcon.h"
#include "Style/SymbolicBell.h"

#include <QCursor>
#include <QGuiApplication>
#include <QMenu>
#include <QScreen>
#include <QStandardPaths>
#include <QStringList>

#include <chrono>
#include <optional>
#include <system_error>
#include <vector>

namespace corvane {

namespace {

// How long a bar takes to be drawn, or redrawn when the desktop's theme changes.
constexpr std::chrono::milliseconds drawingTime{1500};

} // namespace

LinuxStatusItem::LinuxStatusItem(Appearance& appearance)
    : appearance_(appearance) {
    look_.setSingleShot(true);
    look_.setInterval(drawingTime);
    connect(&look_, &QTimer::timeout, this, [this] { lookAtBars(lastPlace_); });
    // Window managers report through various properties that the topmost window has gone; not all of them
    // change the one that names the active window.
    connect(&XEvents::instance(), &XEvents::propertyChanged, this, [this] {
        if (isLookDue_ && !look_.isActive()) look_.start();
    });
    connect(&appearance_, &Appearance::changed, this, [this] {
        update();
        if (!notifier_) return;
        look_.start();
        // Plasma applies its bar's new colours to an icon only when it receives the icon again.
        QTimer::singleShot(drawingTime, notifier_.get(), &NotifierItem::iconChanged);
    });
}

LinuxStatusItem::~LinuxStatusItem() = default;

std::filesystem::path LinuxStatusItem::iconFolder() {
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error) return {};
    const std::filesystem::path data = program.parent_path().parent_path() / "share";
    // If Plasma is given a folder, it fills an icon with the applications' colours instead of the bar's.
    const QStringList known = QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation);
    return known.contains(QString::fromStdString(data.string())) ? std::filesystem::path() : data / "icons";
}

void LinuxStatusItem::show(int waitingCount, const QString& label, const QString& toolTip) {
    waitingCount_ = waitingCount;
    label_ = label;
    toolTip_ = toolTip;
    if (!hosts_) {
        hosts_ = std::make_unique<TrayHosts>();
        connect(hosts_.get(), &TrayHosts::changed, this, &LinuxStatusItem::settle);
        settle();
    }
    update();
}

void LinuxStatusItem::setMenu(QMenu* menu) {
    menu_ = menu;
    notifier_.reset();
    embedded_.reset();
    if (menu != nullptr && hosts_) settle();
}

bool LinuxStatusItem::isAvailable() const {
    return hosts_ && (hosts_->hasNotifierHost() || (embedded_ && hosts_->hasEmbeddingHost()));
}

QRect LinuxStatusItem::place() const {
    return embedded_ && isAvailable() ? embedded_->place() : QRect();
}

void LinuxStatusItem::settle() {
    // Qt also queries the watcher when it creates its first embedded icon, and would wait for one that does
    // not reply.
    if (!hosts_->isNotifierKnown() && !embedded_) return;
    if (hosts_->hasNotifierHost()) {
        embedded_.reset();
        if (!notifier_) makeNotifier();
    } else if (hosts_->hasEmbeddingHost()) {
        notifier_.reset();
        if (!embedded_) makeEmbedded();
        embedded_->insistSoon();
    }
    Q_EMIT availabilityChanged();
}

void LinuxStatusItem::makeNotifier() {
    notifier_ = std::make_unique<NotifierItem>(face(), menu_, QString::fromStdString(iconFolder().string()));
    connect(notifier_.get(), &NotifierItem::activated, this, [this](QPoint given) {
        const QRect place = clicked(given);
        if (!place.isEmpty()) lookAtBars(place.center());
        Q_EMIT pressed(place);
    });
    connect(notifier_.get(), &NotifierItem::menuRequested, this, [this](QPoint given) {
        const QRect place = clicked(given);
        if (menu_ != nullptr) menu_->popup(place.isEmpty() ? given : place.center());
    });
    look_.start();
}

void LinuxStatusItem::makeEmbedded() {
    embedded_ = std::make_unique<EmbeddedIcon>(menu_);
    connect(embedded_.get(), &EmbeddedIcon::pressed, this, &StatusItem::pressed);
    connect(embedded_.get(), &EmbeddedIcon::barChanged, this, &LinuxStatusItem::update);
    update();
}

void LinuxStatusItem::update() {
    if (notifier_) notifier_->show(face());
    if (embedded_) embedded_->show(waitingCount_, label_, toolTip_, barScheme());
}

NotifierFace LinuxStatusItem::face() const {
    const bool isFilled = statusicon::isFilledByBar(qgetenv("XDG_CURRENT_DESKTOP").toStdString());
    return {waitingCount_, label_, toolTip_, isFilled ? symbolicbell::name(waitingCount_) : QString(),
            seenBar_.value_or(barScheme())};
}

ColorScheme LinuxStatusItem::barScheme() const {
    return statusicon::barScheme(qgetenv("XDG_CURRENT_DESKTOP").toStdString(), appearance_.colorScheme());
}

void LinuxStatusItem::lookAtBars(QPoint place) {
    lastPlace_ = place;
    const QPoint pixel = (QPointF(place) * qGuiApp->devicePixelRatio()).toPoint();
    isLookDue_ = TrayBar::isBarCovered(pixel);
    if (isLookDue_) return;
    seenBar_ = TrayBar::schemeOfBars(pixel);
    update();
}

QRect LinuxStatusItem::clicked(QPoint given) {
    std::vector<QRect> screens;
    for (const QScreen* const screen : QGuiApplication::screens())
        screens.push_back(screen->geometry());
    const bool isWayland = !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    const qreal ratio = qGuiApp->devicePixelRatio();
    // Over native windows of a Wayland session, X11 only knows the pointer's last place.
    const std::optional<QPoint> pointer = !isWayland ? std::optional(QCursor::pos()) : std::nullopt;
    QRect place;
    if (notifierPlaceIsKnown(isWayland, qgetenv("XDG_CURRENT_DESKTOP").toStdString()))
        place = notifierPlace(given, pointer, ratio, screens);
    return place.isEmpty() && pointer ? notifierPlaceOnBar(*pointer, ratio, x11::bars()) : place;
}

} // namespace corvane

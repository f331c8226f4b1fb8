#include "Platform/Linux/NotifierItem.h"

#include "Style/StatusIcon.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QImage>
#include <QtEndian>

#include <chrono>
#include <utility>

namespace corvane {

namespace {

constexpr QLatin1String watcherService("org.kde.StatusNotifierWatcher");
constexpr QLatin1String watcherPath("/StatusNotifierWatcher");
constexpr QLatin1String itemPath("/StatusNotifierItem");
constexpr QLatin1String menuPathName("/MenuBar");
constexpr QLatin1String noMenuPath("/NO_DBUSMENU"); // the value that hosts recognise
constexpr std::chrono::milliseconds returnDelay{1000};
constexpr int mostReturns = 3;
constexpr int pictureSides[] = {16, 22, 24, 32, 44, 48, 64};

NotifierPixmap pixmap(int side, int waitingCount, ColorScheme bar) {
    const QImage image = statusicon::image(side, waitingCount, bar).convertToFormat(QImage::Format_ARGB32);
    NotifierPixmap result{side, side, QByteArray(qsizetype{side} * side * 4, Qt::Uninitialized)};
    char* to = result.pixels.data();
    for (int y = 0; y < side; ++y) {
        const auto* const line = reinterpret_cast<const quint32*>(image.constScanLine(y));
        qToBigEndian<quint32>(line, side, to);
        to += qsizetype{side} * 4;
    }
    return result;
}

} // namespace

NotifierItem::NotifierItem(NotifierFace face, QMenu* menu, QString iconFolder)
    : face_(std::move(face))
    , iconFolder_(std::move(iconFolder))
    , watcher_(watcherService, QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForOwnerChange) {
    registerNotifierTypes();
    new NotifierItemAdaptor(*this);
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.registerObject(itemPath, this);
    if (menu != nullptr) {
        menu_ = std::make_unique<NotifierMenu>(*menu);
        bus.registerObject(menuPathName, menu_.get());
    }
    // A new name for each icon: watchers may still know the last one.
    static int count = 0;
    service_ = QStringLiteral("org.kde.StatusNotifierItem-%1-%2")
                   .arg(QCoreApplication::applicationPid())
                   .arg(++count);
    bus.registerService(service_);
    return_.setSingleShot(true);
    return_.setInterval(returnDelay);
    connect(&return_, &QTimer::timeout, this, &NotifierItem::registerAtWatcher);
    bus.connect(watcherService, watcherPath, watcherService, QStringLiteral("StatusNotifierItemUnregistered"),
                this, SLOT(returnToWatcher(QString)));
    connect(&watcher_, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString& /*name*/, const QString& /*before*/, const QString& now) {
                if (!now.isEmpty()) meetWatcher();
            });
    meetWatcher();
}

// Watchers remove an icon when its name is released.
NotifierItem::~NotifierItem() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.unregisterService(service_);
    bus.unregisterObject(itemPath);
    if (menu_) bus.unregisterObject(menuPathName);
}

void NotifierItem::meetWatcher() {
    returnsLeft_ = mostReturns;
    registerAtWatcher();
}

// GNOME's extension may fail to read an item while the desktop is busy, such as after login, and then drops
// it.
void NotifierItem::returnToWatcher(const QString& item) {
    // Some watchers append the object path.
    if (item.section(u'/', 0, 0) != service_ || returnsLeft_ == 0) return;
    --returnsLeft_;
    return_.start();
}

void NotifierItem::registerAtWatcher() {
    QDBusMessage call = QDBusMessage::createMethodCall(watcherService, watcherPath, watcherService,
                                                       QStringLiteral("RegisterStatusNotifierItem"));
    call.setAutoStartService(false);
    call << service_;
    QDBusConnection::sessionBus().asyncCall(call);
}

void NotifierItem::show(const NotifierFace& face) {
    const NotifierFace before = std::exchange(face_, face);
    if (face.waitingCount != before.waitingCount || face.iconName != before.iconName ||
        (face.bar != before.bar && face.iconName.isEmpty()))
        Q_EMIT iconChanged();
    if ((face.waitingCount > 0) != (before.waitingCount > 0)) Q_EMIT statusChanged();
    if (face.toolTip != before.toolTip) Q_EMIT toolTipChanged();
}

QDBusObjectPath NotifierItem::menuPath() const {
    return QDBusObjectPath(menu_ ? menuPathName : noMenuPath);
}

NotifierToolTip NotifierItem::toolTip() const {
    const qsizetype end = face_.toolTip.indexOf(u'\n');
    const QString text = end < 0 ? QString() : face_.toolTip.mid(end + 1);
    return {{}, {}, face_.toolTip.left(end < 0 ? face_.toolTip.size() : end), text.toHtmlEscaped()};
}

NotifierPixmaps NotifierItem::pixmaps() const {
    NotifierPixmaps result;
    for (const int side : pictureSides)
        result.append(pixmap(side, face_.waitingCount, face_.bar));
    return result;
}

NotifierItemAdaptor::NotifierItemAdaptor(NotifierItem& item)
    : QDBusAbstractAdaptor(&item)
    , item_(item) {
    connect(&item, &NotifierItem::iconChanged, this, &NotifierItemAdaptor::NewIcon);
    connect(&item, &NotifierItem::iconChanged, this, &NotifierItemAdaptor::NewAttentionIcon);
    connect(&item, &NotifierItem::toolTipChanged, this, &NotifierItemAdaptor::NewToolTip);
    connect(&item, &NotifierItem::statusChanged, this, [this] { Q_EMIT NewStatus(status()); });
}

QString NotifierItemAdaptor::status() const {
    return item_.face().waitingCount > 0 ? QStringLiteral("NeedsAttention") : QStringLiteral("Active");
}

// NOLINTBEGIN(readability-identifier-naming)
void NotifierItemAdaptor::Activate(int x, int y) {
    Q_EMIT item_.activated({x, y});
}

void NotifierItemAdaptor::SecondaryActivate(int x, int y) {
    Q_EMIT item_.activated({x, y});
}

void NotifierItemAdaptor::ContextMenu(int x, int y) {
    Q_EMIT item_.menuRequested({x, y});
}

void NotifierItemAdaptor::Scroll(int /*delta*/, const QString& /*orientation*/) {}
// NOLINTEND(readability-identifier-naming)

} // namespace corvane

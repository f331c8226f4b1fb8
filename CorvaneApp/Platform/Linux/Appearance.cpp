#include "Platform/Linux/Appearance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QEvent>
#include <QGuiApplication>
#include <QLatin1String>
#include <QScreen>
#include <QTimer>

#include <cmath>
#include <utility>

namespace corvane {

namespace {

constexpr QLatin1String service("org.freedesktop.portal.Desktop");
constexpr QLatin1String path("/org/freedesktop/portal/desktop");
constexpr QLatin1String interface("org.freedesktop.portal.Settings");

constexpr QLatin1String appearanceGroup("org.freedesktop.appearance");
constexpr QLatin1String colorSchemeKey("color-scheme");
constexpr QLatin1String contrastKey("contrast");
constexpr QLatin1String accessibilityGroup("org.gnome.desktop.a11y.interface");
constexpr QLatin1String highContrastKey("high-contrast");
constexpr QLatin1String toolkitGroup("org.gnome.desktop.interface");
constexpr QLatin1String animationsKey("enable-animations");
constexpr QLatin1String textScaleKey("text-scaling-factor");

// The portal's values of "color-scheme"; 0 leaves it to the application.
constexpr uint preferDark = 1;
constexpr uint preferLight = 2;
// And of "contrast"; 0 is no preference.
constexpr uint higherContrast = 1;

} // namespace

LinuxAppearance::LinuxAppearance()
    : paletteScheme_(Tokens::desktopScheme(QGuiApplication::palette())) {
    qApp->installEventFilter(this);
    if (const QScreen* const screen = QGuiApplication::primaryScreen())
        connect(screen, &QScreen::logicalDotsPerInchChanged, this, &Appearance::changed);
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return;
    // A slot with this parameter can be connected only once the type is registered.
    qRegisterMetaType<QDBusVariant>();
    bus.connect(service, path, interface, QLatin1String("SettingChanged"), this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));
    ask(appearanceGroup, colorSchemeKey);
    ask(appearanceGroup, contrastKey);
    ask(accessibilityGroup, highContrastKey);
    ask(toolkitGroup, animationsKey);
    ask(toolkitGroup, textScaleKey);
}

double remainingTextScale(double wanted, double devicePixelRatio) {
    constexpr double tolerance = 0.02; // resolutions are whole numbers
    const double rest = devicePixelRatio / wanted;
    const bool isInEffect = rest > 1 - tolerance && std::abs(rest - std::round(rest)) < tolerance;
    return isInEffect ? 1 : wanted;
}

void LinuxAppearance::ask(const QString& group, const QString& key) {
    // Asynchronous: a portal that hangs must not block the application.
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, QLatin1String("Read"));
    call << group << key;
    auto* const watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, group, key](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                const QDBusPendingReply<QDBusVariant> reply = *finished;
                if (!reply.isError()) apply(group, key, reply.value().variant());
            });
}

void LinuxAppearance::settingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
    apply(group, key, value.variant());
}

void LinuxAppearance::apply(const QString& group, const QString& key, QVariant value) {
    // `Read` wraps its result in two variants.
    while (value.userType() == qMetaTypeId<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();

    const Look look(colorScheme(), contrast());
    const bool wasReduced = reduceMotion_;
    const double scale = textScalingFactor_;
    set(group, key, value);
    if (Look(colorScheme(), contrast()) != look || reduceMotion_ != wasReduced || textScalingFactor_ != scale)
        Q_EMIT changed();
}

void LinuxAppearance::set(const QString& group, const QString& key, const QVariant& value) {
    const bool isOn = value.typeId() == QMetaType::Bool && value.toBool();
    const bool isOff = value.typeId() == QMetaType::Bool && !value.toBool();
    if (group == appearanceGroup && key == colorSchemeKey) {
        const uint answer = value.toUInt();
        portalScheme_.reset();
        if (answer == preferDark) portalScheme_ = ColorScheme::dark;
        if (answer == preferLight) portalScheme_ = ColorScheme::light;
    } else if (group == appearanceGroup && key == contrastKey) {
        portalWantsContrast_ = value.toUInt() == higherContrast;
    } else if (group == accessibilityGroup && key == highContrastKey) {
        desktopWantsContrast_ = isOn;
    } else if (group == toolkitGroup && key == animationsKey) {
        reduceMotion_ = isOff;
    } else if (group == toolkitGroup && key == textScaleKey) {
        textScalingFactor_ = value.typeId() == QMetaType::Double ? value.toDouble() : 1;
    }
}

Contrast LinuxAppearance::contrast() const {
    return portalWantsContrast_ || desktopWantsContrast_ ? Contrast::high : Contrast::normal;
}

double LinuxAppearance::textScale() const {
    return remainingTextScale(textScalingFactor_, qGuiApp->devicePixelRatio());
}

bool LinuxAppearance::eventFilter(QObject* object, QEvent* event) {
    // Deferred, since receivers of `changed` set a new palette, while this change is still being delivered.
    if (event->type() == QEvent::ApplicationPaletteChange)
        QTimer::singleShot(0, this, &LinuxAppearance::followPalette);
    return Appearance::eventFilter(object, event);
}

void LinuxAppearance::followPalette() {
    const QPalette palette = QGuiApplication::palette();
    const ColorScheme before = colorScheme();
    paletteScheme_ = Tokens::desktopScheme(palette);
    // Some platform themes replace the application's palette by their own, which must be undone, too.
    if (colorScheme() != before || Tokens::look(palette) != Look(colorScheme(), contrast())) Q_EMIT changed();
}

} // namespace corvane

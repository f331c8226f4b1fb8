#include "Platform/Linux/PortalSettings.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QLatin1String>

namespace corvane {

namespace {

constexpr QLatin1String service("org.freedesktop.portal.Desktop");
constexpr QLatin1String path("/org/freedesktop/portal/desktop");
constexpr QLatin1String interface("org.freedesktop.portal.Settings");

constexpr QLatin1String appearanceGroup("org.freedesktop.appearance");
constexpr QLatin1String colorSchemeKey("color-scheme");
constexpr QLatin1String contrastKey("contrast");
constexpr QLatin1String reducedMotionKey("reduced-motion");
constexpr QLatin1String accessibilityGroup("org.gnome.desktop.a11y.interface");
constexpr QLatin1String highContrastKey("high-contrast");
constexpr QLatin1String toolkitGroup("org.gnome.desktop.interface");
constexpr QLatin1String animationsKey("enable-animations");
constexpr QLatin1String textScaleKey("text-scaling-factor");

// The portal's values of "color-scheme"; 0 leaves it to the application.
constexpr uint preferDark = 1;
constexpr uint preferLight = 2;
// The values of "contrast" and "reduced-motion"; 0 is no preference.
constexpr uint higherContrast = 1;
constexpr uint lessMotion = 1;

void set(PortalLook& look, const QString& group, const QString& key, const QVariant& value) {
    const bool isOn = value.typeId() == QMetaType::Bool && value.toBool();
    const bool isOff = value.typeId() == QMetaType::Bool && !value.toBool();
    if (group == appearanceGroup && key == colorSchemeKey) {
        const uint answer = value.toUInt();
        look.scheme.reset();
        if (answer == preferDark) look.scheme = ColorScheme::dark;
        if (answer == preferLight) look.scheme = ColorScheme::light;
    } else if (group == appearanceGroup && key == contrastKey) {
        look.highContrast = value.toUInt() == higherContrast;
    } else if (group == appearanceGroup && key == reducedMotionKey) {
        look.reducedMotion = value.toUInt() == lessMotion;
    } else if (group == accessibilityGroup && key == highContrastKey) {
        look.toolkitHighContrast = isOn;
    } else if (group == toolkitGroup && key == animationsKey) {
        look.toolkitAnimations = !isOff;
    } else if (group == toolkitGroup && key == textScaleKey) {
        look.textScale = value.typeId() == QMetaType::Double ? value.toDouble() : 1;
    }
}

} // namespace

PortalSettings::PortalSettings() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return;
    // A slot with this parameter can be connected only once the type is registered.
    qRegisterMetaType<QDBusVariant>();
    bus.connect(service, path, interface, QLatin1String("SettingChanged"), this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));
    ask(appearanceGroup, colorSchemeKey);
    ask(appearanceGroup, contrastKey);
    ask(appearanceGroup, reducedMotionKey);
    ask(accessibilityGroup, highContrastKey);
    ask(toolkitGroup, animationsKey);
    ask(toolkitGroup, textScaleKey);
}

void PortalSettings::ask(const QString& group, const QString& key) {
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

void PortalSettings::settingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
    apply(group, key, value.variant());
}

void PortalSettings::apply(const QString& group, const QString& key, QVariant value) {
    // `Read` wraps its result in two variants.
    while (value.userType() == qMetaTypeId<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    const PortalLook before = look_;
    set(look_, group, key, value);
    if (look_ != before) Q_EMIT changed();
}

} // namespace corvane

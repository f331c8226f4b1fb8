// A fake of a desktop's portal on a test's own session bus.
//
//   DesktopPortal                               runs until it is ended; writes "ready" once it is
//   DesktopPortal set <group> <key> <value>     changes a setting of the running portal, which notifies all
//
// A value is a whole number, a fraction with a point in it, or true or false.

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QVariant>
#include <QVariantMap>

#include <cstdio>

namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interface = QStringLiteral("org.freedesktop.portal.Settings");

class SettingsPortal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

  public Q_SLOTS:
    // The portal's interface prescribes the names.
    // NOLINTBEGIN(readability-identifier-naming)
    // Real portals return a variant within a variant.
    Q_SCRIPTABLE QDBusVariant Read(const QString& group, const QString& key, const QDBusMessage& message) {
        const QVariant value = values_.value(group + u' ' + key);
        if (!value.isValid()) {
            QDBusConnection::sessionBus().send(message.createErrorReply(
                QStringLiteral("org.freedesktop.portal.Error.NotFound"), QStringLiteral("no such setting")));
            message.setDelayedReply(true);
            return {};
        }
        return QDBusVariant(QVariant::fromValue(QDBusVariant(value)));
    }

    Q_SCRIPTABLE void Set(const QString& group, const QString& key, const QDBusVariant& value) {
        values_.insert(group + u' ' + key, value.variant());
        Q_EMIT SettingChanged(group, key, value);
    }

  Q_SIGNALS:
    Q_SCRIPTABLE void SettingChanged(const QString& group, const QString& key, const QDBusVariant& value);
    // NOLINTEND(readability-identifier-naming)

  private:
    QVariantMap values_;
};

int serve(QDBusConnection bus) {
    SettingsPortal portal;
    if (!bus.registerObject(path, &portal, QDBusConnection::ExportScriptableContents) ||
        !bus.registerService(service)) {
        std::fputs("the portal's name is taken\n", stderr);
        return 1;
    }
    std::puts("ready");
    std::fflush(stdout);
    return QCoreApplication::exec();
}

int set(const QDBusConnection& bus, const QStringList& words) {
    const QString& text = words[2];
    const bool isTruth = text == u"true" || text == u"false";
    const QVariant value = isTruth               ? QVariant(text == u"true")
                           : text.contains(u'.') ? QVariant(text.toDouble())
                                                 : QVariant(text.toUInt());
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Set"));
    call << words[0] << words[1] << QVariant::fromValue(QDBusVariant(value));
    const QDBusMessage reply = bus.call(call);
    if (reply.type() != QDBusMessage::ErrorMessage) return 0;
    std::fprintf(stderr, "%s\n", qPrintable(reply.errorMessage()));
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QDBusConnection bus = QDBusConnection::sessionBus();
    const QStringList words = QCoreApplication::arguments().mid(1);
    if (words.isEmpty()) return serve(bus);
    if (words.size() == 4 && words.front() == u"set") return set(bus, words.mid(1));
    return 2;
}

#include "DesktopPortal.moc"

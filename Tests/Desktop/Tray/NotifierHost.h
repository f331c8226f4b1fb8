#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QStringList>
#include <QVariant>

#include <string>
#include <vector>

namespace corvane::test {

/// A fake host of StatusNotifierItems: the watcher on the session bus, and a panel's queries to the items.
/// Needs a QCoreApplication whose events are processed.
class NotifierHost : public QObject {
    Q_OBJECT

  public:
    /// `bus` is the address. Throws std::runtime_error when it cannot be reached.
    explicit NotifierHost(const std::string& bus);
    NotifierHost(const NotifierHost&) = delete;
    NotifierHost& operator=(const NotifierHost&) = delete;
    ~NotifierHost() override;

    /// Claims the watcher's name, from another host if need be, or releases it and forgets all items.
    void start();
    void stop();
    /// Removes the item although it still exists, as a watcher does that failed to read it.
    void drop();
    /// A watcher may run long before a host.
    void setHasHost(bool hasHost);

    /// The bus names of the items that have registered and are still there.
    [[nodiscard]] QStringList items() const { return items_; }

    /// A property of the first item; invalid when there is none.
    [[nodiscard]] QVariant property(const char* name) const;
    /// The first item's tooltip.
    [[nodiscard]] std::string toolTip() const;
    /// The lines below the first one.
    [[nodiscard]] std::string toolTipText() const;
    /// The pictures in one of its properties.
    struct Picture {
        int side = 0;
        QByteArray pixels; // alpha, red, green and blue of each
    };
    [[nodiscard]] std::vector<Picture> pictures(const char* name) const;
    /// Clicks with the left and with the right button; the latter as a host that shows no menus does.
    void activate(int x, int y);
    void requestMenu(int x, int y);

    /// The visible entries of the first item's menu, in order; a divider is "-".
    struct Entry {
        int id = 0;
        std::string label;
    };
    [[nodiscard]] std::vector<Entry> menu() const;
    /// Activates the entry of this label; returns false when there is none.
    bool choose(const std::string& label);

    /// Notifies the first item's menu that it is about to be shown.
    void openMenu() const;

    /// How many signals the first item has sent since the first call: broadcasts about the item, its menu or
    /// anything else.
    [[nodiscard]] int broadcasts();

    // The watcher's interface.
    [[nodiscard]] bool hasHost() const { return hasHost_; }
    void add(const QString& service);

  Q_SIGNALS:
    void itemRegistered(const QString& service);
    void itemUnregistered(const QString& service);
    void hostRegistered();

  private:
    void call(const QString& method, int x, int y);
    [[nodiscard]] QStringList toolTipLines() const;

    QDBusConnection bus_;
    QDBusServiceWatcher leaving_;
    Q_SLOT void countBroadcast(const QDBusMessage& message);

    QStringList items_;
    QString counted_; // the item whose broadcasts are counted
    int broadcasts_ = 0;
    bool hasHost_ = true;
};

class WatcherAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ items)
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)
    Q_PROPERTY(int ProtocolVersion READ version)

  public:
    explicit WatcherAdaptor(NotifierHost& host);

    [[nodiscard]] QStringList items() const { return host_.items(); }
    [[nodiscard]] bool hasHost() const { return host_.hasHost(); }
    [[nodiscard]] int version() const { return 0; }

    // The interface prescribes the names.
    // NOLINTBEGIN(readability-identifier-naming,readability-redundant-access-specifiers)
  public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString& service) { host_.add(service); }
    void RegisterStatusNotifierHost(const QString& /*service*/) {}

  Q_SIGNALS:
    void StatusNotifierItemRegistered(const QString& service);
    void StatusNotifierItemUnregistered(const QString& service);
    void StatusNotifierHostRegistered();
    // NOLINTEND(readability-identifier-naming,readability-redundant-access-specifiers)

  private:
    NotifierHost& host_;
};

} // namespace corvane::test

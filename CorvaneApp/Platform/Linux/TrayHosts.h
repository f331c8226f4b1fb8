#pragma once

#include <QDBusServiceWatcher>
#include <QObject>
#include <QPointer>

#include <cstdint>

class QDBusPendingCallWatcher;

namespace corvane {

/// Watches for tray hosts: one for StatusNotifierItems on the session bus, and one that embeds windows on the
/// X server. Main thread only.
///
/// Never blocks, whether the bus is missing or does not respond.
class TrayHosts : public QObject {
    Q_OBJECT

  public:
    TrayHosts();

    /// Whether it is known whether there is a host on the session bus: the watcher has replied, or there is
    /// none. Until then `hasNotifierHost` returns the previous value.
    [[nodiscard]] bool isNotifierKnown() const { return isNotifierKnown_; }
    [[nodiscard]] bool hasNotifierHost() const { return hasNotifierHost_; }
    /// Queries the X server.
    [[nodiscard]] bool hasEmbeddingHost() const;

  Q_SIGNALS:
    /// Emitted when any of the above values may have changed. Not emitted when an embedding host disappears.
    void changed();

  private:
    void ask();
    void setNotifierHost(bool isThere);
    Q_SLOT void hostRegistered();

    QDBusServiceWatcher watcher_;
    QPointer<QDBusPendingCallWatcher> asked_;
    std::uint32_t traySelection_; // an X11 atom
    bool isNotifierKnown_ = false;
    bool hasNotifierHost_ = false;
};

} // namespace corvane

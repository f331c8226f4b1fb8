#pragma once

#include <QDBusServiceWatcher>
#include <QObject>

#include <cstdint>

namespace corvane {

/// Watches what could show a tray icon: a host of StatusNotifierItems on the session bus, and a host that
/// embeds windows on the X server. Main thread only.
///
/// Neither a bus that does not answer nor one that is missing holds anything up.
class TrayHosts : public QObject {
    Q_OBJECT

  public:
    TrayHosts();

    /// Whether the session bus has said if there is a host. Until then `hasNotifierHost` is false.
    [[nodiscard]] bool isNotifierKnown() const { return isNotifierKnown_; }
    [[nodiscard]] bool hasNotifierHost() const { return hasNotifierHost_; }
    /// Asks the X server.
    [[nodiscard]] bool hasEmbeddingHost() const;

  Q_SIGNALS:
    /// One of the answers above may be another one now. A host that embeds windows is not noticed to go.
    void changed();

  private:
    void ask();
    void setNotifierHost(bool isThere);
    Q_SLOT void hostRegistered();

    QDBusServiceWatcher watcher_;
    std::uint32_t traySelection_; // an X11 atom
    bool isNotifierKnown_ = false;
    bool hasNotifierHost_ = false;
};

} // namespace corvane

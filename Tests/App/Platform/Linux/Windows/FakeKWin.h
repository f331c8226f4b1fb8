#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <memory>

namespace corvane::test {

/// The script that was loaded last; does what the real script is written to do.
class FakeKWinScript : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.kwin.Script")

  public:
    Q_SCRIPTABLE Q_INVOKABLE void run();

    QString text;
    /// The windows, as the script describes them.
    QString description = QStringLiteral("[]");
    /// Whether the script does nothing when it is run.
    bool isStuck = false;
    int chosen = -2; ///< the reply to the description; -2 for none
    QObject context; // of pending calls
    std::unique_ptr<QDBusConnection> bus;
};

/// KWin's scripting interface, on a connection of its own.
class FakeKWin : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.kwin.Scripting")

  public:
    enum class Version : std::uint8_t { five, six };

    FakeKWin(const QString& address, Version version);
    ~FakeKWin() override;
    FakeKWin(const FakeKWin&) = delete;
    FakeKWin& operator=(const FakeKWin&) = delete;

    Q_SCRIPTABLE Q_INVOKABLE int loadScript(const QString& file, const QString& name);
    Q_SCRIPTABLE Q_INVOKABLE bool unloadScript(const QString& name);

    FakeKWinScript script;
    QString file;            ///< of the last script
    QStringList loaded;      ///< the names of the scripts that are loaded
    int scriptCount = 0;     ///< of all that were loaded
    bool isRefusing = false; ///< whether loading fails
    bool isHanging = false;  ///< whether loading is never answered

  private:
    Version version_;
    QString path_;
};

} // namespace corvane::test

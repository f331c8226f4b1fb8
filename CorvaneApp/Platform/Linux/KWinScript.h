#pragma once

#include "Platform/Linux/WindowRaiser.h"

#include <QObject>
#include <QString>
#include <QTemporaryFile>
#include <QTimer>

#include <chrono>
#include <functional>

class QDBusMessage;

namespace corvane {

/// One script in KWin: loads and runs it, serves its calls, and unloads it. Deletes itself after reporting;
/// if its context is destroyed first, unloads the script without a report.
class KWinScript : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.corvane.WindowChoice")

  public:
    KWinScript(WindowSearch search, WindowRaiser::Report report, QObject& context);
    ~KWinScript() override;

    /// Has KWin run the script. Reports within `limit`; on timeout, that no window was raised. To be called
    /// once.
    void start(std::chrono::milliseconds limit);

    /// Called by the script with a description of all windows; returns the index of the one to raise, -1 for
    /// none.
    Q_SCRIPTABLE Q_INVOKABLE int choose(const QString& windows);
    /// Called by the script once it has raised that window.
    Q_SCRIPTABLE Q_INVOKABLE void raised();

  private:
    [[nodiscard]] bool writeScript();
    /// Runs the loaded script, whose object has another path in KWin 5 than in KWin 6.
    void run(int number, bool isOldPath);
    void call(const QString& path, const QString& interface, const QString& method,
              const QVariantList& arguments, std::function<void(const QDBusMessage& reply)> finished);
    void finish(bool isFound);
    void unload();

    WindowSearch search_;
    WindowRaiser::Report report_;
    QString name_;
    QString path_; // of this object on the session bus
    QTemporaryFile file_;
    QTimer limit_;
    bool isRequested_ = false; // KWin may have loaded the script
};

} // namespace corvane

#pragma once

#include "Platform/Linux/SingleInstanceLock.h"
#include "Platform/Linux/StartupToken.h"
#include "Platform/SingleInstance.h"

#include <QVariantMap>

#include <memory>

namespace corvane {

/// One instance per session bus, by a well-known name. Without a bus, one per user, by a lock.
class LinuxSingleInstance : public SingleInstance {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

  public:
    /// Started by the user, or by the autostart entry at login.
    enum class Start { byHand, atLogin };

    /// `startup` is this process's token, to be passed to the running instance. Nothing is sent to that
    /// instance if this process was started at login.
    explicit LinuxSingleInstance(StartupToken startup = {}, Start start = Start::byHand);
    ~LinuxSingleInstance() override;

    [[nodiscard]] bool claim() override;

    // The interface by which desktops start an application that may already be running, and its names.
    // NOLINTBEGIN(readability-identifier-naming)

    /// Asks the application to show its window. `platformData` may hold the activation token.
    Q_SCRIPTABLE Q_INVOKABLE void Activate(const QVariantMap& platformData);
    /// The application opens no files and has no actions: both do the same as `Activate`.
    Q_SCRIPTABLE Q_INVOKABLE void Open(const QStringList& uris, const QVariantMap& platformData);
    Q_SCRIPTABLE Q_INVOKABLE void ActivateAction(const QString& action, const QVariantList& parameter,
                                                 const QVariantMap& platformData);
    // NOLINTEND(readability-identifier-naming)

  Q_SIGNALS:
    /// The token of the start that is reported next.
    void startedWith(const StartupToken& startup);

  protected:
    void connectNotify(const QMetaMethod& signal) override;

  private:
    enum class Outcome { first, second, noBus };
    [[nodiscard]] Outcome claimOnBus();

    /// Handles a request: emits both signals, `reopened` only once something is connected to it.
    void tell(const StartupToken& startup);

    StartupToken startup_;
    Start start_;
    std::unique_ptr<SingleInstanceLock> lock_;
    bool isUntold_ = false;
    bool isStartedByRequest_ = false; // and that request has not arrived yet
};

} // namespace corvane

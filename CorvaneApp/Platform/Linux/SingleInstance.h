#pragma once

#include "Platform/Linux/SingleInstanceLock.h"
#include "Platform/Linux/StartupToken.h"
#include "Platform/SingleInstance.h"

#include <QVariantMap>

#include <memory>

namespace corvane {

/// One instance per session bus, by its name there. Without a bus, one per user, by a lock.
class LinuxSingleInstance : public SingleInstance {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

  public:
    /// `startup` is what this process was started with, for the instance that runs already.
    explicit LinuxSingleInstance(StartupToken startup = {});
    ~LinuxSingleInstance() override;

    [[nodiscard]] bool claim() override;

    // The interface by which desktops start an application that may be running already. Its names are given.
    // NOLINTBEGIN(readability-identifier-naming)

    /// Asks the application to come forward. `platformData` may name what the user started it with.
    Q_SCRIPTABLE Q_INVOKABLE void Activate(const QVariantMap& platformData);
    /// The application opens no files and has no actions: both are like the above.
    Q_SCRIPTABLE Q_INVOKABLE void Open(const QStringList& uris, const QVariantMap& platformData);
    Q_SCRIPTABLE Q_INVOKABLE void ActivateAction(const QString& action, const QVariantList& parameter,
                                                 const QVariantMap& platformData);
    // NOLINTEND(readability-identifier-naming)

  Q_SIGNALS:
    /// What the start that is reported next came with.
    void startedWith(const StartupToken& startup);

  protected:
    void connectNotify(const QMetaMethod& signal) override;

  private:
    enum class Outcome { first, second, noBus };
    [[nodiscard]] Outcome claimOnBus();

    /// A request came: emits both signals; `reopened` once somebody connects to it, if nobody has so far.
    void tell(const StartupToken& startup);

    StartupToken startup_;
    std::unique_ptr<SingleInstanceLock> lock_;
    bool isUntold_ = false;
    bool isStartedByRequest_ = false; // and that request has not come yet
};

} // namespace corvane

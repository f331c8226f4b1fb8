#pragma once

#include "Platform/Linux/ReopenLock.h"
#include "Platform/Reopen.h"

#include <QVariantMap>

#include <memory>

namespace corvane {

/// One application on each session bus, by its name there. Without a bus, one for each user, by a lock.
class LinuxReopen : public Reopen {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

  public:
    ~LinuxReopen() override;

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

  protected:
    void connectNotify(const QMetaMethod& signal) override;

  private:
    enum class Outcome { first, second, noBus };
    [[nodiscard]] Outcome claimOnBus();

    /// Tells that the application was started again; later, when nobody listens yet.
    void tell();

    std::unique_ptr<ReopenLock> lock_;
    bool isUntold_ = false;
};

} // namespace corvane

#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>

#include <cstdint>

namespace corvane {

/// What Qt's X connection tells about the desktop as a whole, passed on once for everybody who listens.
/// Never changes what Qt makes of an event. Main thread only.
class XEvents : public QObject, public QAbstractNativeEventFilter {
    Q_OBJECT

  public:
    /// The application's own, made at the first call. Silent on another window system.
    static XEvents& instance();

    ~XEvents() override;
    XEvents(const XEvents&) = delete;
    XEvents& operator=(const XEvents&) = delete;

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

  Q_SIGNALS:
    /// A property of this name, an atom, has changed on a window that Qt watches; the root window is one.
    void propertyChanged(std::uint32_t name);
    /// A client message has come. `type` and `subject`, its second number, are atoms.
    void messageReceived(std::uint32_t type, std::uint32_t subject);

  private:
    explicit XEvents(QObject* parent);
};

} // namespace corvane

#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>

#include <cstdint>
#include <optional>

namespace corvane {

/// Forwards events of Qt's X connection that concern the whole desktop, with one filter for all receivers.
/// Never affects how Qt handles an event. Main thread only.
class XEvents : public QObject, public QAbstractNativeEventFilter {
    Q_OBJECT

  public:
    /// The application's instance, created on the first call. Emits nothing on another window system.
    static XEvents& instance();

    ~XEvents() override;
    XEvents(const XEvents&) = delete;
    XEvents& operator=(const XEvents&) = delete;

    /// Has the X server report changes of this selection's owner. Returns false where it cannot.
    bool watchSelection(std::uint32_t selection);

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

  Q_SIGNALS:
    /// The property of this name, an atom, has changed on a window that Qt watches, such as the root window.
    void propertyChanged(std::uint32_t name);
    /// A mouse button, not the wheel, was pressed over a window that selects core button events, which Qt's
    /// own windows do not.
    void buttonPressed(std::uint32_t window);
    /// A client message has arrived. `type` and `subject`, its second number, are atoms.
    void messageReceived(std::uint32_t type, std::uint32_t subject);
    /// A watched selection, an atom, has a new owner or no longer has one.
    void selectionOwnerChanged(std::uint32_t selection);

  private:
    explicit XEvents(QObject* parent);

    std::optional<std::uint8_t> selectionEvent_; // its number; none before a selection is watched
};

} // namespace corvane

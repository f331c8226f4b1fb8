#pragma once

#include "Platform/Screens.h"

#include <QAbstractNativeEventFilter>

class QScreen;

namespace corvane {

/// The screens as Qt knows them; the main one by the active window, where an X server tells.
class LinuxScreens : public Screens, public QAbstractNativeEventFilter {
    Q_OBJECT

  public:
    LinuxScreens();

    [[nodiscard]] std::optional<QRect> mainVisibleFrame() const override;

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

  private:
    void watch(QScreen* screen);

    quint32 workAreaAtom_ = 0;
};

} // namespace corvane

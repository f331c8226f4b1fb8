#include "Platform/Linux/Appearance.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QTimer>

#include <cmath>

namespace corvane {

LinuxAppearance::LinuxAppearance()
    : palette_(Tokens::desktopScheme(QGuiApplication::palette()))
    , look_(presentLook()) {
    qApp->installEventFilter(this);
    if (const QScreen* const screen = QGuiApplication::primaryScreen())
        connect(screen, &QScreen::logicalDotsPerInchChanged, this, &Appearance::changed);
    connect(&portal_, &PortalSettings::changed, this, &LinuxAppearance::follow);
    connect(&kde_, &KdeSettings::changed, this, &LinuxAppearance::follow);
    connect(&lxqt_, &LxqtSettings::changed, this, &LinuxAppearance::follow);
    connect(&xsettings_, &XSettings::changed, this, &LinuxAppearance::follow);
}

double remainingTextScale(double wanted, double devicePixelRatio) {
    constexpr double tolerance = 0.02; // resolutions are whole numbers
    const double rest = devicePixelRatio / wanted;
    const bool isInEffect = rest > 1 - tolerance && std::abs(rest - std::round(rest)) < tolerance;
    return isInEffect ? 1 : wanted;
}

double LinuxAppearance::textScale() const {
    return remainingTextScale(look_.textScale, qGuiApp->devicePixelRatio());
}

DesktopLook LinuxAppearance::presentLook() const {
    return desktopLook({portal_.look(), kde_.look(), lxqt_.windowLightness(), xsettings_.look(), palette_});
}

void LinuxAppearance::follow() {
    const DesktopLook look = presentLook();
    if (look == look_) return;
    look_ = look;
    Q_EMIT changed();
}

bool LinuxAppearance::eventFilter(QObject* object, QEvent* event) {
    // Deferred: receivers of `changed` set a new palette, and this change is still being delivered.
    if (event->type() == QEvent::ApplicationPaletteChange)
        QTimer::singleShot(0, this, &LinuxAppearance::followPalette);
    return Appearance::eventFilter(object, event);
}

void LinuxAppearance::followPalette() {
    const QPalette palette = QGuiApplication::palette();
    palette_ = Tokens::desktopScheme(palette);
    const DesktopLook before = look_;
    look_ = presentLook();
    // Some platform themes replace the application's palette with their own, which must be undone too.
    if (look_ != before || Tokens::look(palette) != Look(look_.scheme, look_.contrast)) Q_EMIT changed();
}

} // namespace corvane

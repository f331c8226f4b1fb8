// Draws every state of the windows, the tray panel, the menus and the tray icon into the given folder, for
// visual review.

#include "App/Support/LargeText.h"
#include "App/Support/PanelStates.h"
#include "App/Support/Pictures.h"
#include "App/Support/PopupStates.h"
#include "App/Support/WindowStates.h"
#include "Controls/PopupCards.h"
#include "MainWindow.h"
#include "Platform/Linux/Shadow.h"
#include "Platform/Linux/WindowShadow.h"
#include "Style/Shapes.h"
#include "Style/StatusIcon.h"
#include "Style/Translations.h"

#include <QApplication>
#include <QDir>

#include <cstdio>

namespace {

using namespace corvane;

bool saveWindows(const QDir& folder, const test::Variant& variant) {
    for (const test::WindowState& state : test::windowStates()) {
        test::ModelFixture fixture;
        const std::unique_ptr<QWidget> view = state.make(fixture);
        const QString name =
            QStringLiteral("%1-%2.png").arg(QString::fromStdString(state.name), variant.name);
        if (!test::pictureOf(*view, variant.look, variant.ratio).save(folder.filePath(name))) return false;
    }
    return true;
}

/// The panel with its shadow on a desktop.
QImage panelOnDesktop(MenuBarView& view, const test::Variant& variant) {
    constexpr qreal radius = 12;
    const QSize whole = view.size().grownBy(shadowMargins);
    QImage image(whole * variant.ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(variant.ratio);
    image.fill(QColor(0xC7, 0xD9, 0xE8));
    QPainter painter(&image);
    const QRectF card(QPointF(0, 0), QSizeF(view.size()));
    if (!variant.look.isHighContrast()) {
        painter.drawImage(0, 0,
                          cardShadow(shapes::continuousRoundedRect(card, scaled(radius)), view.size(),
                                     variant.look.scheme, variant.ratio));
    }
    painter.translate(shadowMargins.left(), shadowMargins.top());
    test::paintPanel(painter, view, variant.look);
    return image;
}

bool savePanels(const QDir& folder, const test::Variant& variant) {
    for (const test::PanelState& state : test::panelStates()) {
        test::MenuBarWorld world;
        const std::unique_ptr<MenuBarView> view = state.make(world);
        const QString name =
            QStringLiteral("panel-%1-%2.png").arg(QString::fromStdString(state.name), variant.name);
        if (!panelOnDesktop(*view, variant).save(folder.filePath(name))) return false;
    }
    return true;
}

bool savePopups(const QDir& folder, const test::Variant& variant) {
    QApplication::setPalette(Tokens::palette(variant.look));
    bool isSaved = true;
    for (const test::PopupState& state : test::popupStates()) {
        const QString name =
            QStringLiteral("%1-%2.png").arg(QString::fromStdString(state.name), variant.name);
        state.show([&](QWidget& popup) {
            const QImage image = test::popupPicture(popup, variant.ratio, QColor(0xC7, 0xD9, 0xE8));
            isSaved = image.save(folder.filePath(name)) && isSaved;
        });
    }
    return isSaved;
}

bool saveMainWindow(const QDir& folder, const test::Variant& variant) {
    const auto nothing = [] {};
    test::MenuBarWorld world;
    MainWindow window(world.model(), world.platform.activation, [](const QUrl& /*url*/) {},
                      {nothing, nothing, [](QRect /*place*/) {}, nothing});
    window.resize(window.sizeHint());
    return test::pictureOf(window, variant.look, variant.ratio)
        .save(folder.filePath(QStringLiteral("main-window-%1.png").arg(variant.name)));
}

/// Every size and badge on a bar of this appearance, with an enlarged copy below each size.
QImage trayIcons(ColorScheme bar) {
    constexpr int cell = 208;
    constexpr int enlargement = 4;
    const QList<int> sides{16, 22, 24, 32, 44, 48};
    const QList<int> counts{0, 1, 2, 9, 12, 99, 100};
    QImage image(static_cast<int>(counts.size()) * cell, static_cast<int>(sides.size()) * cell,
                 QImage::Format_RGB32);
    image.fill(bar == ColorScheme::dark ? QColor(0x17, 0x17, 0x1A) : QColor(0xEF, 0xF0, 0xF1));
    QPainter painter(&image);
    int top = 8;
    for (const int side : sides) {
        int left = 4;
        for (const int count : counts) {
            const QImage icon = statusicon::image(side, count, bar);
            painter.drawImage(left, top, icon);
            const int large = std::min(side * enlargement, cell - side - 12);
            painter.drawImage(left + side + 4, top, icon.scaled(large / side * side, large / side * side));
            left += cell;
        }
        top += cell;
    }
    return image;
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    if (argc != 2) {
        std::fputs("usage: WindowGallery FOLDER\n", stderr);
        return 2;
    }
    const test::ApplicationStyle style;
    LinuxWindowShadow shadow;
    const PopupCards popupCards(shadow);
    translations::install(*QCoreApplication::instance());
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    folder.mkpath(QStringLiteral("."));
    for (const test::Variant& variant : test::galleryVariants()) {
        const test::LargeText size(variant.textScale);
        if (!saveWindows(folder, variant) || !savePanels(folder, variant) || !savePopups(folder, variant) ||
            !saveMainWindow(folder, variant))
            return 1;
    }
    return trayIcons(ColorScheme::light).save(folder.filePath(QStringLiteral("tray-icons-light.png"))) &&
                   trayIcons(ColorScheme::dark).save(folder.filePath(QStringLiteral("tray-icons-dark.png")))
               ? 0
               : 1;
}

#pragma once

#include "App/Support/MenuBarSupport.h"
#include "App/Support/WindowStates.h"
#include "Controls/Controls.h"
#include "MainWindow.h"
#include "MenuBar/TrayMenu.h"
#include "Style/CorvaneStyle.h"
#include "Style/Tokens.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QImage>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>

#include <functional>
#include <string>
#include <vector>

namespace corvane::test {

/// During its lifetime, the toolkit draws with the application's style.
class ApplicationStyle {
  public:
    ApplicationStyle() { QApplication::setStyle(new CorvaneStyle); }
    ApplicationStyle(const ApplicationStyle&) = delete;
    ApplicationStyle& operator=(const ApplicationStyle&) = delete;
    ~ApplicationStyle() { QApplication::setStyle(before_); }

  private:
    QString before_ = QApplication::style()->name();
};

/// An open menu or picker's list, with a name that is valid as a file name. `draw` is called with its window.
struct PopupState {
    std::string name;
    std::function<void(const std::function<void(QWidget&)>& draw)> show;
};

/// Opens the menu with its first entry highlighted.
inline void open(QMenu& menu, const std::function<void(QWidget&)>& draw) {
    menu.popup(QPoint(100, 100));
    menu.setActiveAction(menu.actions().front());
    draw(menu);
    menu.close();
}

/// Every menu and list that the application draws itself.
inline std::vector<PopupState> popupStates() {
    using Draw = std::function<void(QWidget&)>;
    const auto nothing = [] {};
    const auto tray = [nothing](MenuBarWorld& world, const Draw& draw, Qt::LayoutDirection direction) {
        TrayMenu menu(world.model(), {nothing, nothing, nothing});
        menu.setLayoutDirection(direction);
        open(menu, draw);
    };
    const auto addSessions = [](MenuBarWorld& world) {
        world.connect();
        world.codexDone("c", "site");
        world.runs("b", "infra-terraform");
        world.runs("d", "very-long-repository-name-of-the-customer-portal-rewrite-2026");
        world.waits("a", "R&D");
    };
    const auto quiet = [](MenuBarWorld& world) { world.model().quietForAnHour(); };
    const auto picker = [](const Draw& draw, const char* name, Qt::LayoutDirection direction) {
        ModelFixture fixture;
        auto view = fixture.settings();
        view->setLayoutDirection(direction);
        view->tabs().setCurrentIndex(1);
        view->show();
        for (auto* const each : view->findChildren<Picker*>()) {
            if (each->accessibleName() != QLatin1String(name)) continue;
            each->showPopup();
            draw(*each->view()->window());
            each->hidePopup();
        }
    };
    const auto windowMenu = [nothing](const Draw& draw, int index) {
        MenuBarWorld world;
        MainWindow window(world.model(), world.platform.activation, [](const QUrl& /*url*/) {},
                          {nothing, nothing, [](QRect /*place*/) {}, nothing});
        window.show();
        open(*window.menuBar()->actions().at(index)->menu(), draw);
    };
    return {
        {"menu-tray",
         [=](const Draw& draw) {
             MenuBarWorld world;
             addSessions(world);
             tray(world, draw, Qt::LeftToRight);
         }},
        {"menu-tray-quiet",
         [=](const Draw& draw) {
             MenuBarWorld world;
             addSessions(world);
             quiet(world);
             tray(world, draw, Qt::LeftToRight);
         }},
        {"menu-tray-not-connected",
         [=](const Draw& draw) {
             MenuBarWorld world;
             tray(world, draw, Qt::LeftToRight);
         }},
        {"menu-tray-right-to-left",
         [=](const Draw& draw) {
             MenuBarWorld world;
             addSessions(world);
             quiet(world);
             world.runs("e", "متجر-الكتب");
             tray(world, draw, Qt::RightToLeft);
         }},
        {"menu-file", [=](const Draw& draw) { windowMenu(draw, 0); }},
        {"menu-window", [=](const Draw& draw) { windowMenu(draw, 1); }},
        {"list-sounds", [=](const Draw& draw) { picker(draw, "Finished sound", Qt::LeftToRight); }},
        {"list-reminders", [=](const Draw& draw) { picker(draw, "Remind me again", Qt::LeftToRight); }},
        {"list-sounds-right-to-left",
         [=](const Draw& draw) { picker(draw, "Finished sound", Qt::RightToLeft); }},
    };
}

/// The popup on a plain desktop.
inline QImage popupPicture(QWidget& popup, int ratio, QColor desktop) {
    QImage image(popup.size() * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(desktop);
    QPainter painter(&image);
    painter.setLayoutDirection(popup.layoutDirection());
    popup.render(&painter, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

} // namespace corvane::test

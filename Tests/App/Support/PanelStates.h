#pragma once

#include "App/Support/MenuBarSupport.h"
#include "App/Support/Pointing.h"
#include "MenuBar/SessionList.h"
#include "MenuBar/SessionRow.h"
#include "MenuBar/TrayPanel.h"
#include "MenuBarView.h"
#include "Style/Tokens.h"

#include <QImage>
#include <QPainter>
#include <QScrollBar>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace corvane::test {

/// The tray panel's content in one of the states that users see, with a name that is valid as a file name.
struct PanelState {
    std::string name;
    std::function<std::unique_ptr<MenuBarView>(MenuBarWorld&)> make;
};

/// Every state of the tray panel's content.
inline std::vector<PanelState> panelStates() {
    const auto made = [](MenuBarWorld& world) {
        auto view = std::make_unique<MenuBarView>(
            world.model(), MenuBarView::Actions{[] {}, [](const QUrl& /*url*/) {}, [] {}});
        view->resize(view->sizeHint());
        (void)view->grab(); // lays out what is not shown
        return view;
    };
    const auto addMixed = [](MenuBarWorld& world) {
        world.connect();
        world.codexDone("e", "site");
        world.claude("Stop", "d", "design-tokens");
        world.pass(51);
        world.claude("Notification", "b", "notes-api");
        world.pass(145);
        world.waits("a", "shop");
        world.pass(42);
        world.runs("c", "infra-terraform");
    };
    const auto quiet = [](MenuBarWorld& world) {
        AlertPreferences prefs = world.model().prefs();
        prefs.quietUntil = world.model().now() + Seconds(3600);
        world.model().setPrefs(prefs);
    };
    return {
        {"not-connected", [made](MenuBarWorld& world) { return made(world); }},
        {"nothing-runs",
         [made](MenuBarWorld& world) {
             world.connect();
             return made(world);
         }},
        {"nothing-runs-quiet",
         [made, quiet](MenuBarWorld& world) {
             world.connect();
             quiet(world);
             return made(world);
         }},
        {"mixed",
         [made, addMixed](MenuBarWorld& world) {
             addMixed(world);
             return made(world);
         }},
        {"mixed-hover-and-focus",
         [made, addMixed, quiet](MenuBarWorld& world) {
             addMixed(world);
             quiet(world);
             auto view = made(world);
             hover(*view->list().rows().at(1));
             focusByKeyboard(*view->list().rows().at(3));
             hover(*button(*view, "Quiet for 1 hour"));
             return view;
         }},
        {"many",
         [made, addMixed](MenuBarWorld& world) {
             addMixed(world);
             for (const char* const project : {"billing-worker", "search", "web"})
                 world.runs(project, project);
             auto view = made(world);
             view->list().verticalScrollBar()->setValue(24);
             focusByKeyboard(*button(*view, "Settings…"));
             return view;
         }},
        {"long-names",
         [made](MenuBarWorld& world) {
             world.connect();
             world.waits("a", "very-long-repository-name-of-the-customer-portal-rewrite-2026");
             world.runs("b", "プロジェクト-工具箱");
             world.waits("c", "متجر-الكتب");
             return made(world);
         }},
        {"right-to-left",
         [made, addMixed, quiet](MenuBarWorld& world) {
             addMixed(world);
             quiet(world);
             auto view = made(world);
             view->setLayoutDirection(Qt::RightToLeft);
             (void)view->grab();
             return view;
         }},
    };
}

/// Paints the panel's card with this content at the painter's origin.
inline void paintPanel(QPainter& painter, MenuBarView& view, Look look) {
    view.setPalette(Tokens::palette(look));
    TrayPanel::paintCard(painter, view.size(), look);
    painter.setLayoutDirection(view.layoutDirection()); // as Qt 6.8 does by itself, and as on a screen
    view.render(&painter, QPoint(), QRegion(), QWidget::DrawChildren);
}

/// The panel's card on a plain desktop.
inline QImage panelPicture(MenuBarView& view, Look look, int ratio) {
    QImage image(view.size() * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Tokens::background.color(look));
    QPainter painter(&image);
    paintPanel(painter, view, look);
    return image;
}

} // namespace corvane::test

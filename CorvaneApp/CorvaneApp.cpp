#include "CorvaneApp.h"

#include "ApplicationMenuBar.h"
#include "MainWindow.h"
#include "MenuBar/MenuBarLabel.h"
#include "MenuBar/TrayMenu.h"
#include "MenuBar/TrayPanel.h"
#include "MenuBarView.h"
#include "Platform/Appearance.h"
#include "Platform/LoginItem.h"
#include "Platform/Scheduler.h"
#include "Platform/StatusItem.h"
#include "Settings/SettingsTabBar.h"
#include "Settings/SettingsWindow.h"
#include "SettingsView.h"
#include "Style/TextScale.h"
#include "Style/Tokens.h"

#include <QApplication>
#include <QFont>
#include <QPointer>
#include <QStyleHints>

#include <chrono>
#include <optional>
#include <utility>

namespace corvane {

namespace {

// How long a tray may take to appear after the start.
constexpr std::chrono::seconds trayPatience{5};

/// Scales the desktop's font for the toolkit's widgets of class `kind` by `change`.
void scaleFont(const char* kind, double change) {
    QFont font = QApplication::font(kind);
    if (font.pointSizeF() > 0) {
        font.setPointSizeF(font.pointSizeF() * change);
    } else {
        font.setPixelSize(qRound(font.pixelSize() * change));
    }
    QApplication::setFont(font, kind);
}

} // namespace

CorvaneApp::CorvaneApp(const AgentConnector& connector, UserDefaults& defaults,
                       const PlatformServices& services, links::Opener openLink)
    : services_(services)
    , openLink_(std::move(openLink))
    , banners_(services)
    , model_(connector, defaults, banners_, services) {
    QApplication::setQuitOnLastWindowClosed(false);
    // On macOS, Tab skips buttons unless the user turns keyboard navigation on: only the mouse could then
    // connect an agent or answer a banner.
    QGuiApplication::styleHints()->setTabFocusBehavior(Qt::TabFocusAllControls);
    if (services_.menuBars == MenuBars::ofApplication)
        menuBar_ = std::make_unique<ApplicationMenuBar>(commands());
    followAppearance();
    connect(&services_.appearance, &Appearance::changed, this, &CorvaneApp::followAppearance);

    menu_ = std::make_unique<TrayMenu>(
        model_,
        TrayMenu::Actions{[this] { openMainWindow(); }, [this] { openSettings(); }, &QCoreApplication::quit});
    // A press on the icon with the other button may leave the keyboard focus with the panel.
    connect(menu_.get(), &QMenu::aboutToShow, this, [this] {
        if (panel_) panel_->hide();
    });
    services_.statusItem.setMenu(menu_.get());
    connect(&services_.statusItem, &StatusItem::pressed, this,
            [this](QRect place) { requirePanel().toggle(place); });
    connect(&services_.statusItem, &StatusItem::availabilityChanged, this, [this] {
        isTrayKnown_ = true;
        followTray();
    });
    label_ = std::make_unique<MenuBarLabel>(model_, services_.statusItem, services_.singleInstance,
                                            [this] { openMainWindow(); });
    connect(&popups_, &PopupWatch::changed, this, [this] { banners_.keepClearOf(popups_.open()); });
}

CorvaneApp::~CorvaneApp() {
    services_.statusItem.setMenu(nullptr);
}

void CorvaneApp::launch() {
    label_->appear();
    services_.scheduler.after(trayPatience, [self = QPointer<CorvaneApp>(this)] {
        if (self) self->lookForTray();
    });
}

void CorvaneApp::lookForTray() {
    isTrayKnown_ = true;
    followTray();
    const bool isWanted = !services_.statusItem.isAvailable() && !services_.loginItem.hasStartedThisProcess();
    // A user who has closed a window by now knows how to open it.
    if (isWanted && !mainWindow_ && !settingsWindow_) openMainWindow();
}

void CorvaneApp::followTray() {
    if (mainWindow_) mainWindow_->setTray(!isTrayKnown_ || services_.statusItem.isAvailable());
}

void CorvaneApp::followAppearance() {
    const Appearance& wanted = services_.appearance;
    const double before = textscale::factor();
    const bool isScaled = textscale::setFactor(wanted.textScale());
    QApplication::setPalette(Tokens::palette({wanted.colorScheme(), wanted.contrast()}));
    if (!isScaled) return;
    for (const char* const kind : {"QMenu", "QMenuBar"})
        scaleFont(kind, textscale::factor() / before);
    rebuildViews();
}

void CorvaneApp::rebuildViews() {
    banners_.rebuild();
    if (mainWindow_) mainWindow_->rebuild();
    if (settingsWindow_) settingsWindow_->rebuild();
    if (panel_) panel_->rebuild();
}

void CorvaneApp::openMainWindow() {
    if (!mainWindow_)
        mainWindow_ = std::make_unique<MainWindow>(model_, services_.activation, openLink_, commands(),
                                                   services_.menuBars);
    followTray();
    mainWindow_->present();
}

void CorvaneApp::openSettings() {
    if (!settingsWindow_)
        settingsWindow_ = std::make_unique<SettingsWindow>(
            model_, services_.activation,
            [this](QWidget* parent) {
                return new SettingsView(
                    model_, services_.fileBrowser, [this] { return services_.appearance.reduceMotion(); },
                    openLink_, parent);
            },
            commands());
    settingsWindow_->present();
}

void CorvaneApp::openAbout() {
    openSettings();
    settingsWindow_->view().tabs().setCurrentIndex(SettingsView::aboutTab);
}

void CorvaneApp::openPanel(QRect menu) {
    const QRect icon = services_.statusItem.place();
    requirePanel().open(icon.isEmpty() ? menu : icon);
}

TrayPanel& CorvaneApp::requirePanel() {
    if (!panel_) {
        panel_ = std::make_unique<TrayPanel>(model_, services_, [this](QWidget* parent) {
            return new MenuBarView(model_, {[this] { openSettings(); }, openLink_, &QCoreApplication::quit},
                                   parent);
        });
        connect(panel_.get(), &TrayPanel::menuRequested, menu_.get(),
                [this](QPoint place) { menu_->popup(place); });
        new WindowCommands(*panel_, commands());
        popups_.add(*panel_, [this] { return panel_->windowGeometry(); });
    }
    return *panel_;
}

CommandHandlers CorvaneApp::commands() {
    return {[this] { openMainWindow(); }, [this] { openSettings(); }, [this](QRect menu) { openPanel(menu); },
            &QCoreApplication::quit, [this] { openAbout(); }};
}

} // namespace corvane

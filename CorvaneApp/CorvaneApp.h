#pragma once

#include "BannerController.h"
#include "Controls/Links.h"
#include "Controls/PopupCards.h"
#include "Controls/PopupWatch.h"
#include "Controls/Symbols.h"
#include "Controls/WindowCommands.h"
#include "Model/AppModel.h"
#include "Platform/Platform.h"

#include <QObject>
#include <QRect>

#include <memory>

namespace corvane {

class ApplicationMenuBar;
class MainWindow;
class MenuBarLabel;
class SettingsWindow;
class TrayMenu;
class TrayPanel;

/// The application: the model, the tray icon with its panel and menu, and the windows. It lives in the tray:
/// closing windows never quits it. Main thread only.
class CorvaneApp : public QObject {
    Q_OBJECT

  public:
    /// Shows the tray icon. What is passed by reference must outlive the application.
    CorvaneApp(const AgentConnector& connector, UserDefaults& defaults, const PlatformServices& services,
               links::Opener openLink = links::openInBrowser);
    ~CorvaneApp() override;

    [[nodiscard]] AppModel& model() { return model_; }

    /// To be called once after the start: shows the main window to a user who has not completed onboarding,
    /// and only the tray icon to all others. If no icon can be shown after a while and the user has started
    /// the application, shows the main window too: nothing else would show that it runs.
    void launch();

    /// Created on first use; null until then.
    [[nodiscard]] MainWindow* mainWindow() const { return mainWindow_.get(); }
    [[nodiscard]] SettingsWindow* settingsWindow() const { return settingsWindow_.get(); }
    [[nodiscard]] TrayPanel* panel() const { return panel_.get(); }
    /// Null where windows have menus of their own.
    [[nodiscard]] const ApplicationMenuBar* menuBar() const { return menuBar_.get(); }

    void openMainWindow();
    void openSettings();
    void openAbout();
    /// Opens the panel at the tray icon; if the icon's position is unknown, below `menu`, the title of the
    /// menu that the command came from; without either, where the icon is to be expected.
    void openPanel(QRect menu = {});

  private:
    void followAppearance();
    void lookForTray();
    /// Updates whether the main window says that there is no tray.
    void followTray();
    /// Rebuilds all existing views at the current text size.
    void rebuildViews();
    [[nodiscard]] TrayPanel& requirePanel();
    [[nodiscard]] CommandHandlers commands();

    PlatformServices services_;
    symbols::SystemScope symbolScope_{services_.systemSymbols};
    PopupCards popupCards_{services_.windowShadow};
    links::Opener openLink_;
    BannerController banners_;
    AppModel model_;
    PopupWatch popups_;
    std::unique_ptr<TrayMenu> menu_;
    std::unique_ptr<MenuBarLabel> label_;
    std::unique_ptr<ApplicationMenuBar> menuBar_;
    std::unique_ptr<MainWindow> mainWindow_;
    std::unique_ptr<SettingsWindow> settingsWindow_;
    std::unique_ptr<TrayPanel> panel_;
    bool isTrayKnown_ = false; // its availability was reported, or the wait for that is over
};

} // namespace corvane

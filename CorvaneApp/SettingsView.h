#pragma once

#include "Controls/Controls.h"
#include "Controls/Links.h"

#include <QTabBar>
#include <QWidget>

#include <array>

class QStackedWidget;

namespace corvane {

class AgentCard;
class AppModel;
class BorderedButton;
class Divider;
class ErrorText;
class FileBrowser;
class LinkButton;
class Paragraph;

/// The row of tabs at the top of the settings: a symbol and a label each, the chosen one underlined.
class SettingsTabBar : public QTabBar {
    Q_OBJECT

  public:
    explicit SettingsTabBar(QWidget* parent);

    /// Adds a tab with the symbol of this name.
    void addSymbolTab(const QString& symbol, const QString& label);

  protected:
    [[nodiscard]] QSize tabSizeHint(int index) const override;
    [[nodiscard]] QSize minimumTabSizeHint(int index) const override;
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
};

/// The agents' cards, the way to the last backup, and a test alert.
class AgentsTab : public QWidget {
    Q_OBJECT

  public:
    AgentsTab(AppModel& model, FileBrowser& fileBrowser, QWidget* parent);

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void refresh();
    void layOut();

    AppModel& model_;
    std::array<AgentCard*, 2> cards_;
    LinkButton* backup_;
    ErrorText* error_;
    BorderedButton* test_;
};

/// What alerts are made for, and how they sound. Shows the stored preferences; only what the user does
/// changes them.
class AlertsTab : public QWidget {
    Q_OBJECT

  public:
    AlertsTab(AppModel& model, const ReduceMotion& reduceMotion, QWidget* parent);

  protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void refresh();
    /// Has the login item's switch show what is really so.
    void refreshLoginItem();
    void layOut();

    AppModel& model_;
    /// While the controls are set from the model, their changes are not the user's.
    bool isRefreshing_ = false;
    FormGroup* toggles_;
    FormGroup* pickers_;
    Switch* alertWhenDone_;
    Switch* opensAtLogin_;
    Switch* soundsOn_;
    Picker* waitingSound_;
    Picker* doneSound_;
    Picker* reminder_;
    ErrorText* error_;
};

/// The application's name and version, and the ways to its maker.
class AboutTab : public QWidget {
    Q_OBJECT

  public:
    AboutTab(const links::Opener& openLink, QWidget* parent);

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void layOut();

    Paragraph* name_;
    Paragraph* description_;
    LinkButton* website_;
    Paragraph* dot_;
    LinkButton* contact_;
    Divider* divider_;
    Paragraph* heading_;
    Paragraph* apps_;
    LinkButton* more_;
};

/// The settings window's content, three tabs. Holds no state of its own but the chosen tab; shows the model
/// and calls it. Main thread only.
class SettingsView : public QWidget {
    Q_OBJECT

  public:
    /// At the ordinary text size.
    static constexpr QSize contentSize{560, 440};

    /// What is passed by reference must outlive the view.
    SettingsView(AppModel& model, FileBrowser& fileBrowser, const ReduceMotion& reduceMotion,
                 const links::Opener& openLink, QWidget* parent = nullptr);

    [[nodiscard]] SettingsTabBar& tabs() const { return *tabs_; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    SettingsTabBar* tabs_;
    Divider* divider_;
    QStackedWidget* pages_;
};

} // namespace corvane

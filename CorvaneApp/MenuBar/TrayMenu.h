#pragma once

#include <QMenu>

#include <functional>
#include <string>
#include <vector>

namespace corvane {

class AppModel;

/// The tray's menu, for hosts that show nothing else and for a click with the other button: what the panel
/// offers, as text. Follows the model: its entries at once, running times only while it is open, since every
/// change is sent to a host on the session bus, visible or not. Main thread only.
class TrayMenu : public QMenu {
    Q_OBJECT

  public:
    struct Actions {
        std::function<void()> openMainWindow;
        std::function<void()> openSettings;
        std::function<void()> quit;
    };

    /// `model` must outlive the menu.
    TrayMenu(AppModel& model, const Actions& actions);

    /// At the ordinary text size.
    static constexpr int largestWidth = 380;

  protected:
    void changeEvent(QEvent* event) override;

  private:
    [[nodiscard]] QAction* makeEntry(const QString& id);
    void connectAgent();
    /// Refreshes the menu if its content has changed, or, for the running times, while it counts as open.
    void follow();
    void refresh();
    void refreshSessions();
    void noteOpening();

    AppModel& model_;
    Actions actions_;
    std::vector<std::string> content_; // what is shown, without running times
    int openChanges_ = 0;              // changes of the model for which it still counts as open
    QAction* connect_;
    QAction* sessionsEnd_; // the divider below the sessions
    std::vector<QAction*> sessions_;
    QAction* quiet_;
    QAction* quietUntil_;
    QAction* resume_;
};

} // namespace corvane

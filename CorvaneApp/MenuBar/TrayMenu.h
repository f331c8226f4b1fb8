#pragma once

#include <QMenu>

#include <functional>
#include <string>
#include <vector>

namespace corvane {

class AppModel;

/// The tray's menu, for hosts that show nothing else and for a click with the other button: what the panel
/// offers, as text. Follows the model by itself: what there is at once, the times that run only while it is
/// open, since a host on the message bus is told of every change, seen or not. Main thread only.
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
    /// Brings what there is up to date, and where that has changed, or the menu is open, the times too.
    void follow();
    void refresh();
    void refreshSessions();
    void noteOpening();

    AppModel& model_;
    Actions actions_;
    std::vector<std::string> content_; // what it shows, without the times that run
    int openChanges_ = 0;              // of the model, for which it still counts as open
    QAction* connect_;
    QAction* sessionsEnd_; // the divider below the sessions
    std::vector<QAction*> sessions_;
    QAction* quiet_;
    QAction* quietUntil_;
    QAction* resume_;
};

} // namespace corvane

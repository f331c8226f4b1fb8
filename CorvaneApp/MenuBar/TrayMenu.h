#pragma once

#include <QMenu>

#include <functional>
#include <string>
#include <vector>

namespace corvane {

class AppModel;

/// The tray's menu, for hosts that show nothing else and for a click with the other button: what the panel
/// offers, as text. Follows the model by itself. Main thread only.
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

  private:
    [[nodiscard]] QAction* makeEntry(const QString& id);
    void refresh();

    AppModel& model_;
    QAction* sessionsEnd_; // the divider below the sessions
    std::vector<QAction*> sessions_;
    QAction* quiet_;
    QAction* resume_;
};

} // namespace corvane

#pragma once

#include <QObject>
#include <QString>

#include <functional>

namespace corvane {

class AppModel;
class SingleInstance;
class StatusItem;

/// The status item's icon: a bell, with a badge while agents wait for the user, which shows their number from
/// two on. Opens the main window on the first run and whenever the application is started again. Main thread
/// only.
class MenuBarLabel : public QObject {
    Q_OBJECT

  public:
    /// Shows the icon at once and keeps it up to date. What is passed by reference must outlive the label.
    MenuBarLabel(AppModel& model, StatusItem& statusItem, const SingleInstance& singleInstance,
                 std::function<void()> openWindow);

    /// To be called once, when the application has started.
    void appear();

  private:
    void update();

    AppModel& model_;
    StatusItem& statusItem_;
    std::function<void()> openWindow_;
    int shownCount_ = -1;
    QString shownToolTip_;
};

} // namespace corvane

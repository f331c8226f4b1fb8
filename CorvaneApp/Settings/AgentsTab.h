#pragma once

#include <QWidget>

#include <vector>

namespace corvane {

class AgentCard;
class AppModel;
class BorderedButton;
class ErrorText;
class FileBrowser;
class LinkButton;

/// The agents' cards, a link to the last backup, and a test alert.
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
    std::vector<AgentCard*> cards_;
    LinkButton* backup_;
    ErrorText* error_;
    BorderedButton* test_;
};

} // namespace corvane

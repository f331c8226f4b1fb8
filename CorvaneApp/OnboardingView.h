#pragma once

#include "Controls/Links.h"

#include <QString>
#include <QWidget>

#include <vector>

namespace corvane {

class AgentCard;
class AppModel;
class BorderedButton;
class ErrorText;
class LinkButton;
class Paragraph;

/// The main window's content: explains in two sentences what the application does and lets the user connect
/// the agents. Stateless; shows the model and calls it. Main thread only.
class OnboardingView : public QWidget {
    Q_OBJECT

  public:
    /// The minimum size at the ordinary text size; texts that need more room make the view taller.
    static constexpr QSize contentSize{560, 460};

    /// `model` must outlive the view.
    OnboardingView(AppModel& model, links::Opener openLink, QWidget* parent = nullptr);

    /// Sets whether the desktop shows the application's icon. If not, the view says so, and how to come back.
    void setTray(bool isThere);

  Q_SIGNALS:
    /// Emitted when the user has completed onboarding, which the model then knows. The window should close.
    void done();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void refresh();
    void layOut();
    [[nodiscard]] static QString introduction(bool hasTray);

    AppModel& model_;
    Paragraph* title_;
    Paragraph* introduction_;
    Paragraph* withoutTray_;
    std::vector<AgentCard*> cards_;
    ErrorText* error_;
    BorderedButton* test_;
    LinkButton* contact_;
    BorderedButton* done_;
};

} // namespace corvane

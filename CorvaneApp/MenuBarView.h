#pragma once

#include "Controls/Links.h"
#include "MenuBar/TrayPanelView.h"

#include <functional>

namespace corvane {

class AppModel;
class Divider;
class LineLabel;
class Paragraph;
class PlainButton;
class PrimaryButton;
class SessionList;

/// The tray panel's content: a header, the sessions or a hint, a line during quiet time, and a footer with
/// the application's actions. Follows the model. Main thread only.
class MenuBarView : public TrayPanelView {
    Q_OBJECT

  public:
    /// At the ordinary text size.
    static constexpr int viewWidth = 340;

    /// What the view cannot do by itself.
    struct Actions {
        std::function<void()> openSettings;
        links::Opener openLink;
        std::function<void()> quit;
    };

    /// `model` must outlive the view.
    MenuBarView(AppModel& model, Actions actions, QWidget* parent = nullptr);

    [[nodiscard]] SessionList& list() const { return *list_; }

    /// The fixed width, and the height that the content currently needs.
    [[nodiscard]] QSize sizeHint() const override;
    void prepareToOpen() override;

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void refresh();
    /// Lays everything out from the top and returns the total height. Moves nothing when `isTrial`.
    int layOut(bool isTrial) const; // NOLINT(modernize-use-nodiscard): called for what it moves, too
    void orderTabs();
    /// Updates which control is under the pointer. Qt does so when the pointer moves, not when controls move
    /// under it.
    void followPointer();

    AppModel& model_;
    LineLabel* title_;
    PlainButton* contact_;
    Divider* upperDivider_;
    Paragraph* hint_;
    PrimaryButton* connect_;
    Paragraph* nothingRuns_;
    SessionList* list_;
    LineLabel* quietUntil_;
    PlainButton* resume_;
    Divider* lowerDivider_;
    PlainButton* quiet_;
    PlainButton* settings_;
    PlainButton* quit_;
    int height_ = -1;
};

} // namespace corvane

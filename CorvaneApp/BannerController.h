#pragma once

#include "Platform/FloatingPanel.h"
#include "Platform/Platform.h"
#include "Sessions/SessionBoard.h"

#include <QObject>

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Puts the alerts on the screen: at most three banners at a time, one below the other at the top of the main
/// screen, the newest on top. A session's waiting banner has the session's `id`, its done banner that `id`
/// after "done:".
///
/// Main thread only; a call from another thread ends the program.
class BannerController : public QObject {
    Q_OBJECT

  public:
    static constexpr std::size_t maxBanners = 3;

    /// How long a done banner stands.
    static constexpr std::chrono::milliseconds doneLifetime{6000};

    /// What `services` refers to must outlive the controller.
    explicit BannerController(Services services);
    ~BannerController() override;

    /// Called when the user wants to go to the session's terminal, or to snooze it. The banner stays until it
    /// is dismissed. Unset, the button does nothing.
    std::function<void(const AgentSession&)> onJump;
    std::function<void(const AgentSession&)> onSnooze;

    /// Shows the session's waiting banner, or refreshes it in place, and announces it.
    void showWaiting(const AgentSession& session);

    /// Shows the session's done banner, or refreshes it in place, and announces it. It goes six seconds after
    /// it first came, refreshed or not.
    void showDone(const AgentSession& session);

    /// Removes the banner with this identifier; an unknown one is ignored.
    void dismiss(std::string_view id);

    /// Makes the views of all banners anew, for another text size. They keep their place in the stack and
    /// come without a fade, and no announcement is asked for.
    void rebuild();

    /// The identifier of a session's done banner.
    [[nodiscard]] static std::string doneID(const AgentSession& session);

  private:
    struct Entry {
        std::string id;
        std::shared_ptr<FloatingPanel> panel;
        std::function<std::unique_ptr<PanelContent>()> makeView;
    };
    using ViewMaker = decltype(Entry::makeView);

    /// Shows the view that `makeView` makes, and announces it.
    void present(const std::string& id, ViewMaker makeView);
    void layout();
    void restack();
    void fadeIn(FloatingPanel& panel);
    void fadeOut(std::shared_ptr<FloatingPanel> panel);
    /// Has the view's accessible name spoken: the title, a comma and the subtitle.
    void announce(PanelContent& view);

    [[nodiscard]] std::vector<Entry>::iterator entry(std::string_view id);

    Services services_;
    std::vector<Entry> panels_; // the newest first
};

} // namespace corvane

#pragma once

#include "Controls/PopupWatch.h"
#include "Model/Banners.h"
#include "Platform/BannerPanel.h"
#include "Platform/Platform.h"
#include "Sessions/SessionBoard.h"

#include <QObject>
#include <QRect>

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Shows the alerts: at most three banners at a time, one below the other at the top of the main screen, the
/// newest on top, and at most one notice among them, which does not count. A session's waiting banner has the
/// session's `id`, its done banner that `id` prefixed by "done:".
///
/// Main thread only; a call from another thread aborts the program.
class BannerController : public QObject, public Banners {
    Q_OBJECT

  public:
    static constexpr std::size_t maxBanners = 3;

    /// How long a done banner is shown.
    static constexpr std::chrono::milliseconds doneLifetime{6000};

    /// How long the notice about a terminal is shown.
    static constexpr std::chrono::milliseconds noticeLifetime{4000};

    /// What `services` refers to must outlive the controller.
    explicit BannerController(PlatformServices services);
    ~BannerController() override;

    void showWaiting(const AgentSession& session) override;
    /// The banner is removed six seconds after it was first shown, refreshed or not.
    void showDone(const AgentSession& session) override;
    /// The notice is removed four seconds after the last call.
    void showTerminalMissing(const AgentSession& session) override;
    void dismiss(std::string_view id) override;
    void update(const std::function<void()>& changes) override;

    /// Rebuilds the views of all banners for a new text size. They keep their place in the stack; nothing
    /// fades and nothing is announced.
    void rebuild();

    /// Keeps the banners clear of these open windows, the application's own panel and menus: below them on
    /// the screen where they would overlap, and below them in the stacking order. Call it again whenever one
    /// of them opens, closes or moves. Banners return to their places a moment after a window has closed.
    void keepClearOf(const std::vector<OpenPopup>& popups);

    /// The identifier of a session's done banner.
    [[nodiscard]] static std::string doneID(const AgentSession& session);

  private:
    struct Entry {
        std::string id;
        std::shared_ptr<BannerPanel> panel; // null until the first screen update
        std::function<std::unique_ptr<PanelContent>()> makeView;
        bool isOutdated = true; // the panel does not show the latest `makeView` yet
        QPoint origin{};        // of the panel, once it has been laid out
    };
    using ViewMaker = decltype(Entry::makeView);

    /// Shows the view that `makeView` creates in the banner, and announces it.
    void present(const std::string& id, ViewMaker makeView);
    /// Evicts the oldest banners beyond `maxBanners`.
    void evict();
    /// Brings the screen up to date with `panels_`.
    void updateScreen();
    void layOut();
    /// Where to put a banner that would be at `place`: lower if it would cover an occupied area; at `place`
    /// after all if `frame` has no space for it lower down.
    [[nodiscard]] QRect clearPlace(QRect place, const QRect& frame) const;
    void occupy();
    /// Calls `occupy` once no button is pressed, or after `waits` double-click intervals.
    void occupyLater(int waits);
    void restack();
    void fadeIn(BannerPanel& panel);
    void fadeOut(std::shared_ptr<BannerPanel> panel);
    [[nodiscard]] std::vector<Entry>::iterator entry(std::string_view id);

    PlatformServices services_;
    std::vector<Entry> panels_;   // the newest first
    std::vector<QRect> occupied_; // what the banners currently keep clear of
    std::vector<QRect> wantedClear_;
    std::size_t noticeCount_ = 0;  // notices shown so far
    std::size_t clearChanges_ = 0; // changes of `wantedClear_` so far
    bool isUpdating_ = false;      // the screen is updated at the end of `update`
    bool hasChanged_ = false;      // the screen does not show `panels_` and `occupied_` yet
};

} // namespace corvane

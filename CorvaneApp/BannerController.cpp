#include "BannerController.h"

#include "BannerViews.h"
#include "Controls/SecondHand.h"
#include "Platform/Announcer.h"
#include "Platform/Appearance.h"
#include "Platform/Scheduler.h"
#include "Platform/Screens.h"
#include "Platform/Shared/MainThread.h"
#include "TerminalNotice.h"

#include <QGuiApplication>
#include <QPointer>
#include <QScopeGuard>
#include <QStyleHints>
#include <QWidget>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <iterator>
#include <utility>
#include <vector>

namespace corvane {

namespace {

using std::chrono::milliseconds;

constexpr int longestPress = 4; // double-click intervals
constexpr int screenMargin = 8;
constexpr int bannerSpacing = 8;
constexpr int slide = 12;
constexpr milliseconds fadeInDuration{220};
constexpr milliseconds fadeOutDuration{180};
// A little longer than the fade, so that the panel is never hidden before it is invisible.
constexpr milliseconds orderOutDelay{200};
// Cannot clash with a session's identifier, which begins with its agent's name.
constexpr std::string_view noticeID = "notice:terminal";

} // namespace

BannerController::BannerController(PlatformServices services)
    : services_(std::move(services)) {
    connect(&services_.screens, &Screens::changed, this, &BannerController::layOut);
}

BannerController::~BannerController() = default;

std::string BannerController::doneID(const AgentSession& session) {
    return "done:" + session.id();
}

void BannerController::showWaiting(const AgentSession& session) {
    requireMainThread();
    // Shared rather than copied: a session holds its message.
    const auto shown = std::make_shared<const AgentSession>(session);
    present(session.id(), [self = QPointer(this), shown, clock = services_.clock] {
        auto banner = std::make_unique<WaitingBanner>(
            *shown, clock,
            [self, shown] {
                if (self && self->onJump) self->onJump(*shown);
            },
            [self, shown] {
                if (self && self->onSnooze) self->onSnooze(*shown);
            },
            [self, shown] {
                if (self) self->dismiss(shown->id());
            });
        banner->setTerminalMissing(self && self->isTerminalMissing && self->isTerminalMissing(*shown));
        return banner;
    });
}

void BannerController::showDone(const AgentSession& session) {
    requireMainThread();
    const std::string id = doneID(session);
    const auto close = [self = QPointer(this), id] {
        if (self) self->dismiss(id);
    };
    present(id, [shown = std::make_shared<const AgentSession>(session), close] {
        return std::make_unique<DoneBanner>(*shown, close);
    });
    services_.scheduler.after(doneLifetime, close);
}

void BannerController::showTerminalMissing(const AgentSession& session) {
    requireMainThread();
    const QPointer self(this);
    const auto close = [self] {
        if (self) self->dismiss(noticeID);
    };
    present(std::string(noticeID),
            [session, close] { return std::make_unique<TerminalNotice>(session, close); });
    services_.scheduler.after(noticeLifetime, [self, close, number = ++noticeCount_] {
        if (self && self->noticeCount_ == number) close();
    });
}

void BannerController::dismiss(std::string_view id) {
    requireMainThread();
    const auto found = entry(id);
    if (found == panels_.end()) return;
    std::shared_ptr<BannerPanel> panel = std::move(found->panel);
    panels_.erase(found);
    if (panel) fadeOut(std::move(panel));
    hasChanged_ = true;
    if (!isUpdating_) updateScreen();
}

void BannerController::update(const std::function<void()>& changes) {
    requireMainThread();
    if (isUpdating_) {
        changes();
        return;
    }
    // Even if `changes` throws: the banners requested until then must be shown.
    const auto finish = qScopeGuard([this] {
        isUpdating_ = false;
        updateScreen();
        SecondHand::instance().beat();
    });
    isUpdating_ = true;
    changes();
}

std::vector<BannerController::Entry>::iterator BannerController::entry(std::string_view id) {
    return std::find_if(panels_.begin(), panels_.end(), [id](const Entry& entry) { return entry.id == id; });
}

void BannerController::present(const std::string& id, ViewMaker makeView) {
    if (const auto found = entry(id); found != panels_.end()) {
        found->makeView = std::move(makeView);
        found->isOutdated = true;
    } else {
        panels_.insert(panels_.begin(), {id, nullptr, std::move(makeView)});
        evict();
    }
    hasChanged_ = true;
    if (!isUpdating_) updateScreen();
}

void BannerController::evict() {
    const auto counts = [](const Entry& entry) { return entry.id != noticeID; };
    while (std::ranges::count_if(panels_, counts) > static_cast<std::ptrdiff_t>(maxBanners)) {
        const auto oldest = std::ranges::find_if(panels_.rbegin(), panels_.rend(), counts);
        std::shared_ptr<BannerPanel> panel = std::move(oldest->panel);
        panels_.erase(std::prev(oldest.base()));
        if (panel) fadeOut(std::move(panel));
    }
}

void BannerController::updateScreen() {
    // Most passes change nothing: the screen is then left alone. A screen locker that is above the banners
    // stays there.
    if (!std::exchange(hasChanged_, false)) return;
    std::vector<BannerPanel*> added;
    std::vector<PanelContent*> changed;
    // From the oldest to the newest, the order in which they were requested.
    for (auto entry = panels_.rbegin(); entry != panels_.rend(); ++entry) {
        if (!std::exchange(entry->isOutdated, false)) continue;
        std::unique_ptr<PanelContent> view = entry->makeView();
        changed.push_back(view.get());
        if (!entry->panel) {
            entry->panel = services_.panels.make();
            added.push_back(entry->panel.get());
        }
        const QSize size = view->size();
        entry->panel->setContent(std::move(view), size);
    }
    layOut();
    for (BannerPanel* const panel : added)
        fadeIn(*panel);
    if (!added.empty()) restack();
    for (PanelContent* const view : changed)
        services_.announcer.announce(view->accessibleName());
}

void BannerController::rebuild() {
    requireMainThread();
    for (const Entry& entry : panels_) {
        std::unique_ptr<PanelContent> view = entry.makeView();
        const QSize size = view->size();
        entry.panel->setContent(std::move(view), size);
    }
    layOut();
}

void BannerController::layOut() {
    const std::optional<QRect> frame = services_.screens.mainVisibleFrame();
    if (!frame) return;
    int top = frame->top() + screenMargin;
    std::vector<Entry*> others;
    std::vector<Entry*> lowered;
    for (Entry& entry : panels_) {
        const QSize size = entry.panel->size();
        const QPoint origin(frame->left() + (frame->width() - size.width()) / 2, top);
        const QRect place = clearPlace({origin, size}, *frame);
        (place.top() > entry.origin.y() ? lowered : others).push_back(&entry);
        entry.origin = place.topLeft();
        top = place.top() + size.height() + bannerSpacing;
    }
    // The lowest moves first: a compositing manager may draw between two moves, and would show cards that
    // overlap.
    std::for_each(lowered.rbegin(), lowered.rend(),
                  [](const Entry* entry) { entry->panel->setOrigin(entry->origin); });
    for (const Entry* const entry : others)
        entry->panel->setOrigin(entry->origin);
    restack();
}

QRect BannerController::clearPlace(QRect place, const QRect& frame) const {
    const QRect wanted = place;
    // The place below one may overlap another, so all of them are checked again.
    for (std::size_t i = 0; i < occupied_.size();) {
        if (!occupied_[i].intersects(place)) {
            ++i;
            continue;
        }
        place.moveTop(occupied_[i].bottom() + 1);
        i = 0;
    }
    return place.bottom() <= frame.bottom() ? place : wanted;
}

void BannerController::keepClearOf(const std::vector<OpenPopup>& popups) {
    requireMainThread();
    std::vector<QRect> areas;
    std::vector<QWidget*> windows;
    for (const OpenPopup& popup : popups) {
        // A window gets the presses on its shadow too, so its whole area is kept clear.
        const QRect content = popup.place.marginsRemoved(popup.window->contentsMargins());
        areas.push_back(popup.place | content.adjusted(0, 0, 0, bannerSpacing));
        windows.push_back(popup.window);
    }
    services_.panels.keepBelow(windows);
    const bool hasClosed = areas.size() < wantedClear_.size();
    wantedClear_ = std::move(areas);
    ++clearChanges_;
    if (hasClosed) {
        occupyLater(longestPress);
    } else {
        occupy();
    }
}

void BannerController::occupy() {
    occupied_ = wantedClear_;
    hasChanged_ = true;
    if (!isUpdating_) updateScreen();
}

// The press that closes a menu may be on a banner, which must not move away from under it. The wait is
// bounded, since a release delivered to no window of ours is never seen.
void BannerController::occupyLater(int waits) {
    const milliseconds delay(QGuiApplication::styleHints()->mouseDoubleClickInterval());
    services_.scheduler.after(delay, [self = QPointer(this), change = clearChanges_, waits] {
        if (!self || self->clearChanges_ != change) return;
        if (QGuiApplication::mouseButtons() == Qt::NoButton || waits <= 1) {
            self->occupy();
        } else {
            self->occupyLater(waits - 1);
        }
    });
}

void BannerController::restack() {
    // From the newest to the oldest, so that no card is in the shadow of the one above it.
    for (const Entry& entry : panels_)
        entry.panel->orderFront();
}

void BannerController::fadeIn(BannerPanel& panel) {
    panel.fadeIn(fadeInDuration, services_.appearance.reduceMotion() ? 0 : slide);
}

void BannerController::fadeOut(std::shared_ptr<BannerPanel> panel) {
    panel->fadeOut(fadeOutDuration);
    services_.scheduler.after(orderOutDelay, [panel = std::move(panel)] { panel->orderOut(); });
}

} // namespace corvane

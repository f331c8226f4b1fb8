#pragma once

#include "Sessions/SessionBoard.h"

#include <functional>
#include <string_view>

namespace corvane {

/// The model's interface to the banners on the screen. Whether to alert at all (quiet time, preferences) is
/// the model's decision alone. Main thread only.
class Banners {
  public:
    Banners() = default;
    Banners(const Banners&) = delete;
    Banners& operator=(const Banners&) = delete;
    virtual ~Banners() = default;

    /// Called when the user wants to go to the session's terminal, or to snooze the session. The banner stays
    /// until it is dismissed. If unset, the button does nothing.
    std::function<void(const AgentSession&)> onJump;
    std::function<void(const AgentSession&)> onSnooze;
    /// Called for each new waiting banner; returns whether its session's terminal was searched for and not
    /// found. Unset means false.
    std::function<bool(const AgentSession&)> isTerminalMissing;

    /// Shows the session's waiting banner, or refreshes it in place, and announces it.
    virtual void showWaiting(const AgentSession& session) = 0;

    /// Shows the session's done banner, or refreshes it in place, and announces it. It is removed
    /// automatically after a few seconds.
    virtual void showDone(const AgentSession& session) = 0;

    /// Shows, for a few seconds, that the session's terminal could not be brought to the front, and announces
    /// it. There is one such notice at a time: the latest.
    virtual void showTerminalMissing(const AgentSession& session) = 0;

    /// Removes the banner with this identifier: a session's `id` for its waiting banner. An unknown
    /// identifier is ignored.
    virtual void dismiss(std::string_view id) = 0;

    /// Runs `changes`, which calls the operations above, and updates the screen once, to the state at the
    /// end: a banner that is shown and then dismissed or evicted within `changes` never gets a window.
    virtual void update(const std::function<void()>& changes) = 0;
};

} // namespace corvane

#pragma once

#include "App/Support/Pointing.h"
#include "App/Support/Sessions.h"
#include "BannerViews.h"
#include "Controls/Buttons.h"
#include "TerminalNotice.h"

#include <memory>
#include <string>
#include <vector>

namespace corvane::test {

/// A banner in one of the states that users see, with a name that is valid as a file name.
struct BannerState {
    std::string name;
    std::unique_ptr<BannerCard> banner;
};

/// Every state of the banners; the waiting ones have waited for 42 seconds.
inline std::vector<BannerState> bannerStates() {
    const Date since(1'790'000'000, 0);
    const auto waiting = [since](const AgentSession& session) {
        return std::make_unique<WaitingBanner>(
            session, [since] { return since + Seconds(42); }, [] {}, [] {}, [] {});
    };
    std::vector<BannerState> states;
    states.push_back({"waiting", waiting(waitingSession("s", since))});

    AgentSession reply = waitingSession("s", since, AgentKind::codex);
    reply.status = SessionStatus::waiting(EventKind::needsInput, since);
    reply.message.clear();
    reply.cwd = "/w/notes-api";
    states.push_back({"reply", waiting(reply)});

    AgentSession longTexts = waitingSession("s", since);
    longTexts.cwd = "/w/a-monorepo-with-a-very-long-folder-name";
    longTexts.message =
        "Claude needs your permission to use mcp__deployment_server__promote_release_candidate";
    states.push_back({"long", waiting(longTexts)});

    AgentSession sentence = waitingSession("s", since);
    sentence.cwd = "/w/customer-reports";
    sentence.message = "Claude needs your permission";
    states.push_back({"sentence", waiting(sentence)});

    AgentSession wide = waitingSession("s", since);
    wide.cwd = "/w/プロジェクト-工具箱";
    // The emoji is last: its width differs by fractions of a pixel between versions of Qt.
    wide.message = "许可を待っています สวัสดีครับ 👩‍💻";
    states.push_back({"wide-scripts", waiting(wide)});

    AgentSession arabic = waitingSession("s", since);
    arabic.cwd = "/w/متجر";
    states.push_back({"right-to-left", waiting(arabic)});
    states.back().banner->setLayoutDirection(Qt::RightToLeft);

    states.push_back({"pressed", waiting(waitingSession("s", since))});
    states.back().banner->findChild<PrimaryButton*>()->setDown(true);

    states.push_back({"disabled", waiting(waitingSession("s", since))});
    for (auto* const button : states.back().banner->findChildren<QAbstractButton*>())
        button->setEnabled(false);

    states.push_back({"hovered", waiting(waitingSession("s", since))});
    for (auto* const button : states.back().banner->findChildren<QAbstractButton*>())
        hover(*button);

    states.push_back({"focused", waiting(waitingSession("s", since))});
    (void)states.back().banner->grab();
    for (auto* const button : states.back().banner->findChildren<QAbstractButton*>())
        focusByKeyboard(*button);

    states.push_back({"done", std::make_unique<DoneBanner>(doneSession("s", since), [] {})});
    states.push_back(
        {"done-codex", std::make_unique<DoneBanner>(doneSession("s", since, AgentKind::codex), [] {})});

    AgentSession lost = waitingSession("s", since);
    lost.cwd = "/w/a-monorepo-with-a-very-long-folder-name/services/notes-api";
    states.push_back({"terminal-missing", std::make_unique<TerminalNotice>(lost, [] {})});
    return states;
}

} // namespace corvane::test

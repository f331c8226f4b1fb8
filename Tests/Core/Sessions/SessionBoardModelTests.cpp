// Long random sequences of operations on the real board and on a naive implementation of its rules, which
// must agree completely after each step. A sequence on which they differ is shrunk before it is printed.

#include "BoardDescription.h"
#include "NaiveBoard.h"
#include "Sessions/SessionBoard.h"

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace corvane {
namespace {

using test::date;
using test::described;
using test::NaiveBoard;
using test::NaiveEffect;
using test::NaiveEvent;
using test::Nanoseconds;
using test::second;

struct Step {
    enum class Kind { event, reminders, snooze, prune };
    Kind kind = Kind::event;
    NaiveEvent event;         // for an event only
    std::string key;          // for a snooze only
    Nanoseconds now = 0;      // snooze: until
    Nanoseconds interval = 0; // for reminders only
};

Seconds seconds(Nanoseconds interval) {
    return Seconds(static_cast<double>(interval) / static_cast<double>(second));
}

AgentEvent realEvent(const NaiveEvent& event) {
    AgentEvent result;
    result.source = AgentKind::fromRawValue(event.agent).value();
    result.kind = eventKindFromRawValue(event.kind).value();
    result.sessionID = event.sessionID;
    result.cwd = event.cwd;
    result.message = event.message;
    result.terminalBundleID = event.bundle;
    result.terminalProgram = event.program;
    result.date = date(event.date);
    return result;
}

// Applies one step to both boards. Returns false if its results or the resulting states differ.
bool agreeAbout(const Step& step, SessionBoard& real, NaiveBoard& naive) {
    bool agree = true;
    switch (step.kind) {
    case Step::Kind::event:
        agree = described(real.apply(realEvent(step.event))) == naive.apply(step.event);
        break;
    case Step::Kind::reminders:
        agree = described(real.dueReminders(date(step.now), seconds(step.interval))) ==
                naive.dueReminders(step.now, step.interval);
        break;
    case Step::Kind::snooze:
        real.snooze(step.key, date(step.now));
        naive.snooze(step.key, step.now);
        break;
    case Step::Kind::prune:
        real.prune(date(step.now));
        naive.prune(step.now);
        break;
    }
    return agree && described(real.sessions()) == naive.list() &&
           described(real.sorted()) == naive.sorted() && real.waitingCount() == naive.waitingCount();
}

// The number of steps up to and including the one on which the boards differ; none when they agree to the
// end.
std::optional<std::size_t> firstDifference(const std::vector<Step>& steps, NaiveBoard naive) {
    SessionBoard real;
    for (std::size_t i = 0; i < steps.size(); ++i) {
        if (!agreeAbout(steps[i], real, naive)) return i + 1;
    }
    return std::nullopt;
}

// Removes as many steps as possible: ever smaller pieces, until no single step can be removed.
std::vector<Step> shrunk(std::vector<Step> steps, const NaiveBoard& naive) {
    for (std::size_t piece = steps.size() / 2 + 1; piece > 0; piece = piece == 1 ? 0 : (piece + 1) / 2) {
        for (std::size_t begin = 0; begin < steps.size();) {
            const std::size_t end = std::min(begin + piece, steps.size());
            std::vector<Step> fewer(steps.begin(), steps.begin() + static_cast<std::ptrdiff_t>(begin));
            fewer.insert(fewer.end(), steps.begin() + static_cast<std::ptrdiff_t>(end), steps.end());
            if (const auto length = firstDifference(fewer, naive)) {
                fewer.resize(*length);
                steps = fewer;
            } else {
                begin = end;
            }
        }
    }
    return steps;
}

std::string printed(const std::vector<Step>& steps) {
    std::ostringstream text;
    for (const Step& step : steps) {
        switch (step.kind) {
        case Step::Kind::event:
            text << "  " << step.event.kind << ' ' << step.event.agent << ':' << step.event.sessionID
                 << " cwd '" << step.event.cwd << "' message '" << step.event.message << "' bundle '"
                 << step.event.bundle << "' program '" << step.event.program << "' at " << step.event.date
                 << " ns\n";
            break;
        case Step::Kind::reminders:
            text << "  dueReminders at " << step.now << " ns, interval " << step.interval << " ns\n";
            break;
        case Step::Kind::snooze:
            text << "  snooze " << step.key << " until " << step.now << " ns\n";
            break;
        case Step::Kind::prune:
            text << "  prune at " << step.now << " ns\n";
            break;
        }
    }
    return text.str();
}

// Deterministic on every platform, unlike the standard library's distributions.
class Chance {
  public:
    explicit Chance(std::uint64_t seed)
        : engine_(seed) {}

    std::size_t below(std::size_t count) { return static_cast<std::size_t>(engine_() % count); }

    template <typename T, std::size_t n>
    const T& of(const std::array<T, n>& choices) {
        return choices[below(n)];
    }

  private:
    std::mt19937_64 engine_;
};

// A clock that stands still, creeps, jumps by exactly or nearly the intervals that matter, or goes back.
Nanoseconds clockStep(Chance& chance) {
    static constexpr std::array<Nanoseconds, 9> intervals{1, 5, 20, 60, 120, 300, 1800, 3600, 43'200};
    switch (chance.below(10)) {
    case 0:
    case 1:
        return 0;
    case 2:
        return chance.of(intervals) * second;
    case 3:
        return chance.of(intervals) * second + (chance.below(2) == 0 ? 1 : -1);
    case 4:
        return -static_cast<Nanoseconds>(chance.below(40)) * second;
    case 5:
        return chance.below(20) == 0 ? -chance.of(intervals) * second : second / 1000;
    default:
        return static_cast<Nanoseconds>(chance.below(15'000)) * (second / 1000);
    }
}

std::vector<Step> randomSteps(std::uint64_t seed, std::size_t count) {
    static const std::array<std::string, 2> agents{"claude", "codex"};
    static const std::array<std::string, 8> kinds{"needsPermission", "needsInput", "finished", "running",
                                                  "needsPermission", "running",    "finished", "ended"};
    static const std::array<std::string, 6> sessionIDs{"a", "b",        "",
                                                       ":", "claude:a", "long-session-identifier"};
    static const std::array<std::string, 4> words{"", "", "one", "another, longer than the small strings"};
    static constexpr std::array<Nanoseconds, 6> intervals{0,           -60 * second, second / 2,
                                                          60 * second, 120 * second, 300 * second};
    Chance chance(seed);
    // A few sessions collide often, many make a long list.
    const std::size_t sessions = 1 + chance.below(sessionIDs.size());
    Nanoseconds now = 0;
    std::vector<Step> steps(count);
    for (Step& step : steps) {
        now += clockStep(chance);
        step.now = now;
        const std::string& agent = chance.of(agents);
        const std::string& sessionID = sessionIDs[chance.below(sessions)];
        switch (chance.below(10)) {
        case 0:
            step.kind = Step::Kind::snooze;
            step.key = (chance.below(8) == 0 ? "" : agent + ":") + sessionID;
            step.now += static_cast<Nanoseconds>(chance.below(5)) * 60 * second;
            break;
        case 1:
            step.kind = Step::Kind::prune;
            break;
        case 2:
        case 3:
            step.kind = Step::Kind::reminders;
            step.interval = chance.of(intervals);
            break;
        default:
            step.event = {agent,
                          sessionID,
                          chance.of(kinds),
                          chance.of(words),
                          chance.of(words),
                          chance.of(words),
                          chance.of(words),
                          now};
        }
    }
    return steps;
}

TEST(SessionBoardModel, agreesWithTheNaiveBoardOnRandomSequences) {
    constexpr std::uint64_t sequences = 3'000;
    constexpr std::size_t length = 120;
    for (std::uint64_t seed = 1; seed <= sequences; ++seed) {
        const std::vector<Step> steps = randomSteps(seed, length);
        if (!firstDifference(steps, NaiveBoard())) continue;
        const std::vector<Step> shortest = shrunk(steps, NaiveBoard());
        FAIL() << "seed " << seed << ": the boards differ after\n" << printed(shortest);
    }
}

// Tests the test: wrong rules must be found, with a minimal number of steps.
TEST(SessionBoardModel, findsAWrongRuleAndShrinksItsSequence) {
    const auto shortestFor = [](const NaiveBoard& wrong) {
        for (std::uint64_t seed = 1; seed <= 200; ++seed) {
            const std::vector<Step> steps = randomSteps(seed, 120);
            if (firstDifference(steps, wrong)) return shrunk(steps, wrong);
        }
        return std::vector<Step>();
    };
    NaiveBoard wrong;
    wrong.minWork = 20 * second + 1;
    EXPECT_EQ(shortestFor(wrong).size(), 2U) << printed(shortestFor(wrong)); // running, finished
    wrong = NaiveBoard();
    wrong.doneRetention = 1800 * second - 1;
    EXPECT_EQ(shortestFor(wrong).size(), 2U) << printed(shortestFor(wrong)); // finished, prune
    wrong = NaiveBoard();
    wrong.staleAfter = 43'200 * second + 1;
    EXPECT_EQ(shortestFor(wrong).size(), 2U) << printed(shortestFor(wrong)); // any event, prune
}

} // namespace
} // namespace corvane

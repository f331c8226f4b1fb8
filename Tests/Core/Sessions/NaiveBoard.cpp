#include "NaiveBoard.h"

namespace corvane::test {

std::optional<NaiveEffect> NaiveBoard::apply(const NaiveEvent& event) {
    const std::string key = event.agent + ":" + event.sessionID;
    if (event.kind == "ended") {
        remove(key);
        return NaiveEffect{"dismiss", key, {}};
    }

    if (sessions.count(key) == 0) {
        NaiveSession fresh;
        fresh.agent = event.agent;
        fresh.sessionID = event.sessionID;
        fresh.status = "running";
        fresh.runningSince = event.date;
        sessions[key] = fresh;
        order.push_back(key);
    }
    const NaiveSession before = sessions[key];
    NaiveSession after = before;
    if (!event.cwd.empty()) after.cwd = event.cwd;
    if (!event.bundle.empty()) after.bundle = event.bundle;
    if (!event.program.empty()) after.program = event.program;
    after.lastEvent = event.date;
    after.snoozedUntil = {};

    std::string what;
    if (event.kind == "needsPermission" || event.kind == "needsInput") {
        after.status = event.kind;
        after.message = event.message;
        after.doneAt = {};
        after.lastAlerted = event.date;
        if (before.status != event.kind) after.waitingSince = event.date;
        what = "showWaiting";
    } else if (event.kind == "finished") {
        after.status = "done";
        after.doneAt = event.date;
        after.waitingSince = {};
        after.lastAlerted = {};
        after.runningSince = {};
        if (!event.message.empty()) after.message = event.message;
        Nanoseconds work = 0;
        if (before.runningSince) work = event.date - *before.runningSince;
        if (before.waits()) {
            what = "dismiss";
        } else if (event.agent == "codex" || work >= minWork) {
            what = "showDone";
        }
    } else if (event.kind == "running") {
        after.status = "running";
        after.doneAt = {};
        after.waitingSince = {};
        after.lastAlerted = {};
        if (before.status == "done") after.runningSince = event.date;
        if (!after.runningSince) after.runningSince = event.date;
        if (before.waits()) what = "dismiss";
    }
    sessions[key] = after;

    if (what.empty()) return {};
    if (what == "dismiss") return NaiveEffect{what, key, {}};
    return NaiveEffect{what, key, after};
}

std::vector<NaiveSession> NaiveBoard::dueReminders(Nanoseconds now, Nanoseconds interval) {
    std::vector<NaiveSession> result;
    for (const std::string& key : order) {
        NaiveSession& session = sessions[key];
        bool due = false;
        if (session.waits()) {
            if (session.snoozedUntil) {
                due = now >= *session.snoozedUntil;
            } else if (interval > 0) {
                const Nanoseconds last = session.lastAlerted ? *session.lastAlerted : session.lastEvent;
                due = now - last >= interval;
            }
        }
        if (due) {
            session.snoozedUntil = {};
            session.lastAlerted = now;
            result.push_back(session);
        }
    }
    return result;
}

void NaiveBoard::snooze(const std::string& key, Nanoseconds until) {
    if (sessions.count(key) == 1) sessions[key].snoozedUntil = until;
}

void NaiveBoard::prune(Nanoseconds now) {
    const std::vector<std::string> keys = order;
    for (const std::string& key : keys) {
        const NaiveSession session = sessions[key];
        const bool isOld = session.doneAt && now - *session.doneAt > doneRetention;
        const bool isStale = now - session.lastEvent > staleAfter;
        if (isOld || isStale) remove(key);
    }
}

std::vector<NaiveSession> NaiveBoard::list() const {
    std::vector<NaiveSession> result;
    for (const std::string& key : order)
        result.push_back(sessions.at(key));
    return result;
}

std::vector<NaiveSession> NaiveBoard::sorted() const {
    std::vector<NaiveSession> result;
    for (const int group : {0, 1, 2}) {
        const std::size_t begin = result.size();
        for (const NaiveSession& session : list()) {
            if ((session.waits() ? 0 : session.status == "running" ? 1 : 2) != group) continue;
            std::size_t place = begin;
            while (place < result.size() && result[place].lastEvent >= session.lastEvent)
                ++place;
            result.insert(result.begin() + static_cast<std::ptrdiff_t>(place), session);
        }
    }
    return result;
}

std::size_t NaiveBoard::waitingCount() const {
    std::size_t count = 0;
    for (const NaiveSession& session : list())
        count += session.waits() ? 1U : 0U;
    return count;
}

void NaiveBoard::remove(const std::string& key) {
    sessions.erase(key);
    std::vector<std::string> rest;
    for (const std::string& other : order) {
        if (other != key) rest.push_back(other);
    }
    order = rest;
}

} // namespace corvane::test

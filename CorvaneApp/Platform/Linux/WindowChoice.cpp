#include "Platform/Linux/WindowChoice.h"

#include <QDir>
#include <QStringView>

#include <algorithm>

namespace corvane {

namespace {

bool isPartOfName(QChar character) {
    return character.isLetterOrNumber() || character == QLatin1Char('-') || character == QLatin1Char('_');
}

/// Whether `title` contains `name` as a whole, not as a part of a longer name or path. `mayFollowSlash`: also
/// accepts it as the last component of a path.
bool names(QStringView title, const QString& name, bool mayFollowSlash, Qt::CaseSensitivity sensitivity) {
    if (name.isEmpty()) return false;
    for (qsizetype at = title.indexOf(name, 0, sensitivity); at >= 0;
         at = title.indexOf(name, at + 1, sensitivity)) {
        const QChar before = at > 0 ? title[at - 1] : QChar(u' ');
        const qsizetype end = at + name.size();
        const QChar after = end < title.size() ? title[end] : QChar(u' ');
        const bool beginsName = !isPartOfName(before) && before != QLatin1Char('~') &&
                                (mayFollowSlash || before != QLatin1Char('/'));
        if (beginsName && !isPartOfName(after) && after != QLatin1Char('/')) return true;
    }
    return false;
}

} // namespace

int titleRank(const QString& title, const QString& directory, const QString& agent, const QString& home) {
    constexpr int pathRank = 4;
    constexpr int nameRank = 2;
    constexpr int agentRank = 1;
    const QString path = QDir::cleanPath(directory);
    QString shortPath;
    if (!home.isEmpty() && path == home) shortPath = QStringLiteral("~");
    if (!home.isEmpty() && path.startsWith(home + QLatin1Char('/')))
        shortPath = QLatin1Char('~') + path.mid(home.size());
    int rank = 0;
    if (names(title, path, false, Qt::CaseSensitive) || names(title, shortPath, false, Qt::CaseSensitive)) {
        rank = pathRank;
    } else if (names(title, path.section(QLatin1Char('/'), -1), true, Qt::CaseSensitive)) {
        rank = nameRank;
    }
    return names(title, agent, true, Qt::CaseInsensitive) ? rank + agentRank : rank;
}

std::optional<std::size_t> chooseWindow(const std::vector<OpenWindow>& windows, const WindowSearch& search) {
    const QString home = QDir::homePath();
    const auto best = [&](const auto& isCandidate) {
        std::optional<std::size_t> found;
        int highest = -1;
        for (std::size_t i = 0; i < windows.size(); ++i) {
            if (!isCandidate(windows[i])) continue;
            if (search.windowID && windows[i].id == search.windowID) return std::optional(i);
            const int rank = titleRank(windows[i].title, search.directory, search.agent, home);
            if (rank <= highest) continue;
            highest = rank;
            found = i;
        }
        return found;
    };
    if (search.processes.empty()) {
        return best([&](const OpenWindow& window) {
            return std::any_of(search.classes.begin(), search.classes.end(), [&](const QString& wanted) {
                return window.windowClass.compare(wanted, Qt::CaseInsensitive) == 0;
            });
        });
    }
    for (const pid_t process : search.processes) {
        const auto found = best([process](const OpenWindow& window) { return window.process == process; });
        if (found) return found;
    }
    return std::nullopt;
}

} // namespace corvane

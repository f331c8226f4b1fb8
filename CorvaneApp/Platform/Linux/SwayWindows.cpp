#include "Platform/Linux/SwayWindows.h"

#include "Platform/Linux/SwayIpc.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

namespace corvane {

namespace {

// Far deeper than anybody nests containers.
constexpr int deepest = 100;

std::int64_t number(const QJsonValue& value) {
    return value.toInteger();
}

void collect(const QJsonObject& node, int depth, SwayTree& tree) {
    const pid_t process = static_cast<pid_t>(number(node[QLatin1String("pid")]));
    if (process > 0) {
        const QJsonObject x = node[QLatin1String("window_properties")].toObject();
        const QString application = node[QLatin1String("app_id")].toString();
        const std::int64_t window = number(node[QLatin1String("window")]);
        tree.windows.push_back({process,
                                window > 0 ? std::optional(static_cast<std::uint32_t>(window)) : std::nullopt,
                                application.isEmpty() ? x[QLatin1String("class")].toString() : application,
                                node[QLatin1String("name")].toString()});
        tree.numbers.push_back(number(node[QLatin1String("id")]));
    }
    if (depth == deepest) return;
    // The order in which the children had the focus, the most recent first.
    std::map<std::int64_t, qsizetype> places;
    const QJsonArray focus = node[QLatin1String("focus")].toArray();
    for (qsizetype i = 0; i < focus.size(); ++i)
        places.emplace(number(focus[i]), i);
    std::vector<std::pair<qsizetype, QJsonObject>> children;
    for (const QLatin1String list : {QLatin1String("nodes"), QLatin1String("floating_nodes")}) {
        const QJsonArray nodes = node[list].toArray();
        for (const QJsonValue& child : nodes) {
            const auto place = places.find(number(child[QLatin1String("id")]));
            children.emplace_back(place != places.end() ? place->second : focus.size(), child.toObject());
        }
    }
    std::stable_sort(children.begin(), children.end(),
                     [](const auto& one, const auto& other) { return one.first < other.first; });
    for (const auto& [place, child] : children)
        collect(child, depth + 1, tree);
}

/// Whether every command in the reply was carried out.
bool hasSucceeded(const QByteArray& json) {
    const QJsonArray results = QJsonDocument::fromJson(json).array();
    return !results.isEmpty() && std::all_of(results.begin(), results.end(), [](const QJsonValue& result) {
        return result[QLatin1String("success")].toBool();
    });
}

} // namespace

SwayTree SwayTree::parse(const QByteArray& json) {
    SwayTree tree;
    collect(QJsonDocument::fromJson(json).object(), 0, tree);
    return tree;
}

SwayWindowRaiser::SwayWindowRaiser(QString socket, std::chrono::milliseconds limit)
    : socket_(std::move(socket))
    , limit_(limit) {}

void SwayWindowRaiser::raise(const WindowSearch& search, QObject& context, Report report) {
    sway::ask(
        socket_, sway::Request::tree, {}, context,
        [search, &context, report = std::move(report), socket = socket_,
         limit = limit_](const std::optional<QByteArray>& json) {
            const SwayTree tree = SwayTree::parse(json.value_or(QByteArray()));
            const std::optional<std::size_t> chosen = chooseWindow(tree.windows, search);
            if (!chosen) {
                report(false);
                return;
            }
            // Only a number is inserted into the command, which also shows the window's workspace.
            const QByteArray command =
                "[con_id=" + QByteArray::number(qint64{tree.numbers[*chosen]}) + "] focus";
            sway::ask(
                socket, sway::Request::runCommand, command, context,
                [report](const std::optional<QByteArray>& result) {
                    report(result && hasSucceeded(*result));
                },
                limit);
        },
        limit_);
}

} // namespace corvane

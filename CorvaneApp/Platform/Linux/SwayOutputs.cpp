#include "Platform/Linux/SwayOutputs.h"

#include "Platform/Linux/SwayIpc.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

QRect rectangle(const QJsonValue& value) {
    return {value[QLatin1String("x")].toInt(), value[QLatin1String("y")].toInt(),
            value[QLatin1String("width")].toInt(), value[QLatin1String("height")].toInt()};
}

/// The margins between `inner` and `outer`.
QMargins around(const QRect& inner, const QRect& outer) {
    if (!outer.contains(inner)) return {};
    return {inner.left() - outer.left(), inner.top() - outer.top(), outer.right() - inner.right(),
            outer.bottom() - inner.bottom()};
}

} // namespace

SwayOutputs::SwayOutputs(std::optional<QString> socket, std::chrono::milliseconds limit)
    : socket_(std::move(socket))
    , limit_(limit) {
    refresh();
}

std::vector<SwayOutput> SwayOutputs::parse(const QByteArray& outputs, const QByteArray& workspaces) {
    std::vector<SwayOutput> result;
    const QJsonArray spaces = QJsonDocument::fromJson(workspaces).array();
    const QJsonArray list = QJsonDocument::fromJson(outputs).array();
    for (const QJsonValue& output : list) {
        SwayOutput entry{
            rectangle(output[QLatin1String("rect")]), {}, output[QLatin1String("focused")].toBool()};
        if (entry.area.isEmpty()) continue; // it is off
        const auto isShownOnIt = [&](const QJsonValue& space) {
            return space[QLatin1String("visible")].toBool() &&
                   space[QLatin1String("output")] == output[QLatin1String("name")];
        };
        const auto shown = std::find_if(spaces.begin(), spaces.end(), isShownOnIt);
        if (shown != spaces.end()) {
            const QRect free = rectangle((*shown)[QLatin1String("rect")]);
            if (!free.isEmpty()) entry.reserved = around(free, entry.area);
        }
        result.push_back(entry);
    }
    return result;
}

const SwayOutput* SwayOutputs::at(const QRect& area) const {
    const SwayOutput* best = nullptr;
    qint64 largest = 0;
    for (const SwayOutput& output : outputs_) {
        const QRect common = output.area & area;
        const qint64 size = qint64{common.width()} * common.height();
        if (common.isEmpty() || size <= largest) continue;
        largest = size;
        best = &output;
    }
    return best;
}

const SwayOutput* SwayOutputs::focused() const {
    const auto found = std::ranges::find_if(outputs_, &SwayOutput::isFocused);
    return found != outputs_.end() ? &*found : nullptr;
}

void SwayOutputs::refresh() {
    if (!socket_ || std::exchange(isAsking_, true)) return;
    sway::ask(
        *socket_, sway::Request::outputs, {}, *this,
        [this](const std::optional<QByteArray>& outputs) {
            if (!outputs) {
                isAsking_ = false;
                return;
            }
            sway::ask(
                *socket_, sway::Request::workspaces, {}, *this,
                [this, outputs = *outputs](const std::optional<QByteArray>& workspaces) {
                    isAsking_ = false;
                    if (!workspaces) return;
                    std::vector<SwayOutput> now = parse(outputs, *workspaces);
                    if (std::exchange(outputs_, std::move(now)) != outputs_) Q_EMIT changed();
                },
                limit_);
        },
        limit_);
}

} // namespace corvane

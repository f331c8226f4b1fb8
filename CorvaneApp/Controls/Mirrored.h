#pragma once

#include <QRect>
#include <QStyle>
#include <QWidget>

namespace corvane {

/// Where a part goes that is designed to be at `place` in `view` for left-to-right text: there, or mirrored
/// if the view's text runs from right to left.
///
/// Views whose parts have places to the pixel use this instead of Qt's layouts. These place whole widgets;
/// here it is what a widget draws that has to line up, while its clickable margins overlap its neighbours,
/// and text lines overlap by their leading.
[[nodiscard]] inline QRect mirrored(const QWidget& view, const QRect& place) {
    return QStyle::visualRect(view.layoutDirection(), view.rect(), place);
}

[[nodiscard]] inline QRect mirrored(const QWidget& view, int left, int top, QSize size) {
    return mirrored(view, {QPoint(left, top), size});
}

} // namespace corvane

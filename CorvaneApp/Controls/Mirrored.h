#pragma once

#include <QRect>
#include <QStyle>
#include <QWidget>

namespace corvane {

/// The rectangle in `view` of a part that is designed to be at `place` in a left-to-right layout: `place`, or
/// its mirror image if the view's layout direction is right to left.
///
/// Views that are laid out to the pixel use this instead of Qt's layouts. Those place whole widgets; here,
/// what widgets draw has to line up, while their clickable margins overlap neighbours, and text lines overlap
/// by their leading.
[[nodiscard]] inline QRect mirrored(const QWidget& view, const QRect& place) {
    return QStyle::visualRect(view.layoutDirection(), view.rect(), place);
}

[[nodiscard]] inline QRect mirrored(const QWidget& view, int left, int top, QSize size) {
    return mirrored(view, {QPoint(left, top), size});
}

} // namespace corvane

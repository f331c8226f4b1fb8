#include "Controls/Divider.h"

#include "Style/Tokens.h"

#include <QPainter>

namespace corvane {

Divider::Divider(Backdrop backdrop, QWidget* parent)
    : QWidget(parent)
    , backdrop_(backdrop) {
    setFixedHeight(1);
}

QSize Divider::sizeHint() const {
    return {0, 1};
}

void Divider::paintEvent(QPaintEvent* /*event*/) {
    const Look look = Tokens::look(palette());
    QPainter(this).fillRect(rect(), backdrop_ == Backdrop::surface ? Tokens::divider(look)
                                                                   : Tokens::dividerOnBackground(look));
}

} // namespace corvane

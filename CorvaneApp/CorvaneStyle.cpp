#include "CorvaneStyle.h"

#include "Shapes.h"
#include "Tokens.h"

#include <QPainter>
#include <QStyleOption>

namespace corvane {

namespace {

constexpr qreal itemRadius = 6;
constexpr int popupMargin = 4;
constexpr int separatorHeight = 9; // a line, and as much room on both sides as around the items
constexpr int separatorInset = 8;

} // namespace

CorvaneStyle::CorvaneStyle()
    : QProxyStyle(QStringLiteral("Fusion")) {}

int CorvaneStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                            QStyleHintReturn* returnData) const {
    switch (hint) {
    // Opens over the picker, with the present choice below the pointer.
    case SH_ComboBox_Popup:
        return 1;
    case SH_EtchDisabledText:
    case SH_DitherDisabledText:
        return 0;
    default:
        return QProxyStyle::styleHint(hint, option, widget, returnData);
    }
}

QSize CorvaneStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                     const QWidget* widget) const {
    const auto* const item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    const QSize result = QProxyStyle::sizeFromContents(type, option, size, widget);
    const bool isSeparator = type == CT_MenuItem && item != nullptr &&
                             item->menuItemType == QStyleOptionMenuItem::Separator && item->text.isEmpty();
    return isSeparator ? QSize(result.width(), separatorHeight) : result;
}

int CorvaneStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    switch (metric) {
    case PM_MenuHMargin:
    case PM_MenuVMargin:
        return popupMargin;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

void CorvaneStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
    const auto* const item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    const bool isItem = element == CE_MenuItem || element == CE_MenuBarItem;
    if (element == CE_MenuItem && item != nullptr && item->menuItemType == QStyleOptionMenuItem::Separator &&
        item->text.isEmpty()) {
        const QRect& rect = item->rect;
        painter->fillRect(rect.left() + separatorInset, rect.center().y(), rect.width() - 2 * separatorInset,
                          1, Tokens::divider(Tokens::look(item->palette)));
        return;
    }
    if (!isItem || item == nullptr || (item->state & State_Selected) == 0 ||
        item->menuItemType == QStyleOptionMenuItem::Separator) {
        QProxyStyle::drawControl(element, option, painter, widget);
        return;
    }
    // The chosen item stands on the fill that a hovered control has, in place of the highlight's strong one.
    const Look look = Tokens::look(item->palette);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->fillPath(shapes::continuousRoundedRect(item->rect, itemRadius), Tokens::pressedFill(look));
    painter->restore();
    QStyleOptionMenuItem plain(*item);
    plain.state &= ~(State_Selected | State_Sunken);
    QProxyStyle::drawControl(element, &plain, painter, widget);
}

void CorvaneStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                 const QWidget* widget) const {
    if (element != PE_FrameMenu) {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        return;
    }
    painter->save();
    painter->setPen(Tokens::divider(Tokens::look(option->palette)));
    painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
    painter->restore();
}

} // namespace corvane

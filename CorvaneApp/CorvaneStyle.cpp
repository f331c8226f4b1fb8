#include "CorvaneStyle.h"

#include "Shapes.h"
#include "Tokens.h"

#include <QPainter>
#include <QStyleOption>

namespace corvane {

namespace {

constexpr qreal itemRadius = 6;
constexpr int popupMargin = 4;

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
    if (!isItem || item == nullptr || (item->state & State_Selected) == 0 ||
        item->menuItemType == QStyleOptionMenuItem::Separator) {
        QProxyStyle::drawControl(element, option, painter, widget);
        return;
    }
    // The chosen item stands on the fill that a hovered control has, in place of the highlight's strong one.
    const ColorScheme scheme = Tokens::scheme(item->palette);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->fillPath(shapes::continuousRoundedRect(item->rect, itemRadius), Tokens::pressedFill(scheme));
    painter->restore();
    QStyleOptionMenuItem plain(*item);
    plain.state &= ~(State_Selected | State_Sunken);
    QProxyStyle::drawControl(element, &plain, painter, widget);
}

} // namespace corvane

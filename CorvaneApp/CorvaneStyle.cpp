#include "CorvaneStyle.h"

#include "Shapes.h"
#include "TextScale.h"
#include "Tokens.h"

#include <QPainter>
#include <QStyleOption>

#include <algorithm>

namespace corvane {

namespace {

constexpr Scaled itemRadius{6.0};
constexpr Scaled popupMargin{4};
constexpr Scaled separatorHeight{9}; // a line, and as much room on both sides as around the items
constexpr Scaled separatorInset{8};
constexpr Scaled scrollBarExtent{8};
constexpr Scaled thumbWidth{6};
constexpr Scaled shortestThumb{12}; // of a message of a few lines

/// Along a scroll bar, which is nothing but the thumb and the way it goes.
struct Thumb {
    explicit Thumb(const QStyleOptionSlider& bar) {
        const int way = bar.orientation == Qt::Vertical ? bar.rect.height() : bar.rect.width();
        const int range = bar.maximum - bar.minimum;
        length = way;
        if (range > 0) {
            const auto share =
                static_cast<double>(bar.pageStep) / (static_cast<double>(range) + bar.pageStep);
            length = std::clamp(qRound(way * share), std::min<int>(shortestThumb, way), way);
        }
        start = QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition, way - length,
                                                bar.upsideDown);
        end = way;
    }

    int start = 0;
    int length = 0;
    int end = 0; // of the way
};

QRect along(const QStyleOptionSlider& bar, int start, int length) {
    const QRect rect = bar.orientation == Qt::Vertical ? QRect(0, start, bar.rect.width(), length)
                                                       : QRect(start, 0, length, bar.rect.height());
    return rect.translated(bar.rect.topLeft());
}

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
    case PM_ScrollBarExtent:
        return scrollBarExtent;
    case PM_MenuHMargin:
    case PM_MenuVMargin:
        return popupMargin;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

QRect CorvaneStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                                   const QWidget* widget) const {
    const auto* const bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (control != CC_ScrollBar || bar == nullptr)
        return QProxyStyle::subControlRect(control, option, part, widget);
    const Thumb thumb(*bar);
    QRect rect;
    switch (part) {
    case SC_ScrollBarSlider:
        rect = along(*bar, thumb.start, thumb.length);
        break;
    case SC_ScrollBarSubPage:
        rect = along(*bar, 0, thumb.start);
        break;
    case SC_ScrollBarAddPage:
        rect = along(*bar, thumb.start + thumb.length, thumb.end - thumb.start - thumb.length);
        break;
    case SC_ScrollBarGroove:
        rect = bar->rect;
        break;
    default: // the arrows, which there are none of
        return {};
    }
    return visualRect(bar->direction, bar->rect, rect);
}

void CorvaneStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                      QPainter* painter, const QWidget* widget) const {
    const auto* const bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (control != CC_ScrollBar || bar == nullptr) {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        return;
    }
    const QRect slider = subControlRect(control, option, SC_ScrollBarSlider, widget);
    const int spare = scrollBarExtent - thumbWidth;
    const QRect thumb =
        bar->orientation == Qt::Vertical ? slider.adjusted(spare, 0, 0, 0) : slider.adjusted(0, spare, 0, 0);
    const Look look = Tokens::look(bar->palette);
    const bool isHeld = (bar->activeSubControls & SC_ScrollBarSlider) != 0;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(isHeld ? Tokens::scrollThumbHovered(look) : Tokens::scrollThumb(look));
    painter->drawRoundedRect(thumb, thumbWidth / 2.0, thumbWidth / 2.0);
    painter->restore();
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

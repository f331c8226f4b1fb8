#include "Style/CorvaneStyle.h"

#include "Style/Shapes.h"
#include "Style/TextScale.h"
#include "Style/Tokens.h"

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

/// The ground of a part of a menu bar, with the line below the bar: filled, so that the parts' lines meet at
/// every scale.
void drawMenuBarGround(QPainter& painter, const QStyleOption& part) {
    painter.fillRect(part.rect, part.palette.color(QPalette::Window));
    painter.fillRect(part.rect.left(), part.rect.bottom(), part.rect.width(), 1,
                     Tokens::dividerOnBackground(Tokens::look(part.palette)));
}

/// The chosen item stands on the fill that a pressed control has, in place of the highlight's strong one.
void drawChoice(QPainter& painter, const QStyleOption& item, const QRect& rect) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(shapes::continuousRoundedRect(rect, itemRadius),
                     Tokens::pressedFill(Tokens::look(item.palette)));
    painter.restore();
}

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
    if (element == CE_MenuBarEmptyArea) {
        drawMenuBarGround(*painter, *option);
    } else if (element == CE_MenuBarItem && item != nullptr) {
        drawMenuBarItem(*item, *painter, widget);
    } else if (element == CE_MenuItem && item != nullptr) {
        drawMenuItem(*item, *painter, widget);
    } else {
        QProxyStyle::drawControl(element, option, painter, widget);
    }
}

void CorvaneStyle::drawMenuBarItem(const QStyleOptionMenuItem& item, QPainter& painter,
                                   const QWidget* widget) const {
    drawMenuBarGround(painter, item);
    if ((item.state & State_Selected) != 0) drawChoice(painter, item, item.rect.adjusted(0, 0, 0, -1));
    int flags = Qt::AlignCenter | Qt::TextShowMnemonic | Qt::TextDontClip | Qt::TextSingleLine;
    if (styleHint(SH_UnderlineShortcut, &item, widget, nullptr) == 0) flags |= Qt::TextHideMnemonic;
    drawItemText(&painter, item.rect, flags, item.palette, (item.state & State_Enabled) != 0, item.text,
                 QPalette::WindowText);
}

void CorvaneStyle::drawMenuItem(const QStyleOptionMenuItem& item, QPainter& painter,
                                const QWidget* widget) const {
    const bool isSeparator = item.menuItemType == QStyleOptionMenuItem::Separator;
    if (isSeparator && item.text.isEmpty()) {
        const QRect& rect = item.rect;
        painter.fillRect(rect.left() + separatorInset, rect.center().y(), rect.width() - 2 * separatorInset,
                         1, Tokens::divider(Tokens::look(item.palette)));
        return;
    }
    QStyleOptionMenuItem plain(item);
    if (!isSeparator && (item.state & State_Selected) != 0) {
        drawChoice(painter, item, item.rect);
        plain.state &= ~(State_Selected | State_Sunken);
    }
    QProxyStyle::drawControl(CE_MenuItem, &plain, &painter, widget);
}

void CorvaneStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                 const QWidget* widget) const {
    switch (element) {
    case PE_PanelMenu: {
        // Filled lines stay on the edge at every scale.
        const QColor edge = Tokens::controlBorder(Tokens::look(option->palette));
        painter->fillRect(option->rect, edge);
        painter->fillRect(option->rect.adjusted(1, 1, -1, -1), option->palette.color(QPalette::Base));
        return;
    }
    case PE_FrameMenu: // part of the panel
        return;
    default:
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

} // namespace corvane

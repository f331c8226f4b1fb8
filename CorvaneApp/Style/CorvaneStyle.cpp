#include "Style/CorvaneStyle.h"

#include "Style/ReadingDirection.h"
#include "Style/Shapes.h"
#include "Style/TextScale.h"
#include "Style/Tokens.h"

#include <QComboBox>
#include <QFrame>
#include <QMenu>
#include <QPainter>
#include <QStyleOption>

#include <algorithm>

namespace corvane {

namespace {

constexpr Scaled popupRadius{12.0};
constexpr Scaled popupMargin{4};
constexpr Scaled itemRadius{8.0}; // concentric with the card's corner
constexpr Scaled itemPadding{8};
constexpr Scaled itemHeight{28};
constexpr Scaled itemLeading{8}; // in all, above and below a taller font
constexpr Scaled iconSide{16};
constexpr Scaled iconInset{4}; // of an icon's drawing within its square
constexpr Scaled iconGap{4};
constexpr Scaled shortcutGap{24};
constexpr Scaled tickSide{14};
constexpr Scaled tickGap{8};
constexpr Scaled separatorHeight{9}; // a line, with the same space on both sides as around the items
constexpr Scaled separatorInset{8};
constexpr Scaled scrollBarExtent{8};
constexpr Scaled thumbWidth{6};
constexpr Scaled shortestThumb{12}; // in a message of a few lines

/// Positions along a scroll bar, which has only a thumb and its track.
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
    int end = 0; // of the track
};

/// The background of a part of a menu bar, with the line below the bar: filled, so that the parts' lines join
/// at every scale.
void drawMenuBarGround(QPainter& painter, const QStyleOption& part) {
    painter.fillRect(part.rect, part.palette.color(QPalette::Window));
    painter.fillRect(part.rect.left(), part.rect.bottom(), part.rect.width(), 1,
                     Tokens::dividerOnBackground(Tokens::look(part.palette)));
}

/// The selected item has the fill of a pressed control, instead of the strong highlight colour.
void drawChoice(QPainter& painter, const QStyleOption& item, const QRect& rect) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(shapes::continuousRoundedRect(rect, itemRadius),
                     Tokens::pressedFill(Tokens::look(item.palette)));
    painter.restore();
}

/// The width between an entry's padding and its text.
int leading(bool hasIcon) {
    return hasIcon ? iconSide - iconInset + iconGap : 0;
}

/// Marks the current choice of a list.
void drawTick(QPainter& painter, const QRectF& box, const QColor& color) {
    constexpr qreal grid = 24;
    QPainterPath tick(QPointF(4.5, 12.75));
    tick.lineTo(9.5, 17.75);
    tick.lineTo(19.5, 6.75);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(box.topLeft());
    painter.scale(box.width() / grid, box.height() / grid);
    constexpr qreal stroke = 2.5;
    painter.strokePath(tick, QPen(color, stroke, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
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

QPainterPath CorvaneStyle::popupOutline(const QRectF& card) {
    return shapes::continuousRoundedRect(card, popupRadius);
}

int CorvaneStyle::menuPadding() {
    return popupMargin;
}

int CorvaneStyle::menuTextWidth(int menuWidth, MenuIcon icon) {
    return menuWidth - 2 * (popupMargin + itemPadding) - leading(icon == MenuIcon::shown);
}

void CorvaneStyle::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    // Before the native window is created: it keeps the format that it was created with.
    if (qobject_cast<QMenu*>(widget) != nullptr || widget->inherits("QComboBoxPrivateContainer"))
        widget->setAttribute(Qt::WA_TranslucentBackground);
}

int CorvaneStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                            QStyleHintReturn* returnData) const {
    switch (hint) {
    // Opens over the picker, with the current choice below the pointer.
    case SH_ComboBox_Popup:
        return 1;
    case SH_ComboBox_PopupFrameStyle:
        return QFrame::NoFrame;
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
    if (type == CT_MenuItem && item != nullptr) return menuItemSize(*item, size, widget);
    return QProxyStyle::sizeFromContents(type, option, size, widget);
}

QSize CorvaneStyle::menuItemSize(const QStyleOptionMenuItem& item, const QSize& contents,
                                 const QWidget* widget) {
    if (item.menuItemType == QStyleOptionMenuItem::Separator) return {contents.width(), separatorHeight};
    const int height = std::max<int>(itemHeight, item.fontMetrics.height() + itemLeading);
    int width = 2 * itemPadding + leading(!item.icon.isNull());
    if (qobject_cast<const QComboBox*>(widget) != nullptr) {
        width += item.fontMetrics.horizontalAdvance(item.text) + tickGap + tickSide;
    } else {
        width += contents.width() + (item.text.contains(QLatin1Char('\t')) ? int(shortcutGap) : 0);
    }
    return {width, height};
}

int CorvaneStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    switch (metric) {
    case PM_ScrollBarExtent:
        return scrollBarExtent;
    case PM_MenuHMargin:
    case PM_MenuVMargin:
        return popupMargin;
    case PM_MenuPanelWidth:
        return 0;
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
    default: // there are no arrows
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
    } else if (element == CE_MenuEmptyArea) {
        return; // painted with the card
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
    const Look look = Tokens::look(item.palette);
    const QRect& rect = item.rect;
    if (item.menuItemType == QStyleOptionMenuItem::Separator) {
        painter.fillRect(rect.left() + separatorInset, rect.center().y(), rect.width() - 2 * separatorInset,
                         1, Tokens::divider(look));
        return;
    }
    const bool isEnabled = (item.state & State_Enabled) != 0;
    if (isEnabled && (item.state & State_Selected) != 0) drawChoice(painter, item, rect);
    // Qt does not set the option's direction for the rows of a picker's list.
    const Qt::LayoutDirection direction = widget != nullptr ? widget->layoutDirection() : item.direction;
    const auto placed = [&](const QRect& part) { return visualRect(direction, item.rect, part); };

    const QRect inner = rect.adjusted(itemPadding, 0, -itemPadding, 0);
    if (!item.icon.isNull()) {
        const QRect box(inner.left() - iconInset, rect.top() + (rect.height() - iconSide) / 2, iconSide,
                        iconSide);
        item.icon.paint(&painter, placed(box));
    }
    int end = inner.right() + 1;
    if (qobject_cast<const QComboBox*>(widget) != nullptr) {
        end -= tickSide;
        if (item.checked) {
            const QRect box(end, rect.top() + (rect.height() - tickSide) / 2, tickSide, tickSide);
            drawTick(painter, placed(box), Tokens::primary.color(look));
        }
        end -= tickGap;
    }

    int flags =
        static_cast<int>(visualAlignment(direction, Qt::AlignLeft) | Qt::AlignAbsolute | Qt::AlignVCenter) |
        Qt::TextSingleLine | Qt::TextShowMnemonic;
    if (styleHint(SH_UnderlineShortcut, &item, widget, nullptr) == 0) flags |= Qt::TextHideMnemonic;
    const QColor dimmed = Tokens::textSecondary(look);
    const qsizetype tab = item.text.indexOf(QLatin1Char('\t'));
    const int start = inner.left() + leading(!item.icon.isNull());
    painter.save();
    painter.setFont(item.font);
    painter.setLayoutDirection(readingDirection(item.text, direction));
    painter.setPen(isEnabled ? Tokens::onSurface.color(look) : dimmed);
    painter.drawText(placed({start, rect.top(), end - start, rect.height()}), flags,
                     tab < 0 ? item.text : item.text.left(tab));
    if (tab >= 0) {
        const QString shortcut = item.text.mid(tab + 1);
        const int width = item.fontMetrics.horizontalAdvance(shortcut);
        painter.setPen(dimmed);
        painter.drawText(placed({end - width, rect.top(), width, rect.height()}), flags, shortcut);
    }
    painter.restore();
}

void CorvaneStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                 const QWidget* widget) const {
    switch (element) {
    case PE_PanelMenu: {
        const Look look = Tokens::look(option->palette);
        const QMargins room = widget != nullptr ? widget->contentsMargins() : QMargins();
        const QRectF card = option->rect.marginsRemoved(room);
        constexpr qreal edge = 1;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        const bool isBlurred = widget != nullptr && widget->property(blurredBehindProperty).toBool();
        painter->fillPath(popupOutline(card), Tokens::cardFill(look, isBlurred));
        painter->strokePath(shapes::insideStroke(card, popupRadius, edge),
                            QPen(Tokens::hairline(look), edge));
        painter->restore();
        return;
    }
    case PE_FrameMenu: // part of the panel
        return;
    default:
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

} // namespace corvane

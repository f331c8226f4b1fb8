#pragma once

#include <QPainterPath>
#include <QProxyStyle>

class QStyleOptionMenuItem;

namespace corvane {

/// The style of what the toolkit draws: menus, the pickers' lists and the scroll bars of long messages. The
/// same on every desktop, in the palette's colours. Menus and lists are cards within their contents margins,
/// which leave room for a shadow. Pass it to QApplication::setStyle before the first widget is created.
class CorvaneStyle : public QProxyStyle {
    Q_OBJECT

  public:
    CorvaneStyle();

    /// Set to true on a menu if the desktop blurs what is behind it: its card is then translucent.
    static constexpr const char* blurredBehindProperty = "corvaneBlurredBehind";

    enum class MenuIcon { none, shown };

    /// The outline of a menu's card, and the padding between it and the entries.
    [[nodiscard]] static QPainterPath popupOutline(const QRectF& card);
    [[nodiscard]] static int menuPadding();
    /// The room for an entry's text in a menu whose card has this width.
    [[nodiscard]] static int menuTextWidth(int menuWidth, MenuIcon icon);

    using QProxyStyle::polish;
    void polish(QWidget* widget) override;

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returnData) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                         const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;

  private:
    [[nodiscard]] static QSize menuItemSize(const QStyleOptionMenuItem& item, const QSize& contents,
                                            const QWidget* widget);
    void drawMenuBarItem(const QStyleOptionMenuItem& item, QPainter& painter, const QWidget* widget) const;
    void drawMenuItem(const QStyleOptionMenuItem& item, QPainter& painter, const QWidget* widget) const;
};

} // namespace corvane

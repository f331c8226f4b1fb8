#pragma once

#include <QProxyStyle>

class QStyleOptionMenuItem;

namespace corvane {

/// The style of what the toolkit draws: menus, the pickers' popups and the scroll bars of long messages. The
/// same on every desktop, in the palette's colours. Give it to QApplication::setStyle before the first widget
/// is made.
class CorvaneStyle : public QProxyStyle {
    Q_OBJECT

  public:
    CorvaneStyle();

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
    void drawMenuBarItem(const QStyleOptionMenuItem& item, QPainter& painter, const QWidget* widget) const;
    void drawMenuItem(const QStyleOptionMenuItem& item, QPainter& painter, const QWidget* widget) const;
};

} // namespace corvane

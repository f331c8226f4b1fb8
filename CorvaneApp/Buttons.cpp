#include "Buttons.h"

#include "Fonts.h"
#include "Shapes.h"
#include "Symbols.h"
#include "Tokens.h"

#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

constexpr int primaryPadding = 12;
constexpr int primaryMinimumHeight = 28;
constexpr qreal primaryRadius = 8;
constexpr int primaryFontSize = 13;
constexpr int symbolSide = 16;
constexpr int symbolGap = 6;
// The symbol's ink begins this far inside its box, so the box moves out and the ink keeps the padding.
constexpr int symbolInset = 2;

constexpr qreal plainRadius = 6;
constexpr QMargins textClickMargins{6, 4, 6, 4};
constexpr QMargins symbolClickMargins{5, 5, 5, 5};

/// Paints what `content` paints within `bounds` as one picture at `opacity`, where parts that lie on one
/// another would otherwise show through. Crisp at the painter's scale.
template <typename Content>
void paintFaded(QPainter& painter, const QRectF& bounds, double opacity, Content content) {
    const QTransform toDevice = painter.deviceTransform();
    const QRect pixels = toDevice.mapRect(bounds).toAlignedRect();
    QPixmap layer(pixels.size());
    layer.fill(Qt::transparent);
    QPainter ink(&layer);
    ink.setRenderHints(painter.renderHints());
    ink.setFont(painter.font());
    ink.setLayoutDirection(painter.layoutDirection());
    ink.setTransform(toDevice * QTransform::fromTranslate(-pixels.x(), -pixels.y()));
    content(ink);
    ink.end();

    painter.setOpacity(opacity);
    painter.drawPixmap(toDevice.inverted().mapRect(QRectF(pixels)), layer, layer.rect());
    painter.setOpacity(1);
}

} // namespace

PrimaryButton::PrimaryButton(const QString& text, QString symbol, QWidget* parent)
    : QAbstractButton(parent)
    , symbol_(std::move(symbol)) {
    setText(text);
    setFont(fonts::system(primaryFontSize, QFont::DemiBold));
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
}

QSize PrimaryButton::sizeHint() const {
    const QFontMetrics metrics = fontMetrics();
    const int symbolWidth = symbol_.isEmpty() ? 0 : symbolSide + symbolGap - symbolInset;
    return {2 * primaryPadding + symbolWidth + metrics.horizontalAdvance(text()),
            std::max(primaryMinimumHeight, metrics.height())};
}

double PrimaryButton::opacity() const {
    if (!isEnabled()) return Tokens::disabledOpacity;
    return isDown() ? Tokens::pressedOpacity : 1.0;
}

QPainterPath PrimaryButton::shape() const {
    return shapes::continuousRoundedRect(rect(), primaryRadius);
}

bool PrimaryButton::hitButton(const QPoint& position) const {
    return shape().contains(QPointF(position) + QPointF(0.5, 0.5));
}

void PrimaryButton::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(font());
    if (opacity() < 1) {
        paintFaded(painter, rect(), opacity(), [this](QPainter& layer) { paintContent(layer); });
    } else {
        paintContent(painter);
    }
}

void PrimaryButton::paintContent(QPainter& painter) {
    const ColorScheme scheme = Tokens::scheme(palette());
    const bool isHot = isEnabled() && (underMouse() || isDown());
    painter.fillPath(shape(), isHot ? Tokens::primaryHover(scheme) : Tokens::primary.color(scheme));

    const QColor color = Tokens::onPrimary.color(scheme);
    int textStart = primaryPadding;
    if (!symbol_.isEmpty()) {
        const QRect box(primaryPadding - symbolInset, (height() - symbolSide) / 2, symbolSide, symbolSide);
        symbols::paint(painter, symbol_, QStyle::visualRect(layoutDirection(), rect(), box), color);
        textStart = box.right() + 1 + symbolGap;
    }
    const QRect textRect(textStart, 0, width() - textStart - primaryPadding, height());
    painter.setPen(color);
    painter.drawText(QStyle::visualRect(layoutDirection(), rect(), textRect),
                     Qt::AlignCenter | Qt::TextSingleLine, text());
}

PlainButton::PlainButton(QString symbol, int side, QMargins clickMargins, QWidget* parent)
    : QAbstractButton(parent)
    , symbol_(std::move(symbol))
    , side_(side)
    , clickMargins_(clickMargins) {
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
}

PlainButton* PlainButton::withText(const QString& text, int pixelSize, QWidget* parent) {
    auto* const button = new PlainButton({}, 0, textClickMargins, parent);
    button->setText(text);
    button->setFont(fonts::system(pixelSize));
    return button;
}

PlainButton* PlainButton::withSymbol(const QString& symbol, int side, const QString& name, QWidget* parent) {
    auto* const button = new PlainButton(symbol, side, symbolClickMargins, parent);
    button->setAccessibleName(name);
    return button;
}

QSize PlainButton::contentSize() const {
    if (!symbol_.isEmpty()) return {side_, side_};
    return {fontMetrics().horizontalAdvance(text()), fontMetrics().height()};
}

void PlainButton::setContentRect(const QRect& rect) {
    setGeometry(rect.marginsAdded(clickMargins_));
}

QSize PlainButton::sizeHint() const {
    return contentSize().grownBy(clickMargins_);
}

void PlainButton::paintEvent(QPaintEvent* /*event*/) {
    const ColorScheme scheme = Tokens::scheme(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!isEnabled()) painter.setOpacity(Tokens::disabledOpacity);

    const bool isHot = isEnabled() && (underMouse() || isDown());
    if (isHot) {
        painter.fillPath(shapes::continuousRoundedRect(rect(), plainRadius),
                         isDown() ? Tokens::pressedFill(scheme) : Tokens::hoverFill(scheme));
    }
    const QColor color = isHot ? Tokens::onSurface.color(scheme) : Tokens::textSecondary(scheme);
    const QRect content = rect().marginsRemoved(clickMargins_);
    if (symbol_.isEmpty()) {
        painter.setPen(color);
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, text());
    } else {
        symbols::paint(painter, symbol_, content, color);
    }
}

} // namespace corvane

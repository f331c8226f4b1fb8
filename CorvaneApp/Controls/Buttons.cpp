#include "Controls/Buttons.h"

#include "Controls/Faded.h"
#include "Controls/FocusRing.h"
#include "Controls/PressGuard.h"
#include "Controls/PrimaryButtonStyle.h"
#include "Controls/Symbols.h"
#include "Style/Fonts.h"
#include "Style/ReadingDirection.h"
#include "Style/Shapes.h"
#include "Style/TextScale.h"
#include "Style/Tokens.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace corvane {

namespace {

constexpr Scaled shapedPadding{12};
constexpr Scaled shapedMinimumHeight{28};
constexpr Scaled shapedRadius{8.0};
constexpr Scaled shapedFontSize{13.0};
constexpr qreal borderWidth = 1;
constexpr Scaled symbolSide{16};
constexpr Scaled symbolGap{6};
// The symbol is drawn this far inside its box, so the box is moved outwards to keep the padding.
constexpr Scaled symbolInset{2};

constexpr Scaled plainRadius{6.0};
constexpr Scaled textPillMargins{QMargins{6, 4, 6, 4}};
constexpr Scaled symbolPillMargins{QMargins{5, 5, 5, 5}};

constexpr Scaled linkRingMargins{QMargins{5, 3, 5, 3}};
constexpr Scaled linkRingRadius{4.0};
constexpr Scaled underlineOffset{2};
constexpr int smallestClickHeight = 24;

struct Narrowing {
    Scaled<qreal> fontSize;
    Scaled<int> padding;
    bool hasSymbol;
};

// A label smaller than a banner's smallest text would be unreadable; without the symbol it may be larger.
constexpr std::array<Narrowing, PrimaryButton::narrowest + 1> narrowings{{
    {shapedFontSize, shapedPadding, true},
    {Scaled{12.0}, Scaled{10}, true},
    {Scaled{11.0}, Scaled{8}, true},
    {Scaled{12.0}, Scaled{8}, false},
}};

QMargins uniform(int margin) {
    return {margin, margin, margin, margin};
}

// `margins`, enlarged if the click area for content of this height would otherwise be too small.
QMargins reaching(QMargins margins, int contentHeight) {
    const int missing = smallestClickHeight - contentHeight;
    margins.setTop(std::max(margins.top(), missing / 2));
    margins.setBottom(std::max(margins.bottom(), missing - missing / 2));
    return margins;
}

} // namespace

// PushButton

PushButton::PushButton(QWidget* parent)
    : QAbstractButton(parent) {
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    PressGuard::install(*this);
}

void PushButton::keyPressEvent(QKeyEvent* event) {
    // Otherwise the desktop determines which keys press a button.
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        if (!event->isAutoRepeat()) click();
        return;
    }
    QAbstractButton::keyPressEvent(event);
}

bool PushButton::isHot() const {
    return isEnabled() && (underMouse() || isDown());
}

// ShapedButton

ShapedButton::ShapedButton(const QString& text, QFont::Weight weight, QWidget* parent)
    : PushButton(parent) {
    setText(text);
    setFont(fonts::system(shapedFontSize, weight));
    FocusRing::install(*this, uniform(FocusRing::distance()), shapedRadius + FocusRing::distance());
}

QSize ShapedButton::sizeHint() const {
    const QFontMetrics metrics = fontMetrics();
    return {2 * padding() + leadingWidth() + metrics.horizontalAdvance(text()),
            std::max<int>(shapedMinimumHeight, metrics.height())};
}

int ShapedButton::padding() const {
    return shapedPadding;
}

double ShapedButton::opacity() const {
    return isEnabled() ? 1.0 : Tokens::disabledOpacity;
}

QPainterPath ShapedButton::shape() const {
    return shapes::continuousRoundedRect(rect(), shapedRadius);
}

bool ShapedButton::hitButton(const QPoint& position) const {
    return shape().contains(QPointF(position) + QPointF(0.5, 0.5));
}

void ShapedButton::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(font());
    if (opacity() < 1) {
        paintFaded(painter, rect(), opacity(), [this](QPainter& layer) { paintContent(layer); });
    } else {
        paintContent(painter);
    }
}

void ShapedButton::paintText(QPainter& painter, const QColor& color) {
    const int start = padding() + leadingWidth();
    const QRect textRect(start, 0, width() - start - padding(), height());
    painter.setPen(color);
    painter.setLayoutDirection(readingDirection(text(), layoutDirection()));
    painter.drawText(QStyle::visualRect(layoutDirection(), rect(), textRect),
                     Qt::AlignCenter | Qt::TextSingleLine, text());
}

// PrimaryButton

PrimaryButton::PrimaryButton(const QString& text, QString symbol, QWidget* parent)
    : ShapedButton(text, PrimaryButtonStyle::weight, parent)
    , symbol_(std::move(symbol)) {}

void PrimaryButton::setNarrowing(int step) {
    narrowing_ = step;
    setFont(fonts::system(narrowings[static_cast<std::size_t>(step)].fontSize, PrimaryButtonStyle::weight));
    updateGeometry();
    update();
}

bool PrimaryButton::hasSymbol() const {
    return !symbol_.isEmpty() && narrowings[static_cast<std::size_t>(narrowing_)].hasSymbol;
}

int PrimaryButton::padding() const {
    return narrowings[static_cast<std::size_t>(narrowing_)].padding;
}

int PrimaryButton::leadingWidth() const {
    return hasSymbol() ? symbolSide + symbolGap - symbolInset : 0;
}

PrimaryButtonStyle PrimaryButton::buttonStyle() const {
    return {isEnabled(), underMouse(), isDown()};
}

double PrimaryButton::opacity() const {
    return buttonStyle().opacity();
}

void PrimaryButton::paintContent(QPainter& painter) {
    const Look look = Tokens::look(palette());
    painter.fillPath(shape(), buttonStyle().fill(look));

    const QColor color = PrimaryButtonStyle::ink(look);
    if (hasSymbol()) {
        const QRect box(padding() - symbolInset, (height() - symbolSide) / 2, symbolSide, symbolSide);
        symbols::paint(painter, symbol_, QStyle::visualRect(layoutDirection(), rect(), box), color);
    }
    paintText(painter, color);
}

// BorderedButton

BorderedButton::BorderedButton(const QString& text, QWidget* parent)
    : ShapedButton(text, QFont::Medium, parent) {}

void BorderedButton::paintContent(QPainter& painter) {
    const Look look = Tokens::look(palette());
    QColor fill = Tokens::surface.color(look);
    if (isHot()) fill = isDown() ? Tokens::pressedFill(look) : Tokens::hoverFill(look);
    painter.fillPath(shape(), fill);
    painter.strokePath(shapes::insideStroke(rect(), shapedRadius, borderWidth),
                       QPen(Tokens::controlBorder(look), borderWidth));
    paintText(painter, Tokens::onSurface.color(look));
}

// BareButton

BareButton::BareButton(QMargins clickMargins, QWidget* parent)
    : PushButton(parent)
    , clickMargins_(clickMargins) {}

QSize BareButton::contentSize() const {
    return {fontMetrics().horizontalAdvance(text()), fontMetrics().height()};
}

QRect BareButton::contentRect() const {
    return geometry().marginsRemoved(clickMargins_);
}

void BareButton::setContentRect(const QRect& rect) {
    setGeometry(rect.marginsAdded(clickMargins_));
}

QSize BareButton::sizeHint() const {
    return contentSize().grownBy(clickMargins_);
}

// PlainButton

PlainButton::PlainButton(QString symbol, int side, Ink ink, QMargins pillMargins, QWidget* parent)
    : BareButton(pillMargins, parent)
    , symbol_(std::move(symbol))
    , side_(side)
    , ink_(ink)
    , pillMargins_(pillMargins) {}

PlainButton* PlainButton::withText(const QString& text, qreal pixelSize, QWidget* parent, Ink ink,
                                   QFont::Weight weight) {
    auto* const button = new PlainButton({}, 0, ink, textPillMargins, parent);
    button->setText(text);
    button->setFont(fonts::system(pixelSize, weight));
    button->fitClickMargins();
    return button;
}

PlainButton* PlainButton::withSymbol(const QString& symbol, int side, const QString& name, QWidget* parent) {
    auto* const button = new PlainButton(symbol, side, Ink::secondary, symbolPillMargins, parent);
    button->setAccessibleName(name);
    button->fitClickMargins();
    return button;
}

void PlainButton::fitClickMargins() {
    setClickMargins(reaching(pillMargins_, contentSize().height()));
    FocusRing::install(*this, pillMargins_ - clickMargins(), plainRadius);
}

QSize PlainButton::contentSize() const {
    return symbol_.isEmpty() ? BareButton::contentSize() : QSize(side_, side_);
}

void PlainButton::paintEvent(QPaintEvent* /*event*/) {
    const Look look = Tokens::look(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!isEnabled()) painter.setOpacity(Tokens::disabledOpacity);

    if (isHot()) {
        const QRect pill = rect().marginsRemoved(clickMargins() - pillMargins_);
        painter.fillPath(shapes::continuousRoundedRect(pill, plainRadius),
                         isDown() ? Tokens::pressedFill(look) : Tokens::hoverFill(look));
    }
    QColor color = Tokens::onSurface.color(look);
    if (ink_ == Ink::primary) {
        color = Tokens::primary.color(look);
    } else if (ink_ == Ink::secondary && !isHot()) {
        color = Tokens::textSecondary(look);
    }
    if (symbol_.isEmpty()) {
        painter.setPen(color);
        painter.setLayoutDirection(readingDirection(text(), layoutDirection()));
        painter.drawText(rect().marginsRemoved(clickMargins()), Qt::AlignCenter | Qt::TextSingleLine, text());
    } else {
        symbols::paint(painter, symbol_, rect().marginsRemoved(clickMargins()), color);
    }
}

// LinkButton

LinkButton::LinkButton(const QString& text, qreal pixelSize, QWidget* parent)
    : BareButton({}, parent) {
    setText(text);
    setFont(fonts::system(pixelSize));
    setCursor(Qt::PointingHandCursor);
    // The ring keeps its distance from the text; the click area may be taller.
    setClickMargins(reaching(linkRingMargins, contentSize().height()));
    FocusRing::install(*this, linkRingMargins - clickMargins(), linkRingRadius);
}

void LinkButton::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    if (!isEnabled()) painter.setOpacity(Tokens::disabledOpacity);
    const Look look = Tokens::look(palette());
    const QColor color = Tokens::primary.color(look);
    const QRect content = rect().marginsRemoved(clickMargins());
    painter.setPen(color);
    painter.setLayoutDirection(readingDirection(text(), layoutDirection()));
    painter.drawText(content, Qt::AlignCenter | Qt::TextSingleLine, text());
    if (isHot() || look.isHighContrast()) {
        const int baseline = content.top() + fontMetrics().ascent();
        painter.fillRect(QRect(content.left(), baseline + underlineOffset, content.width(), 1), color);
    }
}

} // namespace corvane

#include "Controls/Paragraph.h"

#include "Style/ReadingDirection.h"

#include <QPainter>
#include <QStyle>
#include <QTextLayout>

#include <algorithm>
#include <cmath>
#include <utility>

namespace corvane {

namespace {

QColor color(TextColor color, Look look) {
    switch (color) {
    case TextColor::onSurface:
        return Tokens::onSurface.color(look);
    case TextColor::secondary:
        return Tokens::textSecondary(look);
    case TextColor::secondaryOnBackground:
        return Tokens::textSecondaryOnBackground(look);
    }
    return {};
}

// Wide enough for anything that is measured on one line.
constexpr int unlimitedWidth = 1 << 20;

} // namespace

Paragraph::Paragraph(const QString& text, Style style, QWidget* parent)
    : QLabel(parent)
    , style_(std::move(style)) {
    setTextFormat(Qt::PlainText);
    setText(text);
    setFont(style_.font);
}

int Paragraph::layOut(QTextLayout& layout, int width) const {
    QString text = this->text();
    text.replace(QLatin1Char('\n'), QChar::LineSeparator);
    // Word joiners keep a path whole: it moves to the next line if it fits there.
    text.replace(QLatin1Char('/'), QStringLiteral("/\u2060"));
    layout.setText(text);
    layout.setFont(font());
    QTextOption option(QStyle::visualAlignment(layoutDirection(), style_.alignment) & ~Qt::AlignAbsolute);
    option.setTextDirection(readingDirection(text, layoutDirection()));
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);

    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine())
        line.setLineWidth(width);
    layout.endLayout();

    // The layout rounds ascent and descent up separately; only a height beyond that (a taller script) counts.
    const QFontMetricsF metrics(font());
    const qreal roundedUp = std::ceil(metrics.ascent()) + std::ceil(metrics.descent());
    const bool isSingle = layout.lineCount() == 1;
    qreal top = 0;
    for (int i = 0; i < layout.lineCount(); ++i) {
        QTextLine line = layout.lineAt(i);
        const qreal own = line.height() > roundedUp ? line.height() : std::round(metrics.height());
        const qreal height = isSingle ? own : std::max<qreal>(own, style_.lineHeight);
        line.setPosition({0, top + (height - line.height()) / 2});
        top += height;
    }
    return static_cast<int>(std::ceil(top));
}

int Paragraph::heightForWidth(int width) const {
    QTextLayout layout;
    return layOut(layout, width);
}

int Paragraph::naturalWidth() const {
    QTextLayout layout;
    (void)layOut(layout, unlimitedWidth);
    qreal width = 0;
    for (int i = 0; i < layout.lineCount(); ++i)
        width = std::max(width, layout.lineAt(i).naturalTextWidth());
    return static_cast<int>(std::ceil(width));
}

QSize Paragraph::sizeHint() const {
    const int width = naturalWidth();
    return {width, heightForWidth(width)};
}

void Paragraph::paintEvent(QPaintEvent* /*event*/) {
    QTextLayout layout;
    const int height = layOut(layout, width());
    QPainter painter(this);
    painter.setPen(color(style_.color, Tokens::look(palette())));
    layout.draw(&painter, QPointF(0, (this->height() - height) / 2.0));
}

} // namespace corvane

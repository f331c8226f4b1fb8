#include "Controls/Labels.h"

#include "Controls/Elision.h"
#include "Controls/ForeignText.h"
#include "Style/ReadingDirection.h"
#include "Style/Tokens.h"
#include "Style/Utf8.h"

#include <QAccessibleWidget>
#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

#include <utility>

namespace corvane {

namespace {

class AccessibleLine : public QAccessibleWidget {
  public:
    explicit AccessibleLine(LineLabel& label)
        : QAccessibleWidget(&label, label.content() == LineLabel::Content::clock ? QAccessible::Clock
                                                                                 : QAccessible::StaticText) {}

    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        if (kind != QAccessible::Name) return QAccessibleWidget::text(kind);
        return static_cast<const LineLabel*>(widget())->text();
    }

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.readOnly = true;
        return state;
    }
};

QAccessibleInterface* accessibleLine(const QString& /*className*/, QObject* object) {
    auto* const label = qobject_cast<LineLabel*>(object);
    return label != nullptr ? new AccessibleLine(*label) : nullptr;
}

} // namespace

LineLabel::LineLabel(const QString& text, const QFont& font, Emphasis emphasis, Truncation truncation,
                     QWidget* parent, Content content)
    : QWidget(parent)
    , emphasis_(emphasis)
    , truncation_(truncation)
    , content_(content) {
    QAccessible::installFactory(accessibleLine);
    setFont(font);
    setText(text);
}

void LineLabel::setText(const QString& text, const QString& drawn) {
    QString line = drawn.isNull() ? foreign::line(text) : drawn;
    if (text_ == text && line_ == line) return;
    text_ = text;
    line_ = std::move(line);
    shownWidth_ = -1;
    updateGeometry();
    if (backdrop_) {
        // Nothing else needs painting with it, and a deferred update would wake the process once more.
        repaint();
    } else {
        update();
    }
}

void LineLabel::setBackdrop(std::function<QColor()> color) {
    backdrop_ = std::move(color);
    setAttribute(Qt::WA_OpaquePaintEvent, backdrop_ != nullptr);
}

bool LineLabel::isCut() const {
    return shownText() != line_;
}

bool LineLabel::event(QEvent* event) {
    // Not the widget's own tool tip, which would become its accessible description too.
    if (event->type() != QEvent::ToolTip || !isCut()) return QWidget::event(event);
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), foreign::toolTip(text_), this);
    return true;
}

void LineLabel::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange) shownWidth_ = -1;
    QWidget::changeEvent(event);
}

QString LineLabel::shownText() const {
    if (truncation_ == Truncation::none) return line_;
    if (shownWidth_ != width()) {
        const QFontMetricsF metrics(font(), this);
        const auto measure = [&metrics](std::string_view part) {
            return metrics.horizontalAdvance(fromUtf8(part));
        };
        shown_ = fromUtf8(text::elidingMiddle(line_.toStdString(), width(), measure));
        shownWidth_ = width();
    }
    return shown_;
}

QSize LineLabel::sizeHint() const {
    const QFontMetrics metrics(font(), this);
    return {truncation_ == Truncation::none ? metrics.horizontalAdvance(line_) : 0, metrics.height()};
}

QSize LineLabel::minimumSizeHint() const {
    return sizeHint();
}

void LineLabel::paintEvent(QPaintEvent* /*event*/) {
    const QString line = shownText();
    const Look look = Tokens::look(palette());
    QPainter painter(this);
    if (backdrop_) {
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.fillRect(rect(), backdrop_());
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    }
    painter.setPen(emphasis_ == Emphasis::normal ? Tokens::onSurface.color(look)
                                                 : Tokens::textSecondary(look));
    painter.setLayoutDirection(readingDirection(text_, layoutDirection()));
    const Qt::Alignment alignment =
        QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft) | Qt::AlignAbsolute;
    painter.drawText(rect(), static_cast<int>(alignment | Qt::AlignVCenter) | Qt::TextSingleLine, line);
}

} // namespace corvane

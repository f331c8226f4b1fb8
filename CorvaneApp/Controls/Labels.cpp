#include "Controls/Labels.h"

#include "Controls/Elision.h"
#include "Style/Tokens.h"
#include "Style/Utf8.h"

#include <QAccessibleWidget>
#include <QEvent>
#include <QPainter>
#include <QStyle>

#include <utility>

namespace corvane {

namespace {

// A line break or a control character inside a project's name must not break the line.
QString singleLine(QString text) {
    for (QChar& character : text) {
        const QChar::Category category = character.category();
        if (category == QChar::Other_Control || category == QChar::Separator_Line ||
            category == QChar::Separator_Paragraph) {
            character = QLatin1Char(' ');
        }
    }
    return text;
}

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

LineLabel::LineLabel(QString text, const QFont& font, Emphasis emphasis, Truncation truncation,
                     QWidget* parent, Content content)
    : QWidget(parent)
    , text_(std::move(text))
    , emphasis_(emphasis)
    , truncation_(truncation)
    , content_(content) {
    QAccessible::installFactory(accessibleLine);
    setFont(font);
}

void LineLabel::setText(const QString& text) {
    if (text_ == text) return;
    text_ = text;
    shownWidth_ = -1;
    updateGeometry();
    update();
}

void LineLabel::setBackdrop(std::function<QColor()> color) {
    backdrop_ = std::move(color);
    setAttribute(Qt::WA_OpaquePaintEvent, backdrop_ != nullptr);
}

void LineLabel::setReadsInOwnDirection() {
    readsInOwnDirection_ = true;
    update();
}

void LineLabel::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange) shownWidth_ = -1;
    QWidget::changeEvent(event);
}

QString LineLabel::shownText() const {
    if (truncation_ == Truncation::none) return singleLine(text());
    if (shownWidth_ != width()) {
        const QFontMetricsF metrics(font(), this);
        const auto measure = [&metrics](std::string_view part) {
            return metrics.horizontalAdvance(fromUtf8(part));
        };
        shown_ = fromUtf8(text::elidingMiddle(singleLine(text()).toStdString(), width(), measure));
        shownWidth_ = width();
    }
    return shown_;
}

QSize LineLabel::sizeHint() const {
    const QFontMetrics metrics(font(), this);
    return {truncation_ == Truncation::none ? metrics.horizontalAdvance(singleLine(text())) : 0,
            metrics.height()};
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
    if (readsInOwnDirection_) {
        painter.setLayoutDirection(line.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    }
    const Qt::Alignment alignment =
        QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft) | Qt::AlignAbsolute;
    painter.drawText(rect(), static_cast<int>(alignment | Qt::AlignVCenter) | Qt::TextSingleLine, line);
}

} // namespace corvane

#include "Controls/Controls.h"

#include "Controls/Divider.h"
#include "Controls/Faded.h"
#include "Controls/FocusRing.h"
#include "Controls/Labels.h"
#include "Controls/Mirrored.h"
#include "Controls/Paragraph.h"
#include "Controls/PressGuard.h"
#include "Controls/Symbols.h"
#include "Style/Fonts.h"
#include "Style/Shapes.h"
#include "Style/TextScale.h"
#include "Style/Tokens.h"

#include <QAbstractItemView>
#include <QEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QStyle>
#include <QWheelEvent>

#include <algorithm>
#include <chrono>
#include <utility>

namespace corvane {

namespace {

constexpr Scaled switchSize{QSize{36, 20}};
constexpr Scaled knobSide{16.0};
constexpr std::chrono::milliseconds knobDuration{120};

constexpr Scaled pickerWidth{132};
constexpr Scaled pickerHeight{28};
constexpr Scaled pickerTextStart{10};
constexpr Scaled pickerRadius{8.0};
constexpr Scaled chevronsSide{14};
constexpr Scaled chevronsMargin{6};
constexpr Scaled pickerTextGap{4};

constexpr Scaled cardRadius{12.0};
constexpr qreal borderWidth = 1;

constexpr Scaled rowHeight{44};
constexpr Scaled rowPadding{12};
constexpr int dividerHeight = 1;
constexpr Scaled labelSize{13.0};
constexpr Scaled labelLineHeight{18};

} // namespace

// Switch

Switch::Switch(const QString& name, ReduceMotion reduceMotion, QWidget* parent)
    : BareButton(QMargins() + FocusRing::distance(), parent)
    , reduceMotion_(std::move(reduceMotion)) {
    setCheckable(true);
    setAccessibleName(name);
    FocusRing::install(*this, {}, 0, FocusRing::Shape::pill);
    animation_.setDuration(static_cast<int>(knobDuration.count()));
    animation_.setEasingCurve(QEasingCurve::OutCubic);
    connect(&animation_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        position_ = value.toReal();
        update();
    });
    connect(this, &QAbstractButton::toggled, this, &Switch::moveKnob);
}

QSize Switch::contentSize() const {
    return switchSize;
}

void Switch::moveKnob(bool on) {
    animation_.stop();
    const qreal target = on ? 1 : 0;
    if (!isVisible() || reduceMotion_()) {
        position_ = target;
        update();
        return;
    }
    animation_.setStartValue(position_);
    animation_.setEndValue(target);
    animation_.start();
}

void Switch::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (isEnabled()) {
        paintContent(painter);
    } else {
        paintFaded(painter, rect(), Tokens::disabledOpacity,
                   [this](QPainter& layer) { paintContent(layer); });
    }
}

void Switch::paintContent(QPainter& painter) const {
    const Look look = Tokens::look(palette());
    const QRectF track = rect().marginsRemoved(clickMargins());
    painter.setPen(Qt::NoPen);
    painter.setBrush(isChecked() ? Tokens::primary.color(look) : Tokens::switchOff(look));
    painter.drawRoundedRect(track, track.height() / 2, track.height() / 2);

    const qreal inset = (track.height() - knobSide) / 2;
    const qreal way = track.width() - knobSide - 2 * inset;
    const qreal fromLeft = isRightToLeft() ? 1 - position_ : position_;
    painter.setBrush(isChecked() ? Tokens::onPrimary.color(look) : Tokens::switchOffKnob(look));
    painter.drawEllipse(
        QRectF(track.left() + inset + fromLeft * way, track.top() + inset, knobSide, knobSide));
}

// Picker

Picker::Picker(const QString& name, const QStringList& choices, QWidget* parent)
    : QComboBox(parent) {
    setFont(fonts::system(labelSize));
    addItems(choices);
    setCurrentIndex(-1);
    setAccessibleName(name);
    // The drop-down list has the keyboard focus while it is open.
    view()->setAccessibleName(name);
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    PressGuard::install(*this);
    FocusRing::install(*this, QMargins() + FocusRing::distance(), pickerRadius + FocusRing::distance());
}

QSize Picker::sizeHint() const {
    int widest = 0;
    for (int i = 0; i < count(); ++i)
        widest = std::max(widest, fontMetrics().horizontalAdvance(itemText(i)));
    const int needed = pickerTextStart + widest + pickerTextGap + chevronsSide + chevronsMargin;
    return {std::max<int>(pickerWidth, needed), std::max<int>(pickerHeight, fontMetrics().height())};
}

void Picker::paintEvent(QPaintEvent* /*event*/) {
    const Look look = Tokens::look(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!isEnabled()) painter.setOpacity(Tokens::disabledOpacity);
    painter.fillPath(shapes::continuousRoundedRect(rect(), pickerRadius),
                     isEnabled() && underMouse() ? Tokens::hoverFill(look) : Tokens::surface.color(look));
    painter.strokePath(shapes::insideStroke(rect(), pickerRadius, borderWidth),
                       QPen(Tokens::controlBorder(look), borderWidth));

    const QRect chevrons(width() - chevronsMargin - chevronsSide, (height() - chevronsSide) / 2, chevronsSide,
                         chevronsSide);
    symbols::paint(painter, QStringLiteral("chevron.up.chevron.down"),
                   QStyle::visualRect(layoutDirection(), rect(), chevrons), Tokens::textSecondary(look));
    const QRect text(pickerTextStart, 0, chevrons.left() - pickerTextStart, height());
    const Qt::Alignment leading =
        QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft) | Qt::AlignAbsolute;
    painter.setPen(Tokens::onSurface.color(look));
    painter.drawText(QStyle::visualRect(layoutDirection(), rect(), text),
                     static_cast<int>(leading | Qt::AlignVCenter) | Qt::TextSingleLine, currentText());
}

void Picker::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        showPopup();
        return;
    }
    QComboBox::keyPressEvent(event);
}

void Picker::wheelEvent(QWheelEvent* event) {
    // Scrolling over the window must not change a setting unnoticed.
    event->ignore();
}

// Card

Card::Card(QWidget* parent)
    : QWidget(parent) {}

void Card::paintEvent(QPaintEvent* /*event*/) {
    const Look look = Tokens::look(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(shapes::continuousRoundedRect(rect(), cardRadius), Tokens::surface.color(look));
    painter.strokePath(shapes::insideStroke(rect(), cardRadius, borderWidth),
                       QPen(Tokens::divider(look), borderWidth));
}

// FormGroup

FormGroup::FormGroup(QWidget* parent)
    : Card(parent) {}

void FormGroup::addRow(const QString& label, QWidget* control) {
    QWidget* const divider = rows_.empty() ? nullptr : new Divider(Divider::Backdrop::surface, this);
    Paragraph::Style style;
    style.font = fonts::system(labelSize);
    style.lineHeight = labelLineHeight;
    control->setParent(this);
    auto* const words = new Paragraph(label, style, this);
    // A picker's accessible name may be its current choice; the label says what the choice is for.
    words->setBuddy(control);
    // Keeps the children in reading order.
    control->raise();
    rows_.push_back({words, control, divider, nullptr});
}

void FormGroup::setNote(QWidget* control, const QString& note) {
    const auto row = std::find_if(rows_.begin(), rows_.end(),
                                  [control](const Row& each) { return each.control == control; });
    if (row->note == nullptr) {
        if (note.isEmpty()) return;
        row->note = new LineLabel({}, fonts::system(labelSize), LineLabel::Emphasis::secondary,
                                  LineLabel::Truncation::none, this);
        row->note->stackUnder(control);
    }
    if (row->note->text() == note) return;
    row->note->setText(note);
    row->note->setVisible(!note.isEmpty());
    layOut();
}

QSize FormGroup::sizeHint() const {
    const int count = static_cast<int>(rows_.size());
    return {0, count * rowHeight + std::max(0, count - 1) * dividerHeight};
}

void FormGroup::resizeEvent(QResizeEvent* event) {
    Card::resizeEvent(event);
    layOut();
}

void FormGroup::changeEvent(QEvent* event) {
    Card::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange) layOut();
}

void FormGroup::layOut() {
    int top = 0;
    for (const Row& row : rows_) {
        if (row.divider != nullptr) {
            row.divider->setGeometry(rowPadding, top, width() - 2 * rowPadding, dividerHeight);
            top += dividerHeight;
        }
        auto* const bare = qobject_cast<BareButton*>(row.control);
        const QSize size = bare != nullptr ? bare->contentSize() : row.control->sizeHint();
        const int left = width() - rowPadding - size.width();
        const QRect place = mirrored(*this, {QPoint(left, top + (rowHeight - size.height()) / 2), size});
        if (bare != nullptr) {
            bare->setContentRect(place);
        } else {
            row.control->setGeometry(place);
        }
        int end = left - rowPadding;
        if (row.note != nullptr && !row.note->isHidden()) {
            const QSize note = row.note->sizeHint();
            end -= note.width();
            row.note->setGeometry(
                mirrored(*this, {QPoint(end, top + (rowHeight - note.height()) / 2), note}));
            end -= rowPadding;
        }
        row.label->setGeometry(mirrored(*this, {rowPadding, top, end - rowPadding, rowHeight}));
        top += rowHeight;
    }
}

} // namespace corvane

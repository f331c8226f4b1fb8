#include "Controls/ErrorText.h"

#include "Controls/FocusRing.h"
#include "Style/Fonts.h"
#include "Style/ReadingDirection.h"
#include "Style/TextScale.h"
#include "Style/Tokens.h"

#include <QAccessible>
#include <QEvent>
#include <QStyle>
#include <QTextBlock>
#include <QTextDocument>

#include <algorithm>
#include <cmath>
#include <memory>

namespace corvane {

namespace {

constexpr Scaled fontSize{11.0};
constexpr Scaled lineHeight{16};
constexpr Scaled ringMargins{QMargins{5, 3, 5, 3}};
constexpr Scaled ringRadius{4.0};

void setLineHeight(QTextDocument& document) {
    QTextBlockFormat format;
    format.setLineHeight(lineHeight, QTextBlockFormat::FixedHeight);
    QTextCursor cursor(&document);
    cursor.select(QTextCursor::Document);
    cursor.mergeBlockFormat(format);
}

} // namespace

ErrorText::ErrorText(QWidget* parent)
    : QTextEdit(parent) {
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setAcceptRichText(false);
    setTabChangesFocus(true);
    setUndoRedoEnabled(false);
    setFrameShape(QFrame::NoFrame);
    setFont(fonts::system(fontSize));
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    viewport()->setAutoFillBackground(false);
    document()->setDocumentMargin(0);
    FocusRing::install(*this, ringMargins, ringRadius);
    layOut();
    hide();
}

void ErrorText::setMessage(const QString& message) {
    setHidden(message.isEmpty());
    if (message == message_) return;
    message_ = message;
    setPlainText(message);
    setAccessibleName(message);
    layOut();
    // Several views show the same message; only a visible one announces it.
    if (!isVisible()) return;
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

int ErrorText::heightForWidth(int width) const {
    const std::unique_ptr<QTextDocument> copy(document()->clone());
    copy->setTextWidth(width);
    return std::max<int>(lineHeight, static_cast<int>(std::ceil(copy->size().height())));
}

void ErrorText::changeEvent(QEvent* event) {
    QTextEdit::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::LayoutDirectionChange) layOut();
}

void ErrorText::focusOutEvent(QFocusEvent* event) {
    QTextEdit::focusOutEvent(event);
    if (event->reason() == Qt::PopupFocusReason || event->reason() == Qt::ActiveWindowFocusReason) return;
    QTextCursor cursor = textCursor();
    cursor.clearSelection();
    setTextCursor(cursor);
}

void ErrorText::layOut() {
    setLineHeight(*document());
    QTextOption option = document()->defaultTextOption();
    option.setTextDirection(readingDirection(message_, layoutDirection()));
    option.setAlignment(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft) | Qt::AlignAbsolute);
    document()->setDefaultTextOption(option);

    QTextCharFormat format;
    format.setForeground(Tokens::error.color(Tokens::look(palette())));
    QTextCursor cursor(document());
    cursor.select(QTextCursor::Document);
    cursor.mergeCharFormat(format);
}

} // namespace corvane

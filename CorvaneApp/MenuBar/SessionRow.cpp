#include "MenuBar/SessionRow.h"

#include "Controls/FocusRing.h"
#include "Controls/ForeignText.h"
#include "Controls/Labels.h"
#include "Controls/Mirrored.h"
#include "MenuBar/StatusDot.h"
#include "Sessions/AlertText.h"
#include "Style/Fonts.h"
#include "Style/Shapes.h"
#include "Style/TextScale.h"
#include "Style/Times.h"
#include "Style/Tokens.h"
#include "Style/Translations.h"

#include <QAccessibleWidget>
#include <QHelpEvent>
#include <QPainter>
#include <QStringList>
#include <QStyle>
#include <QToolTip>

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

constexpr Scaled padding{12};
constexpr Scaled gap{8};
constexpr Scaled lineGap{1};
constexpr Scaled nameFontSize{13.0};
constexpr Scaled statusFontSize{11.0};
constexpr Scaled highlightInset{QMargins{4, 1, 4, 1}};
constexpr Scaled highlightRadius{8.0};

/// A button whose name is composed on request. If each change were notified, a screen reader would speak
/// every second while the session waits.
class AccessibleRow : public QAccessibleWidget {
  public:
    explicit AccessibleRow(SessionRow& row)
        : QAccessibleWidget(&row, QAccessible::Button) {}

    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        if (kind == QAccessible::Name) return row().spokenText();
        return kind == QAccessible::Description ? row().notes().join(QStringLiteral(", "))
                                                : QAccessibleWidget::text(kind);
    }

    // The row's name already contains the lines' words.
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }

    [[nodiscard]] QStringList actionNames() const override {
        return QStringList(pressAction()) + QAccessibleWidget::actionNames();
    }
    void doAction(const QString& name) override {
        if (name == pressAction()) {
            row().click();
        } else {
            QAccessibleWidget::doAction(name);
        }
    }

  private:
    [[nodiscard]] SessionRow& row() const { return *static_cast<SessionRow*>(widget()); }
};

QAccessibleInterface* accessibleRow(const QString& /*className*/, QObject* object) {
    auto* const row = qobject_cast<SessionRow*>(object);
    return row != nullptr ? new AccessibleRow(*row) : nullptr;
}

} // namespace

SessionRow::SessionRow(const AgentSession& session, Date now, std::function<void(const AgentSession&)> onTap,
                       QWidget* parent)
    : PushButton(parent)
    , name_(new LineLabel({}, fonts::monospaced(nameFontSize, QFont::DemiBold), LineLabel::Emphasis::normal,
                          LineLabel::Truncation::middle, this))
    , status_(new LineLabel({}, fonts::system(statusFontSize), LineLabel::Emphasis::secondary,
                            LineLabel::Truncation::none, this, LineLabel::Content::clock)) {
    QAccessible::installFactory(accessibleRow);
    for (LineLabel* const line : {name_, status_})
        line->setAttribute(Qt::WA_TransparentForMouseEvents);
    FocusRing::install(*this, -highlightInset, highlightRadius);
    connect(this, &QAbstractButton::clicked, this, [this, onTap = std::move(onTap)] {
        // The handler may destroy the row.
        const AgentSession tapped = session_;
        onTap(tapped);
    });
    setSession(session, now);
}

void SessionRow::setSession(const AgentSession& session, Date now) {
    const QColor oldColor = dotColor();
    const bool wasNameHidden = name_->isHidden();
    session_ = session;
    statusLine_ = QString::fromStdString(AlertText::statusLine(session, now, translations::words));
    name_->setText(QString::fromStdString(session.repoName()));
    status_->setText(QString::fromUtf8(session.agent.displayName()) + QStringLiteral(" · ") + statusLine_);
    const bool isSnoozed = session.isWaiting() && session.snoozedUntil && *session.snoozedUntil > now;
    snoozeNote_ = isSnoozed ? tr("Snoozed until %1").arg(times::shortTime(*session.snoozedUntil, QLocale()))
                            : QString();
    name_->setHidden(foreign::isBlank(name_->text()));
    if (name_->isHidden() != wasNameHidden) layOut();
    if (dotColor() != oldColor) update();
}

void SessionRow::setTerminalMissing(bool isMissing) {
    isTerminalMissing_ = isMissing;
}

QStringList SessionRow::notes() const {
    QStringList notes;
    if (!snoozeNote_.isEmpty()) notes.append(snoozeNote_);
    if (isTerminalMissing_) notes.append(tr("Terminal not found"));
    return notes;
}

QString SessionRow::spokenText() const {
    const QString agent = QString::fromUtf8(session_.agent.displayName());
    if (name_->isHidden()) return tr("%1, %2").arg(agent, statusLine_);
    return tr("%1, %2, %3").arg(name_->text(), agent, statusLine_);
}

QColor SessionRow::dotColor() const {
    return statusdot::color(session_.status, Tokens::look(palette()));
}

bool SessionRow::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return PushButton::event(event);
    QStringList lines;
    if (name_->isCut()) lines.append(name_->text());
    lines += notes();
    for (QString& line : lines)
        line = foreign::toolTip(line);
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), lines.join(QStringLiteral("<br>")),
                       this);
    return true;
}

QSize SessionRow::sizeHint() const {
    return {0,
            std::max(scaled(rowHeight), name_->sizeHint().height() + lineGap + status_->sizeHint().height())};
}

void SessionRow::resizeEvent(QResizeEvent* /*event*/) {
    layOut();
}

void SessionRow::changeEvent(QEvent* event) {
    PushButton::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange) layOut();
}

void SessionRow::layOut() {
    const int nameHeight = name_->sizeHint().height();
    const int nameAdvance = name_->isHidden() ? 0 : nameHeight + lineGap;
    const int statusHeight = status_->sizeHint().height();
    const int left = padding + statusdot::side + gap;
    const int top = (height() - nameAdvance - statusHeight) / 2;
    const QRect name(left, top, width() - left - padding, nameHeight);
    const QRect status(left, top + nameAdvance, name.width(), statusHeight);
    name_->setGeometry(mirrored(*this, name));
    status_->setGeometry(mirrored(*this, status));
}

void SessionRow::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Look look = Tokens::look(palette());
    if (isHot()) {
        painter.fillPath(
            shapes::continuousRoundedRect(QRectF(rect().marginsRemoved(highlightInset)), highlightRadius),
            isDown() ? Tokens::pressedFill(look) : Tokens::hoverFill(look));
    }
    const QRectF dot = QStyle::visualRect(
        layoutDirection(), rect(),
        QRect(padding, (height() - statusdot::side) / 2, statusdot::side, statusdot::side));
    statusdot::paint(painter, dot, session_.status, look);
}

} // namespace corvane

#include "MenuBarView.h"

#include "Controls/Buttons.h"
#include "Controls/Divider.h"
#include "Controls/Labels.h"
#include "Controls/Paragraph.h"
#include "MenuBar/SessionList.h"
#include "Model/AppModel.h"
#include "Style/Fonts.h"
#include "Style/TextScale.h"
#include "Style/Times.h"

#include <QCoreApplication>
#include <QCursor>
#include <QEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyle>
#include <QWindow>

#include <algorithm>
#include <optional>
#include <utility>

namespace corvane {

namespace {

constexpr Scaled padding{12};
constexpr Scaled gap{8};
constexpr Scaled footerGap{16};
constexpr Scaled quietHeight{28};
constexpr Scaled titleFontSize{15.0};
constexpr Scaled contactFontSize{11.0};
constexpr Scaled textFontSize{13.0};
constexpr Scaled paragraphLine{20};

Paragraph* paragraph(const QString& text, QWidget* parent) {
    return new Paragraph(text, {fonts::system(textFontSize), paragraphLine}, parent);
}

} // namespace

MenuBarView::MenuBarView(AppModel& model, Actions actions, QWidget* parent)
    : TrayPanelView(parent)
    , model_(model)
    , title_(new LineLabel(tr("Corvane"), fonts::system(titleFontSize, QFont::DemiBold),
                           LineLabel::Emphasis::normal, LineLabel::Truncation::none, this))
    , contact_(PlainButton::withText(tr("Custom feature? Contact us"), contactFontSize, this,
                                     PlainButton::Ink::secondary, QFont::Medium))
    , upperDivider_(new Divider(Divider::Backdrop::surface, this))
    , hint_(paragraph(tr("Connect an agent and Corvane will tap you when it needs you."), this))
    , connect_(new PrimaryButton(tr("Connect Claude Code"), {}, this))
    , nothingRuns_(paragraph(
          tr("No agents running. Start Claude Code and Corvane will tap you when it needs you."), this))
    , list_(new SessionList([&model](const AgentSession& session) { model.jump(session); }, this))
    , quietUntil_(new LineLabel({}, fonts::system(textFontSize), LineLabel::Emphasis::normal,
                                LineLabel::Truncation::none, this))
    , resume_(
          PlainButton::withText(tr("Resume"), textFontSize, this, PlainButton::Ink::primary, QFont::Medium))
    , lowerDivider_(new Divider(Divider::Backdrop::surface, this))
    , quiet_(PlainButton::withText(tr("Quiet for 1 hour"), textFontSize, this, PlainButton::Ink::onSurface))
    , settings_(PlainButton::withText(tr("Settings…"), textFontSize, this, PlainButton::Ink::onSurface))
    , quit_(PlainButton::withText(tr("Quit"), textFontSize, this, PlainButton::Ink::onSurface)) {
    setAccessibleName(tr("Corvane"));
    const auto leave = [this](QAbstractButton* button, std::function<void()> action) {
        connect(button, &QAbstractButton::clicked, this, [this, action = std::move(action)] {
            Q_EMIT left();
            action();
        });
    };
    leave(contact_,
          [open = std::move(actions.openLink)] { open(links::contact(QStringLiteral("menubar"))); });
    leave(settings_, std::move(actions.openSettings));
    leave(quit_, std::move(actions.quit));
    connect(connect_, &QAbstractButton::clicked, &model_, [this] { model_.connectAgent(AgentKind::claude); });
    connect(resume_, &QAbstractButton::clicked, &model_, &AppModel::resumeAlerts);
    connect(quiet_, &QAbstractButton::clicked, &model_, &AppModel::quietForAnHour);
    connect(&model_, &AppModel::changed, this, &MenuBarView::refresh);
    refresh();
}

void MenuBarView::refresh() {
    const bool isAnyConnected = model_.isAnyAgentConnected();
    const std::vector<AgentSession> sessions = model_.listedSessions();
    const std::optional<Date> until = model_.quietUntil();
    const bool isQuiet = until.has_value();

    // Hiding a control with the focus must not move the focus to an arbitrary one.
    const bool losesFocus = (connect_->hasFocus() && isAnyConnected) || (resume_->hasFocus() && !isQuiet);
    if (losesFocus) setFocus();
    const bool rowsChanged = list_->setSessions(sessions, model_.now());
    for (SessionRow* const row : list_->rows())
        row->setTerminalMissing(model_.isTerminalMissing(row->session().id()));
    if (isQuiet) quietUntil_->setText(times::quietUntil(*until));
    hint_->setVisible(!isAnyConnected);
    connect_->setVisible(!isAnyConnected);
    nothingRuns_->setVisible(isAnyConnected && sessions.empty());
    list_->setVisible(!sessions.empty());
    quietUntil_->setVisible(isQuiet);
    resume_->setVisible(isQuiet);
    if (rowsChanged) orderTabs();

    const int height = layOut(true);
    const bool heightChanges = std::exchange(height_, height) != height;
    if (heightChanges) {
        updateGeometry();
        Q_EMIT heightChanged();
    }
    layOut(false);
    if (rowsChanged || heightChanges) followPointer();
}

// Otherwise the row that was under the pointer would stay highlighted, and for good if the next press came
// before the pointer moved.
void MenuBarView::followPointer() {
    QWindow* const panel = window()->windowHandle();
    if (panel == nullptr || !underMouse()) return;
    const QPointF pointer = QCursor::pos();
    QMouseEvent move(QEvent::MouseMove, panel->mapFromGlobal(pointer), pointer, Qt::NoButton,
                     QGuiApplication::mouseButtons(), QGuiApplication::keyboardModifiers());
    QCoreApplication::sendEvent(panel, &move);
}

QSize MenuBarView::sizeHint() const {
    return {scaled(viewWidth), height_};
}

int MenuBarView::layOut(bool isTrial) const {
    const int width = scaled(viewWidth);
    const auto place = [this, isTrial, width](QWidget* widget, QRect rect) {
        if (!isTrial) widget->setGeometry(QStyle::visualRect(layoutDirection(), QRect(0, 0, width, 0), rect));
    };
    const auto placeButton = [this, isTrial, width](PlainButton* button, int x, int middle) {
        const QSize size = button->contentSize();
        const QRect rect(QPoint(x, middle - size.height() / 2), size);
        if (!isTrial)
            button->setContentRect(QStyle::visualRect(layoutDirection(), QRect(0, 0, width, 0), rect));
    };
    const auto placeLine = [&place](LineLabel* line, int middle) {
        const QSize size = line->sizeHint();
        place(line, {QPoint(padding, middle - size.height() / 2), size});
    };
    const int textWidth = width - 2 * padding;

    // In other languages, adjacent texts may be too long for one line: they then get lines of their own.
    int y = padding;
    const QSize contact = contact_->contentSize();
    const int titleWidth = title_->sizeHint().width();
    const bool isHeaderOneLine = titleWidth + gap + contact.width() <= textWidth;
    const int titleHeight = std::max(title_->sizeHint().height(), isHeaderOneLine ? contact.height() : 0);
    placeLine(title_, y + titleHeight / 2);
    if (isHeaderOneLine) {
        placeButton(contact_, width - padding - contact.width(), y + titleHeight / 2);
    } else {
        y += titleHeight + gap;
        placeButton(contact_, padding, y + contact.height() / 2);
    }
    y += (isHeaderOneLine ? titleHeight : contact.height()) + padding;
    place(upperDivider_, {0, y, width, 1});
    y += 1;

    if (!hint_->isHidden()) {
        y += padding;
        const int height = hint_->heightForWidth(textWidth);
        place(hint_, {padding, y, textWidth, height});
        y += height + gap;
        place(connect_, {QPoint(padding, y), connect_->sizeHint()});
        y += connect_->sizeHint().height() + padding;
    } else if (!nothingRuns_->isHidden()) {
        y += gap;
        const int height = nothingRuns_->heightForWidth(textWidth);
        place(nothingRuns_, {padding, y, textWidth, height});
        y += height + gap;
    } else {
        place(list_, {0, y, width, list_->wantedHeight()});
        y += list_->wantedHeight();
    }
    if (!resume_->isHidden()) {
        placeLine(quietUntil_, y + quietHeight / 2);
        placeButton(resume_, width - padding - resume_->contentSize().width(), y + quietHeight / 2);
        y += quietHeight + gap;
    }

    place(lowerDivider_, {0, y, width, 1});
    y += 1 + padding;
    const int footerHeight = quiet_->contentSize().height();
    const int quitX = width - padding - quit_->contentSize().width();
    const int settingsX = quitX - footerGap - settings_->contentSize().width();
    placeButton(quiet_, padding, y + footerHeight / 2);
    if (padding + quiet_->contentSize().width() + footerGap > settingsX) y += footerHeight + gap;
    placeButton(quit_, quitX, y + footerHeight / 2);
    placeButton(settings_, settingsX, y + footerHeight / 2);
    return y + footerHeight + padding;
}

void MenuBarView::prepareToOpen() {
    list_->showFromTop();
}

void MenuBarView::orderTabs() {
    std::vector<QWidget*> order{contact_, connect_};
    order.insert(order.end(), list_->rows().begin(), list_->rows().end());
    order.insert(order.end(), {resume_, quiet_, settings_, quit_});
    for (std::size_t i = 1; i < order.size(); ++i)
        setTabOrder(order[i - 1], order[i]);
}

void MenuBarView::resizeEvent(QResizeEvent* /*event*/) {
    layOut(false);
}

void MenuBarView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange) layOut(false);
}

void MenuBarView::keyPressEvent(QKeyEvent* event) {
    const int step = event->key() == Qt::Key_Down ? 1 : event->key() == Qt::Key_Up ? -1 : 0;
    if (step == 0) {
        QWidget::keyPressEvent(event);
    } else {
        list_->moveFocus(step);
    }
}

} // namespace corvane

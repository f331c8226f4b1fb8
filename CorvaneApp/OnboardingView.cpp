#include "OnboardingView.h"

#include "Controls/ErrorText.h"
#include "Controls/Mirrored.h"
#include "Controls/Paragraph.h"
#include "Model/AppModel.h"
#include "Settings/AgentCard.h"
#include "Style/Fonts.h"
#include "Style/TextScale.h"
#include "Style/Tokens.h"
#include "Style/Utf8.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

constexpr Scaled padding{24};
constexpr Scaled titleGap{8};
constexpr Scaled introductionGap{20};
constexpr Scaled spacing{12};

constexpr Scaled titleSize{22.0};
constexpr Scaled titleLineHeight{28};
constexpr Scaled textSize{13.0};
constexpr Scaled textLineHeight{20};
constexpr Scaled linkSize{11.0};
// Room for at least two lines of an error; a longer one may scroll.
constexpr Scaled leastErrorHeight{32};

} // namespace

OnboardingView::OnboardingView(AppModel& model, links::Opener openLink, QWidget* parent)
    : QWidget(parent)
    , model_(model) {
    setFixedSize(scaled(contentSize));

    Paragraph::Style titleStyle;
    titleStyle.font = fonts::system(titleSize, QFont::Bold);
    titleStyle.lineHeight = titleLineHeight;
    title_ = new Paragraph(tr("Corvane taps you when your agent needs you."), titleStyle, this);

    Paragraph::Style textStyle;
    textStyle.font = fonts::system(textSize);
    textStyle.lineHeight = textLineHeight;
    textStyle.color = TextColor::secondaryOnBackground;
    introduction_ = new Paragraph(introduction(true), textStyle, this);
    textStyle.color = TextColor::onSurface;
    withoutTray_ = new Paragraph(tr("This desktop has no tray: Corvane works in the background, without an "
                                    "icon. To come back here, start it again."),
                                 textStyle, this);
    withoutTray_->hide();

    cards_ = AgentCard::forAll(model, this);
    error_ = new ErrorText(this);
    test_ = new BorderedButton(tr("Try a test alert"), this);
    contact_ = new LinkButton(tr("Need a custom feature? Contact us"), linkSize, this);
    done_ = new BorderedButton(tr("Done"), this);

    for (AgentCard* const card : cards_)
        connect(card, &AgentCard::heightChanged, this, &OnboardingView::layOut);
    connect(test_, &QAbstractButton::clicked, this, [this] { model_.sendTestAlert(); });
    connect(contact_, &QAbstractButton::clicked, this,
            [openLink = std::move(openLink)] { openLink(links::contact(QStringLiteral("onboarding"))); });
    connect(done_, &QAbstractButton::clicked, this, [this] {
        model_.setHasCompletedOnboarding(true);
        Q_EMIT done();
    });
    connect(&model, &AppModel::changed, this, &OnboardingView::refresh);
    refresh();
}

QString OnboardingView::introduction(bool hasTray) {
    return hasTray ? tr("When Claude Code is waiting for your approval or your reply — or finishes — you "
                        "hear a sound and see a banner, even in a full-screen app. Lives in your menu bar.")
                   : tr("When Claude Code is waiting for your approval or your reply — or finishes — you "
                        "hear a sound and see a banner, even in a full-screen app.");
}

void OnboardingView::setTray(bool isThere) {
    if (withoutTray_->isHidden() == isThere) return;
    introduction_->setText(introduction(isThere));
    withoutTray_->setVisible(!isThere);
    layOut();
}

void OnboardingView::refresh() {
    const QString message = fromUtf8(model_.connectError().value_or(std::string()));
    if (message == error_->message()) return;
    error_->setMessage(message);
    layOut();
}

void OnboardingView::layOut() {
    const int inner = width() - 2 * padding;
    int top = padding;
    const bool hasTray = withoutTray_->isHidden();
    for (Paragraph* const paragraph : {title_, introduction_, withoutTray_}) {
        const bool isShown = paragraph != withoutTray_ || !hasTray;
        const int height = isShown ? paragraph->heightForWidth(inner) : 0;
        paragraph->setGeometry(padding, top, inner, height);
        const bool isLast = paragraph == (hasTray ? introduction_ : withoutTray_);
        if (isShown) top += height + (isLast ? introductionGap : titleGap);
    }
    for (AgentCard* const card : cards_) {
        const int height = card->heightForWidth(inner);
        card->setGeometry(padding, top, inner, height);
        top += height + spacing;
    }

    const QSize test = test_->sizeHint();
    const QSize done = done_->sizeHint();
    // In other languages and fonts the texts may take more lines.
    const int error = error_->isHidden() ? 0 : std::min<int>(error_->heightForWidth(inner), leastErrorHeight);
    const int needed = top + error + spacing + std::max(test.height(), done.height()) + padding;
    setFixedHeight(std::max(scaled(contentSize).height(), needed));
    const int bottom = height() - padding;
    const int rowTop = bottom - std::max(test.height(), done.height());
    error_->setGeometry(padding, top, inner,
                        std::max(0, std::min(error_->heightForWidth(inner), rowTop - spacing - top)));
    test_->setGeometry(mirrored(*this, padding, rowTop, test));
    done_->setGeometry(mirrored(*this, width() - padding - done.width(), rowTop, done));
    const QSize link = contact_->contentSize();
    contact_->setContentRect(mirrored(*this, padding + test.width() + spacing,
                                      rowTop + (test.height() - link.height()) / 2, link));
}

void OnboardingView::paintEvent(QPaintEvent* /*event*/) {
    QPainter(this).fillRect(rect(), Tokens::background.color(Tokens::look(palette())));
}

void OnboardingView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layOut();
}

void OnboardingView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange) layOut();
}

} // namespace corvane

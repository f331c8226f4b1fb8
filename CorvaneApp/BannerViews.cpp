#include "BannerViews.h"

#include "Controls/AgentGlyph.h"
#include "Controls/Buttons.h"
#include "Controls/ForeignText.h"
#include "Controls/Labels.h"
#include "Controls/Mirrored.h"
#include "Controls/SecondHand.h"
#include "Controls/Symbols.h"
#include "Model/AppModel.h"
#include "Sessions/AlertText.h"
#include "Style/Fonts.h"
#include "Style/Shapes.h"
#include "Style/TextScale.h"
#include "Style/Tokens.h"
#include "Style/Translations.h"
#include "Style/Utf8.h"

#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

constexpr Scaled cornerRadius{16.0};
constexpr qreal outlineWidth = 1.5;
constexpr qreal hairlineWidth = 1;

constexpr Scaled padding{16};
constexpr Scaled rowSpacing{12};
constexpr Scaled flexibleSpace{8};
constexpr Scaled lineSpacing{2};

constexpr Scaled titleSize{15.0};
constexpr Scaled subtitleSize{13.0};
constexpr Scaled smallSize{11.0};
// A text that is too long shrinks, down to this size; then the button makes room for it. The text is cut only
// if that does not suffice.
constexpr Scaled smallestTitle{13.0};
constexpr Scaled smallestSubtitle{11.0};

constexpr Scaled glyphSide{36};

LineLabel* titleLabel(const AlertText& text, QWidget* parent) {
    return new LineLabel(fromUtf8(text.title), fonts::system(titleSize, QFont::DemiBold),
                         LineLabel::Emphasis::normal, LineLabel::Truncation::middle, parent);
}

/// The project and the message, each isolated, so that neither affects the direction of the other.
QString drawnSubtitle(const AlertText& text, const AgentSession& session) {
    const std::string name = session.repoName();
    if (text.subtitle.size() <= name.size()) return foreign::line(fromUtf8(text.subtitle));
    const QString separator = QStringLiteral(" · ");
    const QString message = fromUtf8(text.subtitle).mid(fromUtf8(name).size() + separator.size());
    const QString project = foreign::isolated(fromUtf8(name));
    return project.isEmpty() ? foreign::line(message) : project + separator + foreign::isolated(message);
}

LineLabel* subtitleLabel(const AlertText& text, const AgentSession& session, QWidget* parent) {
    auto* const label = new LineLabel({}, fonts::monospaced(subtitleSize), LineLabel::Emphasis::normal,
                                      LineLabel::Truncation::middle, parent);
    label->setText(fromUtf8(text.subtitle), drawnSubtitle(text, session));
    label->setHidden(foreign::isBlank(fromUtf8(text.subtitle)));
    return label;
}

std::vector<LineFit> lineFits(LineLabel& title, LineLabel& subtitle) {
    return {{title, fonts::narrowing(title.font(), smallestTitle)},
            {subtitle, fonts::narrowing(subtitle.font(), smallestSubtitle)}};
}

/// The height of a line in a column with the space below it; 0 if the line is hidden.
int lineAdvance(const LineLabel& line) {
    return line.isHidden() ? 0 : line.sizeHint().height() + lineSpacing;
}

void setAccessibleText(QWidget& banner, const AlertText& text) {
    // Nobody wants to hear more than this, and a message can be of any length.
    constexpr int longestName = 4096;
    const std::string pattern =
        translations::words(translatable("corvane::BannerCard", "%1, %2")); // title and subtitle, as spoken
    const bool isTitleAll = foreign::isBlank(fromUtf8(text.subtitle));
    QString name =
        fromUtf8(isTitleAll ? text.title : filled(pattern, {text.title, text.subtitle})).left(longestName);
    if (name.back().isHighSurrogate()) name.chop(1);
    banner.setAccessibleName(name);
}

} // namespace

// BannerCard

BannerCard::BannerCard(AgentSession session, QSize size, Edge edge)
    : session_(std::move(session))
    , edge_(edge) {
    setFixedSize(size);
}

QPainterPath BannerCard::outline() const {
    return shapes::continuousRoundedRect(rect(), cornerRadius);
}

QColor BannerCard::fillColor() const {
    const Look look = Tokens::look(palette());
    QColor fill = Tokens::cardFill(look, isBlurredBehind());
    if (isOnMaterial() && !look.isHighContrast()) fill.setAlpha(0);
    return fill;
}

void BannerCard::paintEvent(QPaintEvent* /*event*/) {
    const Look look = Tokens::look(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(outline(), fillColor());
    if (edge_ == Edge::primaryOutline) {
        painter.strokePath(shapes::insideStroke(rect(), cornerRadius, outlineWidth),
                           QPen(Tokens::primary.color(look), outlineWidth));
    } else {
        painter.strokePath(shapes::insideStroke(rect(), cornerRadius, hairlineWidth),
                           QPen(Tokens::hairline(look), hairlineWidth));
    }
}

void BannerCard::showEvent(QShowEvent* event) {
    PanelContent::showEvent(event);
    // A banner's window is never active.
    window()->setAttribute(Qt::WA_AlwaysShowToolTips);
}

// WaitingBanner

WaitingBanner::WaitingBanner(const AgentSession& session, Clock clock, std::function<void()> onJump,
                             std::function<void()> onSnooze, std::function<void()> onClose)
    : BannerCard(session, scaled(contentSize), Edge::primaryOutline)
    , clock_(std::move(clock)) {
    constexpr Scaled crossSide{14};
    const AlertText text = AlertText::waiting(session, translations::words);
    setAccessibleText(*this, text);

    glyph_ = new AgentGlyph(session.agent, true, this);
    title_ = titleLabel(text, this);
    subtitle_ = subtitleLabel(text, session, this);
    waited_ = new LineLabel(waitedLabel(clock_()), fonts::system(smallSize, QFont::Medium),
                            LineLabel::Emphasis::secondary, LineLabel::Truncation::none, this,
                            LineLabel::Content::clock);
    waited_->setBackdrop([this] { return fillColor(); });
    jump_ = new PrimaryButton(tr("Go to Terminal"), QStringLiteral("terminal"), this);
    snooze_ = PlainButton::withText(tr("Snooze"), smallSize, this);
    snooze_->setToolTip(tr("For %1 minutes").arg(static_cast<int>(AppModel::snoozeDuration.count() / 60)));
    close_ = PlainButton::withSymbol(QStringLiteral("xmark"), crossSide, tr("Close"), this);

    fits_ = lineFits(*title_, *subtitle_);

    connect(jump_, &QAbstractButton::clicked, this, std::move(onJump));
    connect(snooze_, &QAbstractButton::clicked, this, std::move(onSnooze));
    connect(close_, &QAbstractButton::clicked, this, std::move(onClose));
}

WaitingBanner::~WaitingBanner() {
    stopClock();
}

void WaitingBanner::setTerminalMissing(bool isMissing) {
    jump_->setToolTip(isMissing ? tr("Terminal not found") : QString());
}

QString WaitingBanner::waitedLabel(Date now) const {
    const SessionStatus::Waiting* const waiting = session().status.ifWaiting();
    if (waiting == nullptr) return {};
    return tr("waiting %1").arg(fromUtf8(AlertText::clock(now - waiting->since)));
}

void WaitingBanner::showEvent(QShowEvent* event) {
    BannerCard::showEvent(event);
    if (!session().isWaiting() || tick_) return;
    SecondHand& hand = SecondHand::instance();
    hand.startClock();
    tick_ = connect(&hand, &SecondHand::ticked, this, [this] { waited_->setText(waitedLabel(clock_())); });
}

void WaitingBanner::hideEvent(QHideEvent* event) {
    stopClock();
    BannerCard::hideEvent(event);
}

void WaitingBanner::stopClock() {
    if (disconnect(std::exchange(tick_, {}))) SecondHand::instance().stopClock();
}

namespace {

// The cross is drawn this far inside its box, so the box is moved outwards to align the cross with the
// margin.
constexpr Scaled crossInset{3};
constexpr Scaled buttonRowSpacing{6};
constexpr Scaled plainSpacing{8};

int textsLeft() {
    return padding + glyphSide + rowSpacing;
}

} // namespace

int WaitingBanner::textWidth() const {
    const int plainRow =
        snooze_->contentSize().width() + plainSpacing + close_->contentSize().width() - crossInset;
    const int actionsLeft = width() - padding - std::max(jump_->sizeHint().width(), plainRow);
    return actionsLeft - 2 * rowSpacing - flexibleSpace - textsLeft();
}

void WaitingBanner::makeRoomForTexts() {
    jump_->setNarrowing(PrimaryButton::narrowest);
    const int widest = textWidth();
    const auto allFit = [&](int width) {
        // A text that fits nowhere is cut anyway.
        return std::all_of(fits_.begin(), fits_.end(),
                           [&](const LineFit& fit) { return fit.canFit(width) || !fit.canFit(widest); });
    };
    for (int step = 0; step <= PrimaryButton::narrowest; ++step) {
        jump_->setNarrowing(step);
        if (allFit(textWidth())) break;
    }
    for (LineFit& fit : fits_)
        fit.apply(textWidth());
}

void WaitingBanner::resizeEvent(QResizeEvent* event) {
    BannerCard::resizeEvent(event);
    makeRoomForTexts();

    const int right = width() - padding;
    const QSize jump = jump_->sizeHint();
    const QSize snooze = snooze_->contentSize();
    const QSize cross = close_->contentSize();
    const int plainHeight = std::max(snooze.height(), cross.height());
    const int actionsTop = (height() - jump.height() - buttonRowSpacing - plainHeight) / 2;
    jump_->setGeometry(mirrored(*this, {QPoint(right - jump.width(), actionsTop), jump}));

    const auto inPlainRow = [&](int left, const QSize& size) {
        const int top = actionsTop + jump.height() + buttonRowSpacing + (plainHeight - size.height()) / 2;
        return mirrored(*this, {QPoint(left, top), size});
    };
    const int crossLeft = right - cross.width() + crossInset;
    close_->setContentRect(inPlainRow(crossLeft, cross));
    const int snoozeLeft = crossLeft - plainSpacing - snooze.width();
    snooze_->setContentRect(inPlainRow(snoozeLeft, snooze));

    glyph_->setGeometry(mirrored(*this, {padding, (height() - glyphSide) / 2, glyphSide, glyphSide}));

    const int textLeft = textsLeft();
    const int textWidth = this->textWidth();
    const int titleHeight = title_->sizeHint().height();
    const int subtitleHeight = subtitle_->sizeHint().height();
    const int waitedHeight = waited_->sizeHint().height();
    int top = (height() - titleHeight - lineSpacing - lineAdvance(*subtitle_) - waitedHeight) / 2;
    title_->setGeometry(mirrored(*this, {textLeft, top, textWidth, titleHeight}));
    top += titleHeight + lineSpacing;
    subtitle_->setGeometry(mirrored(*this, {textLeft, top, textWidth, subtitleHeight}));
    top += lineAdvance(*subtitle_);
    waited_->setGeometry(mirrored(*this, {textLeft, top, textWidth, waitedHeight}));
}

// DoneBanner

namespace {

// Makes the check mark's disc 22 pixels wide; the symbol's grid leaves a margin around it.
constexpr Scaled checkSide{26.4};
constexpr Scaled discSide{22};

} // namespace

DoneBanner::DoneBanner(const AgentSession& session, std::function<void()> onClose)
    : BannerCard(session, scaled(contentSize), Edge::hairline) {
    constexpr Scaled crossSide{16};
    const AlertText text = AlertText::done(session, translations::words);
    setAccessibleText(*this, text);

    title_ = titleLabel(text, this);
    subtitle_ = subtitleLabel(text, session, this);
    close_ = PlainButton::withSymbol(QStringLiteral("xmark"), crossSide, tr("Close"), this);
    fits_ = lineFits(*title_, *subtitle_);
    connect(close_, &QAbstractButton::clicked, this, std::move(onClose));
}

void DoneBanner::paintEvent(QPaintEvent* event) {
    BannerCard::paintEvent(event);
    QPainter painter(this);
    const QRect disc = mirrored(*this, {padding, (height() - discSide) / 2, discSide, discSide});
    QRectF box(0, 0, checkSide, checkSide);
    box.moveCenter(QRectF(disc).center());
    symbols::paint(painter, QStringLiteral("checkmark.circle.fill"), box,
                   Tokens::secondary.color(Tokens::look(palette())));
}

void DoneBanner::resizeEvent(QResizeEvent* event) {
    BannerCard::resizeEvent(event);
    constexpr Scaled doneCrossInset{4};

    const QSize cross = close_->contentSize();
    const int crossLeft = width() - padding - cross.width() + doneCrossInset;
    close_->setContentRect(mirrored(*this, {QPoint(crossLeft, (height() - cross.height()) / 2), cross}));

    const int textLeft = padding + discSide + rowSpacing;
    const int textWidth = crossLeft - rowSpacing - textLeft;
    for (LineFit& fit : fits_)
        fit.apply(textWidth);
    const int titleHeight = title_->sizeHint().height();
    const int subtitleHeight = subtitle_->sizeHint().height();
    int top = (height() - titleHeight - lineAdvance(*subtitle_)) / 2;
    title_->setGeometry(mirrored(*this, {textLeft, top, textWidth, titleHeight}));
    top += titleHeight + lineSpacing;
    subtitle_->setGeometry(mirrored(*this, {textLeft, top, textWidth, subtitleHeight}));
}

} // namespace corvane

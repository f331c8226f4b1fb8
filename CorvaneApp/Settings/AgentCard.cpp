#include "Settings/AgentCard.h"

#include "Controls/AgentGlyph.h"
#include "Controls/Mirrored.h"
#include "Controls/Paragraph.h"
#include "Controls/Symbols.h"
#include "Model/AppModel.h"
#include "Style/Fonts.h"
#include "Style/TextScale.h"
#include "Style/Tokens.h"
#include "Style/Translations.h"

#include <QEvent>
#include <QHideEvent>
#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace corvane {

namespace {

constexpr Scaled padding{12};
constexpr Scaled spacing{12};
constexpr Scaled smallestHeight{76};
constexpr Scaled glyphSide{36};
constexpr qreal seatEdge = 1; // beyond the badge
constexpr Scaled lineSpacing{2};
constexpr Scaled checkSide{18};
constexpr Scaled checkGap{6};

constexpr Scaled titleSize{15.0};
constexpr Scaled detailSize{11.0};
constexpr Scaled detailLineHeight{16};
constexpr Scaled wordSize{13.0};

Paragraph* paragraph(const QFont& font, int lineHeight, TextColor color, QWidget* parent) {
    Paragraph::Style style;
    style.font = font;
    style.lineHeight = lineHeight;
    style.color = color;
    return new Paragraph({}, style, parent);
}

/// The path as users write it.
QString abbreviated(const std::filesystem::path& file, const std::filesystem::path& home) {
    QString homePath = QString::fromStdString(home.string());
    while (homePath.endsWith(QLatin1Char('/')))
        homePath.chop(1);
    QString path = QString::fromStdString(file.string());
    return homePath.isEmpty() ? path : path.replace(homePath, QStringLiteral("~"));
}

QString inUserWords(const Phrase& phrase) {
    return QString::fromStdString(translations::words(phrase));
}

} // namespace

std::vector<AgentCard*> AgentCard::forAll(AppModel& model, QWidget* parent) {
    std::vector<AgentCard*> cards;
    for (const AgentKind agent : model.agents())
        cards.push_back(new AgentCard(agent, model, parent));
    return cards;
}

AgentCard::AgentCard(AgentKind agent, AppModel& model, QWidget* parent)
    : Card(parent)
    , agent_(agent)
    , model_(model)
    , glyph_(new AgentGlyph(agent, false, this))
    , title_(paragraph(fonts::system(titleSize, QFont::DemiBold), 0, TextColor::onSurface, this))
    , detail_(paragraph(fonts::system(detailSize), detailLineHeight, TextColor::secondary, this))
    , runningAgents_(paragraph(fonts::system(detailSize), detailLineHeight, TextColor::secondary, this))
    , connectedWord_(paragraph(fonts::system(wordSize), 0, TextColor::onSurface, this))
    , connect_(new PrimaryButton(tr("Connect"), {}, this))
    , remove_(new BorderedButton(tr("Remove"), this)) {
    title_->setText(inUserWords(agent.descriptor().cardTitle));
    runningAgents_->setText(inUserWords(agent.descriptor().cardRunningAgents));
    connectedWord_->setText(tr("Connected"));
    // A window has several cards: the button's name alone does not say which agent it is for.
    connect_->setAccessibleDescription(title_->text());
    remove_->setAccessibleDescription(title_->text());
    connect(connect_, &QAbstractButton::clicked, this, [this] { model_.connectAgent(agent_); });
    connect(remove_, &QAbstractButton::clicked, this, [this] { model_.disconnectAgent(agent_); });
    connect(&model, &AppModel::changed, this, &AgentCard::refresh);
    setState(model.connected().at(agent) ? Connected::yes : Connected::no);
}

QString AgentCard::detail() const {
    const QString file = abbreviated(model_.connector().configFile(agent_), model_.connector().home());
    const AgentDescriptor& agent = agent_.descriptor();
    return inUserWords(isConnected() ? agent.cardSummary : agent.cardOffer).arg(file);
}

void AgentCard::refresh() {
    const bool connected = model_.connected().at(agent_);
    if (connected != isConnected()) setState(connected ? Connected::justNow : Connected::no);
}

void AgentCard::setState(Connected state) {
    state_ = state;
    detail_->setText(detail());
    runningAgents_->setVisible(state == Connected::justNow);
    connectedWord_->setVisible(isConnected());
    QWidget* const shown = isConnected() ? static_cast<QWidget*>(remove_) : connect_;
    QWidget* const hidden = isConnected() ? static_cast<QWidget*>(connect_) : remove_;
    const bool hadFocus = hidden->hasFocus();
    shown->show();
    // The focus stays on the card.
    if (hadFocus) shown->setFocus(Qt::TabFocusReason);
    hidden->hide();
    layOut();
    update();
    Q_EMIT heightChanged();
}

void AgentCard::hideEvent(QHideEvent* event) {
    Card::hideEvent(event);
    // Not for a window that is only minimized.
    if (state_ == Connected::justNow && !event->spontaneous()) setState(Connected::yes);
}

int AgentCard::trailingWidth() const {
    if (!isConnected()) return connect_->sizeHint().width();
    return checkSide + checkGap + connectedWord_->naturalWidth() + spacing + remove_->sizeHint().width();
}

int AgentCard::textWidth(int width) const {
    return width - 2 * padding - glyphSide - 2 * spacing - trailingWidth();
}

int AgentCard::textHeight(int width) const {
    const int height = title_->heightForWidth(width) + lineSpacing + detail_->heightForWidth(width);
    return state_ == Connected::justNow ? height + lineSpacing + runningAgents_->heightForWidth(width)
                                        : height;
}

int AgentCard::heightForWidth(int width) const {
    return std::max<int>(smallestHeight, 2 * padding + textHeight(textWidth(width)));
}

QRect AgentCard::checkBox() const {
    const int left = width() - padding - trailingWidth();
    return QStyle::visualRect(layoutDirection(), rect(),
                              {left, (height() - checkSide) / 2, checkSide, checkSide});
}

void AgentCard::layOut() {
    const auto centred = [&](int left, QSize size) {
        return mirrored(*this, left, (height() - size.height()) / 2, size);
    };
    glyph_->setGeometry(centred(padding, {glyphSide, glyphSide}));

    const int textLeft = padding + glyphSide + spacing;
    const int text = textWidth(width());
    const int titleHeight = title_->heightForWidth(text);
    const int detailHeight = detail_->heightForWidth(text);
    const int top = (height() - textHeight(text)) / 2;
    title_->setGeometry(mirrored(*this, textLeft, top, {text, titleHeight}));
    const int detailTop = top + titleHeight + lineSpacing;
    detail_->setGeometry(mirrored(*this, textLeft, detailTop, {text, detailHeight}));
    runningAgents_->setGeometry(mirrored(*this, textLeft, detailTop + detailHeight + lineSpacing,
                                         {text, runningAgents_->heightForWidth(text)}));

    const QSize button = isConnected() ? remove_->sizeHint() : connect_->sizeHint();
    const QRect buttonPlace = centred(width() - padding - button.width(), button);
    remove_->setGeometry(buttonPlace);
    connect_->setGeometry(buttonPlace);
    const int wordWidth = connectedWord_->naturalWidth();
    connectedWord_->setGeometry(centred(width() - padding - button.width() - spacing - wordWidth,
                                        {wordWidth, connectedWord_->heightForWidth(wordWidth)}));
}

void AgentCard::resizeEvent(QResizeEvent* event) {
    Card::resizeEvent(event);
    layOut();
}

void AgentCard::changeEvent(QEvent* event) {
    Card::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange) layOut();
}

void AgentCard::paintEvent(QPaintEvent* event) {
    Card::paintEvent(event);
    const Look look = Tokens::look(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    // The badge has the card's own colour: this ring around it makes it visible.
    const QRectF seat = QRectF(glyph_->geometry()).adjusted(-seatEdge, -seatEdge, seatEdge, seatEdge);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Tokens::divider(look));
    painter.drawEllipse(seat);
    if (isConnected()) {
        symbols::paint(painter, QStringLiteral("checkmark.circle.fill"), checkBox(),
                       Tokens::secondary.color(look));
    }
}

} // namespace corvane

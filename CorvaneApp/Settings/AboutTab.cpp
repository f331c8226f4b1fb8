#include "Settings/AboutTab.h"

#include "Controls/Buttons.h"
#include "Controls/Divider.h"
#include "Controls/Mirrored.h"
#include "Controls/Paragraph.h"
#include "Style/Fonts.h"
#include "Style/TextScale.h"

#include <QCoreApplication>
#include <QEvent>
#include <QStyle>

#include <algorithm>

namespace corvane {

namespace {

constexpr Scaled padding{24};
constexpr Scaled top{40};
constexpr Scaled nameGap{8};
constexpr Scaled descriptionGap{16};
constexpr Scaled linksGap{32};
constexpr Scaled dividerGap{24};
constexpr Scaled headingGap{4};
constexpr Scaled appsGap{8};
constexpr Scaled dotGap{8};
constexpr Scaled dividerWidth{400};

constexpr Scaled nameSize{15.0};
constexpr Scaled textSize{13.0};
constexpr Scaled textLineHeight{20};
constexpr Scaled headingSize{11.0};
constexpr Scaled headingLineHeight{16};

Paragraph* centred(const QString& text, const QFont& font, int lineHeight, TextColor color, QWidget* parent) {
    Paragraph::Style style;
    style.font = font;
    style.lineHeight = lineHeight;
    style.color = color;
    style.alignment = Qt::AlignHCenter;
    return new Paragraph(text, style, parent);
}

QString version() {
    const QString version = QCoreApplication::applicationVersion();
    return version.isEmpty() ? QStringLiteral("1.0.0") : version;
}

} // namespace

AboutTab::AboutTab(const links::Opener& openLink, QWidget* parent)
    : QWidget(parent)
    , name_(centred(tr("Corvane %1").arg(version()), fonts::system(nameSize, QFont::DemiBold), textLineHeight,
                    TextColor::onSurface, this))
    , description_(centred(tr("Corvane taps you when Claude Code or Codex needs you.\nIt needs no account, "
                              "keeps everything on the Mac and never goes online."),
                           fonts::system(textSize), textLineHeight, TextColor::secondaryOnBackground, this))
    , website_(new LinkButton(tr("Website"), textSize, this))
    , dot_(centred(QStringLiteral("·"), fonts::system(textSize), 0, TextColor::secondaryOnBackground, this))
    , contact_(new LinkButton(tr("Contact"), textSize, this))
    , divider_(new Divider(Divider::Backdrop::background, this))
    , heading_(centred(tr("From the same maker"), fonts::system(headingSize, QFont::Medium),
                       headingLineHeight, TextColor::secondaryOnBackground, this))
    , apps_(centred(tr("Small, careful Mac apps for people who work with AI agents."),
                    fonts::system(textSize), textLineHeight, TextColor::onSurface, this))
    , more_(new LinkButton(tr("More Mac apps ↗"), textSize, this)) {
    const auto leadsTo = [&](LinkButton* link, const QUrl& url) {
        connect(link, &QAbstractButton::clicked, this, [openLink, url] { openLink(url); });
    };
    leadsTo(website_, links::website());
    leadsTo(contact_, links::contact(QStringLiteral("about")));
    leadsTo(more_, links::catalogue());
}

void AboutTab::layOut() {
    const int inner = width() - 2 * padding;
    int y = top;
    const auto place = [&](Paragraph* paragraph, int gap) {
        const int height = paragraph->heightForWidth(inner);
        paragraph->setGeometry(padding, y, inner, height);
        y += height + gap;
    };
    place(name_, nameGap);
    place(description_, descriptionGap);

    const QSize website = website_->contentSize();
    const QSize contact = contact_->contentSize();
    const int dot = dot_->naturalWidth();
    const int rowHeight = std::max(website.height(), contact.height());
    int x = (width() - website.width() - contact.width() - dot - 2 * dotGap) / 2;
    website_->setContentRect(mirrored(*this, x, y, website));
    x += website.width() + dotGap;
    dot_->setGeometry(mirrored(*this, x, y, {dot, rowHeight}));
    x += dot + dotGap;
    contact_->setContentRect(mirrored(*this, x, y, contact));
    y += rowHeight + linksGap;

    divider_->setGeometry((width() - dividerWidth) / 2, y, dividerWidth, divider_->height());
    y += divider_->height() + dividerGap;
    place(heading_, headingGap);
    place(apps_, appsGap);
    const QSize more = more_->contentSize();
    more_->setContentRect({QPoint((width() - more.width()) / 2, y), more});
}

void AboutTab::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layOut();
}

void AboutTab::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange) layOut();
}

} // namespace corvane

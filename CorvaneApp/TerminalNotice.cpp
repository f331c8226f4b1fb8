#include "TerminalNotice.h"

#include "Controls/Buttons.h"
#include "Controls/ForeignText.h"
#include "Controls/Labels.h"
#include "Controls/Mirrored.h"
#include "Controls/Symbols.h"
#include "Style/Fonts.h"
#include "Style/TextScale.h"
#include "Style/Tokens.h"
#include "Style/Utf8.h"

#include <QDir>
#include <QPainter>

#include <utility>

namespace corvane {

namespace {

constexpr Scaled padding{16};
constexpr Scaled rowSpacing{12};
constexpr Scaled lineSpacing{2};
constexpr Scaled titleSize{15.0};
constexpr Scaled folderSize{13.0};
constexpr Scaled symbolSide{22};

/// The folder as users write it, with "~" for their home.
QString folderName(const AgentSession& session) {
    const QString path = fromUtf8(session.cwd);
    const QString home = QDir::homePath();
    if (path == home) return QStringLiteral("~");
    return path.startsWith(home + QLatin1Char('/')) ? QLatin1Char('~') + path.mid(home.size()) : path;
}

} // namespace

TerminalNotice::TerminalNotice(const AgentSession& session, std::function<void()> onClose)
    : BannerCard(session, scaled(contentSize), Edge::hairline) {
    constexpr Scaled crossSide{16};
    constexpr qsizetype longestName = 4096; // characters; more than a path has
    const QString title = tr("Couldn't bring the terminal forward");
    const QString folder = folderName(session);
    const bool hasFolder = !foreign::isBlank(folder);
    //: What cannot be done, and the agent's folder, as spoken.
    setAccessibleName(hasFolder ? tr("%1, %2").arg(title, foreign::line(folder).left(longestName)) : title);

    title_ = new LineLabel(title, fonts::system(titleSize, QFont::DemiBold), LineLabel::Emphasis::normal,
                           LineLabel::Truncation::middle, this);
    folder_ = new LineLabel({}, fonts::monospaced(folderSize), LineLabel::Emphasis::normal,
                            LineLabel::Truncation::middle, this);
    folder_->setText(folder, foreign::isolated(folder));
    folder_->setHidden(!hasFolder);
    close_ = PlainButton::withSymbol(QStringLiteral("xmark"), crossSide, tr("Close"), this);
    connect(close_, &QAbstractButton::clicked, this, std::move(onClose));
}

void TerminalNotice::paintEvent(QPaintEvent* event) {
    BannerCard::paintEvent(event);
    QPainter painter(this);
    const QRect box = mirrored(*this, {padding, (height() - symbolSide) / 2, symbolSide, symbolSide});
    symbols::paint(painter, QStringLiteral("terminal"), box,
                   Tokens::onSurface.color(Tokens::look(palette())));
}

void TerminalNotice::resizeEvent(QResizeEvent* event) {
    BannerCard::resizeEvent(event);
    // The cross is drawn this far inside its box.
    constexpr Scaled crossInset{4};

    const QSize cross = close_->contentSize();
    const int crossLeft = width() - padding - cross.width() + crossInset;
    close_->setContentRect(mirrored(*this, {QPoint(crossLeft, (height() - cross.height()) / 2), cross}));

    const int textLeft = padding + symbolSide + rowSpacing;
    const int textWidth = crossLeft - rowSpacing - textLeft;
    const int titleHeight = title_->sizeHint().height();
    const int folderHeight = folder_->isHidden() ? 0 : folder_->sizeHint().height() + lineSpacing;
    const int top = (height() - titleHeight - folderHeight) / 2;
    title_->setGeometry(mirrored(*this, {textLeft, top, textWidth, titleHeight}));
    folder_->setGeometry(mirrored(
        *this, {textLeft, top + titleHeight + lineSpacing, textWidth, folder_->sizeHint().height()}));
}

} // namespace corvane

#include "Controls/AgentGlyph.h"

#include "Style/Fonts.h"
#include "Style/TextScale.h"
#include "Style/Tokens.h"
#include "Style/Utf8.h"

#include <QAccessibleWidget>
#include <QPainter>
#include <QPainterPath>

namespace corvane {

namespace {

constexpr Scaled glyphSide{36};
constexpr qreal glyphRing = 2;
constexpr Scaled glyphLetterSize{16.0};

QAccessibleInterface* accessibleGlyph(const QString& /*className*/, QObject* object) {
    auto* const glyph = qobject_cast<AgentGlyph*>(object);
    return glyph != nullptr ? new QAccessibleWidget(glyph, QAccessible::Graphic) : nullptr;
}

} // namespace

AgentGlyph::AgentGlyph(AgentKind agent, bool waiting, QWidget* parent)
    : QWidget(parent)
    , agent_(agent)
    , waiting_(waiting) {
    setFixedSize(glyphSide, glyphSide);
    setFont(fonts::system(glyphLetterSize, QFont::Bold));
    QAccessible::installFactory(accessibleGlyph);
    setAccessibleName(fromUtf8(agent_.displayName()));
}

QString AgentGlyph::letter() const {
    return fromUtf8(agent_.descriptor().badge);
}

QSize AgentGlyph::sizeHint() const {
    return {glyphSide, glyphSide};
}

void AgentGlyph::paintEvent(QPaintEvent* /*event*/) {
    const Look look = Tokens::look(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);

    painter.setPen(Qt::NoPen);
    painter.setBrush(Tokens::surface.color(look));
    painter.drawEllipse(rect());
    if (waiting_) {
        constexpr qreal inset = glyphRing / 2;
        painter.setPen(QPen(Tokens::primary.color(look), glyphRing));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(QRectF(rect()).adjusted(inset, inset, -inset, -inset));
    }

    // Centred by its outline: centred by the line height, a single capital would be a little too high.
    QPainterPath ink;
    ink.addText(0, 0, font(), letter());
    const QPointF middle = QRectF(rect()).center() - ink.boundingRect().center();
    painter.fillPath(ink.translated(middle), Tokens::onSurface.color(look));
}

} // namespace corvane

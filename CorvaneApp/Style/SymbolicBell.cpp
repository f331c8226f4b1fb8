#include "Style/SymbolicBell.h"

#include "Style/BellShapes.h"

#include <QPainterPath>
#include <QTransform>

namespace corvane::symbolicbell {

namespace {

// Qt's operations on paths replace curves by lines, accurate to a fraction of a unit: enlarging the paths
// first keeps them smooth.
constexpr double enlargement = 8;

QByteArray number(double value) {
    constexpr int digits = 4;
    return QByteArray::number(value / enlargement, 'g', digits);
}

QPainterPath enlarged(const QPainterPath& path) {
    return QTransform::fromScale(enlargement, enlargement).map(path);
}

QByteArray point(const QPainterPath::Element& element) {
    return number(element.x) + ' ' + number(element.y);
}

QByteArray pathData(const QPainterPath& path) {
    QByteArray data;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element element = path.elementAt(i);
        switch (element.type) {
        case QPainterPath::MoveToElement:
            if (i > 0) data += 'Z';
            data += 'M' + point(element);
            break;
        case QPainterPath::LineToElement:
            data += 'L' + point(element);
            break;
        case QPainterPath::CurveToElement:
            data += 'C' + point(element);
            break;
        case QPainterPath::CurveToDataElement:
            data += ' ' + point(element);
            break;
        }
    }
    return data + 'Z';
}

// The CSS classes by which KDE's desktop and those of GTK choose a colour.
constexpr const char* textClass = "ColorScheme-Text";
constexpr const char* badgeClass = "ColorScheme-NeutralText warning";

QByteArray element(const char* classes, const QPainterPath& path) {
    return QByteArrayLiteral("  <path class=\"") + classes +
           R"(" fill="currentColor" fill-rule="evenodd" d=")" + pathData(path) + "\"/>\n";
}

} // namespace

QString name(int waitingCount) {
    if (waitingCount > largestCount) return {};
    return waitingCount < 1 ? QStringLiteral("corvane-bell-symbolic")
                            : QStringLiteral("corvane-bell-%1-symbolic").arg(waitingCount);
}

QByteArray drawing(int side, int waitingCount, QColor ink, QColor badge) {
    const bell::Grid& grid = bell::gridFor(side);
    const QString text = waitingCount > 1 ? QString::number(waitingCount) : QString();
    constexpr double curveError = 0.25 / enlargement;
    QPainterPath body = enlarged(bell::strokes(grid, text.size(), 0, curveError)).simplified();
    QByteArray shapes;
    if (waitingCount > 0) {
        const bell::Badge parts = bell::badge(grid, text.size());
        body = body.united(enlarged(bell::arch(grid))).subtracted(enlarged(parts.gap));
        const QPainterPath digits = enlarged(bell::cells(text, parts.pill)).simplified();
        shapes = element(badgeClass, enlarged(parts.shape).subtracted(digits));
    }
    const QByteArray size = QByteArray::number(side);
    // KDE's desktop replaces the element of this id by one with its own colours.
    return R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 )" + size + ' ' + size + R"(" width=")" +
           size + R"(" height=")" + size + "\">\n" +
           R"(  <style id="current-color-scheme" type="text/css">.ColorScheme-Text{color:)" +
           ink.name().toLatin1() + "}.ColorScheme-NeutralText{color:" + badge.name().toLatin1() +
           "}</style>\n" + element(textClass, body) + shapes + "</svg>\n";
}

} // namespace corvane::symbolicbell

#include "Style/StatusIcon.h"

#include "Style/Fonts.h"

#include <QCoreApplication>
#include <QFontMetricsF>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPainterPathStroker>

#include <algorithm>
#include <array>
#include <cmath>

namespace corvane::statusicon {

namespace {

constexpr double keylineWidth = 1; // on each side of the bell's strokes
constexpr double keylineOpacity = 0.5;
constexpr int largestCount = 99;
constexpr int smallestOutlineDigits = 32; // device pixels; below, digits are bitmaps
constexpr double capitalHeight = 7;

/// The bell's dimensions on one grid, in grid units.
struct Grid {
    int side = 0;
    double stroke = 0;
    double left = 0; // the middle of the arch's sides
    double right = 0;
    double archY = 0;
    double archRadius = 0;
    double lipY = 0;
    double lipFrom = 0;
    double lipTo = 0;
    double knobX = 0;
    double knobFrom = 0;
    double knobTo = 0;
    double clapperY = 0;
    double clapperFrom = 0;
    double clapperTo = 0;
    QPointF dot;
    double dotRadius = 0;
    double gap = 0;
    double pillHeight = 0;
    double pillRadius = 0;
    std::array<double, 3> pillWidths{}; // for one, two and three characters
    double digitMargins = 0;            // the pill's width minus that of its digits at most
};

const std::array<Grid, 3> grids{{
    {16,  1.5, 4.75, 11.25, 7.25,    3.25, 11.25, 2.75, 13.25, 8,           2.25,
     3.5, 14,  7.25, 8.75,  {13, 3}, 3,    1,     9,    3,     {8, 12, 16}, 2.4},
    {22, 2, 6, 16, 10, 5, 16, 4, 18, 11, 3, 4.5, 20, 10, 12, {18, 4}, 4, 1.5, 11, 5, {12, 15, 20}, 4.5},
    {24, 2, 6, 18, 11, 6, 17, 4, 20, 12, 3, 4.5, 21, 10.5, 13.5, {19, 5}, 4, 1.5, 11, 5, {12, 16, 20}, 4.5},
}};

const Grid& gridFor(int side) {
    if (side % 22 == 0) return grids[1];
    if (side % 24 == 0) return grids[2];
    return grids[0];
}

QPainterPath line(double x1, double y1, double x2, double y2) {
    QPainterPath path({x1, y1});
    path.lineTo(x2, y2);
    return path;
}

/// Where the badge is, and what is erased around it.
struct Badge {
    QPainterPath shape;
    QPainterPath gap;
    QRectF pill; // empty for a dot
};

Badge dot(const Grid& grid) {
    Badge badge;
    badge.shape.addEllipse(grid.dot, grid.dotRadius, grid.dotRadius);
    badge.gap.addEllipse(grid.dot, grid.dotRadius + grid.gap, grid.dotRadius + grid.gap);
    return badge;
}

Badge pill(const Grid& grid, qsizetype characters) {
    const double width = grid.pillWidths.at(static_cast<std::size_t>(characters) - 1);
    const bool isCentred = characters == 3;
    Badge badge;
    badge.pill = {isCentred ? (grid.side - width) / 2 : grid.side - width, grid.side - grid.pillHeight, width,
                  grid.pillHeight};
    badge.shape.addRoundedRect(badge.pill, grid.pillRadius, grid.pillRadius);
    if (isCentred) {
        badge.gap.addRect(0, badge.pill.top() - grid.gap, grid.side, grid.pillHeight + grid.gap);
    } else {
        const QMarginsF gap(grid.gap, grid.gap, grid.gap, grid.gap);
        badge.gap.addRoundedRect(badge.pill.marginsAdded(gap), grid.pillRadius + grid.gap,
                                 grid.pillRadius + grid.gap);
    }
    return badge;
}

/// The bell's arch down to the lip.
QPainterPath arch(const Grid& grid) {
    const QRectF circle(grid.left, grid.archY - grid.archRadius, grid.right - grid.left, 2 * grid.archRadius);
    QPainterPath path({grid.left, grid.lipY});
    path.lineTo(grid.left, grid.archY);
    path.arcTo(circle, 180, -180);
    path.lineTo(grid.right, grid.lipY);
    return path;
}

/// The bell's strokes as a filled shape, `extra` wider on each side.
QPainterPath strokes(const Grid& grid, qsizetype characters, double extra) {
    QPainterPath lines = arch(grid);
    const bool hasLip = characters < 2 || (characters == 2 && grid.side != grids[0].side);
    if (hasLip) lines.addPath(line(grid.lipFrom, grid.lipY, grid.lipTo, grid.lipY));
    if (characters == 0) lines.addPath(line(grid.clapperFrom, grid.clapperY, grid.clapperTo, grid.clapperY));
    lines.addPath(line(grid.knobX, grid.knobFrom, grid.knobX, grid.knobTo));
    QPainterPathStroker stroker;
    stroker.setWidth(grid.stroke + 2 * extra);
    stroker.setCapStyle(Qt::RoundCap);
    stroker.setJoinStyle(Qt::RoundJoin);
    QPainterPath result = stroker.createStroke(lines);
    result.setFillRule(Qt::WindingFill);
    return result;
}

/// The rows of a digit of four columns, or of three; the highest bit is the leftmost of four.
using Bitmap = std::array<std::uint8_t, 7>;

struct Character {
    Bitmap rows;
    int width;
};

Character bitmap(QChar character) {
    switch (character.unicode()) {
    case '0':
        return {{0b0110, 0b1001, 0b1001, 0b1001, 0b1001, 0b1001, 0b0110}, 4};
    case '1':
        return {{0b0100, 0b1100, 0b0100, 0b0100, 0b0100, 0b0100, 0b1110}, 3};
    case '2':
        return {{0b0110, 0b1001, 0b0001, 0b0010, 0b0100, 0b1000, 0b1111}, 4};
    case '3':
        return {{0b0110, 0b1001, 0b0001, 0b0110, 0b0001, 0b1001, 0b0110}, 4};
    case '4':
        return {{0b1001, 0b1001, 0b1001, 0b1111, 0b0001, 0b0001, 0b0001}, 4};
    case '5':
        return {{0b1111, 0b1000, 0b1110, 0b0001, 0b0001, 0b1001, 0b0110}, 4};
    case '6':
        return {{0b0110, 0b1000, 0b1000, 0b1110, 0b1001, 0b1001, 0b0110}, 4};
    case '7':
        return {{0b1111, 0b0001, 0b0001, 0b0010, 0b0010, 0b0100, 0b0100}, 4};
    case '8':
        return {{0b0110, 0b1001, 0b1001, 0b0110, 0b1001, 0b1001, 0b0110}, 4};
    case '9':
        return {{0b0110, 0b1001, 0b1001, 0b0111, 0b0001, 0b0001, 0b0110}, 4};
    default:
        return {{0, 0, 0b0100, 0b1110, 0b0100, 0, 0}, 3}; // "+"
    }
}

// In device pixels, whatever the painter's scale.
void paintBitmaps(QPainter& painter, const QString& text, const QRectF& pill, const QColor& color) {
    int width = -1;
    for (const QChar character : text)
        width += bitmap(character).width + 1;
    constexpr int height = std::tuple_size_v<Bitmap>;
    int x = static_cast<int>(std::floor(pill.x() + (pill.width() - width) / 2));
    const int y = static_cast<int>(std::floor(pill.y() + (pill.height() - height) / 2));
    for (const QChar character : text) {
        const Character cells = bitmap(character);
        for (int row = 0; row < height; ++row) {
            for (int column = 0; column < cells.width; ++column) {
                const bool isSet = (cells.rows.at(static_cast<std::size_t>(row)) >> (3 - column) & 1) != 0;
                if (isSet) painter.fillRect(x + column, y + row, 1, 1, color);
            }
        }
        x += cells.width + 1;
    }
}

// In the grid's units.
void paintOutlines(QPainter& painter, const QString& text, const Grid& grid, const QRectF& pill,
                   const QColor& color) {
    constexpr int fontSize = 100; // any that is large: the outlines are scaled
    const QFont font = fonts::system(fontSize, QFont::Bold);
    QPainterPath outlines;
    outlines.addText(0, 0, font, text);
    const QRectF box = outlines.boundingRect();
    if (box.isEmpty()) return;
    const double height = capitalHeight / QFontMetricsF(font).capHeight();
    const double width = std::min(height, (pill.width() - grid.digitMargins) / box.width());
    painter.save();
    painter.translate(pill.center());
    painter.scale(width, height);
    painter.translate(-box.center());
    painter.fillPath(outlines, color);
    painter.restore();
}

QColor keylineColor(ColorScheme bar) {
    QColor color = Tokens::hairline(bar == ColorScheme::dark ? ColorScheme::light : ColorScheme::dark);
    color.setAlphaF(static_cast<float>(keylineOpacity));
    return color;
}

/// Offers a few sizes and draws any that is requested.
class Engine : public QIconEngine {
  public:
    Engine(int waitingCount, ColorScheme bar)
        : waitingCount_(waitingCount)
        , bar_(bar) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode /*mode*/, QIcon::State /*state*/) override {
        const qreal ratio = painter->device()->devicePixelRatioF();
        const int side = std::min(rect.width(), rect.height());
        QImage picture = image(std::max(1, qRound(side * ratio)), waitingCount_, bar_);
        picture.setDevicePixelRatio(ratio);
        painter->drawImage(rect.x() + (rect.width() - side) / 2, rect.y() + (rect.height() - side) / 2,
                           picture);
    }

    // In device pixels.
    QPixmap pixmap(const QSize& size, QIcon::Mode /*mode*/, QIcon::State /*state*/) override {
        return QPixmap::fromImage(
            image(std::max(1, std::min(size.width(), size.height())), waitingCount_, bar_));
    }

    QList<QSize> availableSizes(QIcon::Mode /*mode*/, QIcon::State /*state*/) override {
        QList<QSize> sizes;
        for (const int side : {16, 22, 24, 32, 44, 48, 64})
            sizes.append({side, side});
        return sizes;
    }

    QSize actualSize(const QSize& size, QIcon::Mode /*mode*/, QIcon::State /*state*/) override {
        const int side = std::min(size.width(), size.height());
        return {side, side};
    }

    [[nodiscard]] QIconEngine* clone() const override { return new Engine(*this); }

  private:
    int waitingCount_;
    ColorScheme bar_;
};

} // namespace

QImage image(int side, int waitingCount, ColorScheme bar) {
    const Grid& grid = gridFor(side);
    const QString text = badgeText(waitingCount);
    const bool isWaiting = waitingCount > 0;
    const double scale = static_cast<double>(side) / grid.side;

    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    // The bell has the colour of text on the bar.
    const QColor ink = Tokens::onSurface.color(bar);
    painter.fillPath(strokes(grid, text.size(), keylineWidth), keylineColor(bar));
    painter.fillPath(strokes(grid, text.size(), 0), ink);
    if (!isWaiting) return image;
    painter.fillPath(arch(grid), ink);

    const Badge badge = text.isEmpty() ? dot(grid) : pill(grid, text.size());
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.fillPath(badge.gap, ink);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.fillPath(badge.shape, Tokens::primary.color(bar));
    if (text.isEmpty()) return image;

    const QColor digits = Tokens::onPrimary.color(bar);
    if (side < smallestOutlineDigits) {
        const QRectF pill(badge.pill.topLeft() * scale, badge.pill.size() * scale);
        painter.resetTransform();
        painter.setRenderHint(QPainter::Antialiasing, false);
        paintBitmaps(painter, text, pill, digits);
    } else {
        paintOutlines(painter, text, grid, badge.pill, digits);
    }
    return image;
}

QIcon icon(int waitingCount, ColorScheme bar) {
    return QIcon(new Engine(waitingCount, bar));
}

QString badgeText(int waitingCount) {
    if (waitingCount < 2) return {};
    return waitingCount > largestCount ? QStringLiteral("%1+").arg(largestCount)
                                       : QString::number(waitingCount);
}

QString label(int waitingCount) {
    if (waitingCount < 1) return QCoreApplication::translate("corvane::MenuBarLabel", "Corvane");
    return waitingCount == 1
               ? QCoreApplication::translate("corvane::MenuBarLabel", "%1 agent waiting for you")
                     .arg(waitingCount)
               : QCoreApplication::translate("corvane::MenuBarLabel", "%1 agents waiting for you")
                     .arg(waitingCount);
}

ColorScheme barScheme(std::string_view desktops, ColorScheme applications) {
    while (!desktops.empty()) {
        const std::string_view name = desktops.substr(0, desktops.find(':'));
        if (name == "GNOME" || name == "Unity") return ColorScheme::dark;
        desktops.remove_prefix(std::min(desktops.size(), name.size() + 1));
    }
    return applications;
}

} // namespace corvane::statusicon

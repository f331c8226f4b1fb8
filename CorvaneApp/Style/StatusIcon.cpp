#include "Style/StatusIcon.h"

#include "Style/BellShapes.h"
#include "Style/DesktopNames.h"
#include "Style/Fonts.h"

#include <QCoreApplication>
#include <QFontMetricsF>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace corvane::statusicon {

namespace {

constexpr double keylineWidth = 1; // on each side of the bell's strokes
constexpr double keylineOpacity = 0.5;
constexpr int largestCount = 99;
constexpr int smallestOutlineDigits = 32; // device pixels; below, digits are bitmaps
constexpr double capitalHeight = 7;

// In the grid's units.
void paintOutlines(QPainter& painter, const QString& text, const bell::Grid& grid, const QRectF& pill,
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
    const bell::Grid& grid = bell::gridFor(side);
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
    painter.fillPath(bell::strokes(grid, text.size(), keylineWidth), keylineColor(bar));
    painter.fillPath(bell::strokes(grid, text.size(), 0), ink);
    if (!isWaiting) return image;
    painter.fillPath(bell::arch(grid), ink);

    const bell::Badge badge = bell::badge(grid, text.size());
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
        painter.fillPath(bell::cells(text, pill), digits);
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
    // Bars are dark on these desktops unless the user styles them; on the last six, often by another project.
    return isDesktop(desktops,
                     {"GNOME", "Unity", "X-Cinnamon", "sway", "i3", "Hyprland", "river", "niri", "wlroots"})
               ? ColorScheme::dark
               : applications;
}

bool isFilledByBar(std::string_view desktops) {
    return isDesktop(desktops, {"GNOME", "KDE", "X-Cinnamon", "XFCE"});
}

} // namespace corvane::statusicon

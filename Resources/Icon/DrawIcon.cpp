#include "Style/ApplicationIcon.h"
#include "Style/SymbolicBell.h"
#include "Style/Tokens.h"

#include <QDir>
#include <QFile>
#include <QString>

#include <array>
#include <cstdio>
#include <string_view>

// Draws the icons' files while building:
//   DrawIcon hicolor <folder>   <folder>/<side>x<side>/apps/corvane.png, as icon themes have them
//   DrawIcon iconset <folder>   <folder>/icon_<points>x<points>[@2x].png, as macOS' iconutil wants them
//   DrawIcon bells <folder>     <folder>/<size>/status/<name>.svg, the tray's bell as icon themes have it

namespace {

constexpr std::array hicolorSides{16, 22, 24, 32, 48, 64, 128, 256, 512};
constexpr std::array iconsetPoints{16, 32, 128, 256, 512};

bool complain(const QString& file) {
    std::fprintf(stderr, "DrawIcon: %s could not be written\n", file.toLocal8Bit().constData());
    return false;
}

bool save(int side, const QString& file) {
    const QString folder = file.section(u'/', 0, -2);
    if (QDir().mkpath(folder) && corvane::applicationicon::image(side).save(file, "PNG")) return true;
    return complain(file);
}

bool drawHicolor(const QString& folder) {
    bool isGood = true;
    for (const int side : hicolorSides)
        isGood = save(side, QStringLiteral("%1/%2x%2/apps/corvane.png").arg(folder).arg(side)) && isGood;
    return isGood;
}

bool drawIconset(const QString& folder) {
    bool isGood = true;
    for (const int points : iconsetPoints) {
        const QString file = QStringLiteral("%1/icon_%2x%2%3.png").arg(folder).arg(points);
        isGood = save(points, file.arg(QString())) && isGood;
        isGood = save(2 * points, file.arg(QStringLiteral("@2x"))) && isGood;
    }
    return isGood;
}

bool drawBell(int side, const QString& size, int count, const QString& folder) {
    using namespace corvane;
    const QString place = QStringLiteral("%1/%2/status").arg(folder, size);
    QFile file(QStringLiteral("%1/%2.svg").arg(place, symbolicbell::name(count)));
    const QByteArray drawing = symbolicbell::drawing(side, count, Tokens::onSurface.color(ColorScheme::light),
                                                     Tokens::primary.color(ColorScheme::light));
    const bool isGood = QDir().mkpath(place) && file.open(QIODevice::WriteOnly) &&
                        file.write(drawing) == drawing.size() && file.flush();
    return isGood || complain(file.fileName());
}

bool drawBells(const QString& folder) {
    constexpr std::array sides{16, 22, 24};
    bool isGood = true;
    for (int count = 0; count <= corvane::symbolicbell::largestCount; ++count) {
        for (const int side : sides)
            isGood = drawBell(side, QStringLiteral("%1x%1").arg(side), count, folder) && isGood;
        isGood = drawBell(sides.back(), QStringLiteral("scalable"), count, folder) && isGood;
    }
    return isGood;
}

} // namespace

int main(int argc, char** argv) {
    const std::string_view kind = argc == 3 ? argv[1] : "";
    if (kind != "hicolor" && kind != "iconset" && kind != "bells") {
        std::fputs("usage: DrawIcon hicolor|iconset|bells <folder>\n", stderr);
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[2]);
    const bool isGood = kind == "hicolor"   ? drawHicolor(folder)
                        : kind == "iconset" ? drawIconset(folder)
                                            : drawBells(folder);
    return isGood ? 0 : 1;
}

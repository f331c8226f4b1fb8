#include "Style/ApplicationIcon.h"

#include <QDir>
#include <QString>

#include <array>
#include <cstdio>
#include <string_view>

// Draws the application icon's files while building:
//   DrawIcon hicolor <folder>   <folder>/<side>x<side>/apps/corvane.png, as icon themes have them
//   DrawIcon iconset <folder>   <folder>/icon_<points>x<points>[@2x].png, as macOS' iconutil wants them

namespace {

constexpr std::array hicolorSides{16, 22, 24, 32, 48, 64, 128, 256, 512};
constexpr std::array iconsetPoints{16, 32, 128, 256, 512};

bool save(int side, const QString& file) {
    const QString folder = file.section(u'/', 0, -2);
    if (QDir().mkpath(folder) && corvane::applicationicon::image(side).save(file, "PNG")) return true;
    std::fprintf(stderr, "DrawIcon: %s could not be written\n", file.toLocal8Bit().constData());
    return false;
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

} // namespace

int main(int argc, char** argv) {
    const std::string_view kind = argc == 3 ? argv[1] : "";
    if (kind != "hicolor" && kind != "iconset") {
        std::fputs("usage: DrawIcon hicolor|iconset <folder>\n", stderr);
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[2]);
    return (kind == "hicolor" ? drawHicolor(folder) : drawIconset(folder)) ? 0 : 1;
}

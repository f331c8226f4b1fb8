// Draws every state of the first-run and the settings window into the folder given, for people to look at.

#include "Pictures.h"
#include "WindowStates.h"

#include <QApplication>
#include <QDir>

#include <cstdio>

int main(int argc, char** argv) {
    using namespace corvane;

    const QApplication application(argc, argv);
    const test::FractionalMetrics metrics;
    if (argc != 2) {
        std::fputs("usage: WindowGallery FOLDER\n", stderr);
        return 2;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    folder.mkpath(QStringLiteral("."));
    for (const test::WindowState& state : test::windowStates()) {
        test::ModelFixture fixture;
        const std::unique_ptr<QWidget> view = state.make(fixture);
        for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
            for (const int ratio : {1, 2}) {
                const QString name =
                    QStringLiteral("%1-%2-%3x.png")
                        .arg(QString::fromStdString(state.name),
                             scheme == ColorScheme::dark ? QStringLiteral("dark") : QStringLiteral("light"))
                        .arg(ratio);
                if (!test::pictureOf(*view, scheme, ratio).save(folder.filePath(name))) return 1;
            }
        }
    }
    return 0;
}

// The floor of Benchmarks/footprint: the least that a Qt Widgets program with a tray icon and a timer of one
// second can cost. With the argument "window" it shows a window, too.

#include <QApplication>
#include <QIcon>
#include <QLabel>
#include <QPixmap>
#include <QSystemTrayIcon>
#include <QTimer>

#include <chrono>
#include <cstdint>

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);

    constexpr int side = 22;
    QPixmap picture(side, side);
    picture.fill(Qt::darkGray);
    QSystemTrayIcon icon{QIcon(picture)};
    icon.show();

    std::int64_t seconds = 0;
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, [&seconds] { ++seconds; });
    timer.start(std::chrono::seconds(1));

    QLabel window(QStringLiteral("One line of text"));
    window.resize(640, 480);
    if (QApplication::arguments().contains(QStringLiteral("window"))) window.show();
    return QApplication::exec();
}

// The cost of a banner on a real display: the time to the screen, a second on the screen, and memory. Needs
// DISPLAY.

#include "BannerController.h"
#include "BannerViews.h"
#include "Platform/Platform.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QLabel>
#include <QPaintEvent>
#include <QTimer>
#include <QWindow>
#include <benchmark/benchmark.h>

#include <cstdint>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <sys/resource.h>
#include <vector>

namespace {

using namespace corvane;

/// Counts the paint events of all widgets and the pixels that they request.
class PaintMeter : public QObject {
  public:
    PaintMeter() { qApp->installEventFilter(this); }

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            ++paints;
            for (const QRect& rect : static_cast<QPaintEvent*>(event)->region()) {
                pixels += std::int64_t{rect.width()} * rect.height();
            }
        }
        return false;
    }

    std::int64_t paints = 0;
    std::int64_t pixels = 0;
};

void runEventLoopFor(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

AgentSession waitingSession(int number) {
    AgentSession session;
    session.sessionID = std::to_string(number);
    session.cwd = "/home/you/project";
    session.message = "Claude needs your permission to use Bash";
    session.status = SessionStatus::waiting(EventKind::needsPermission, Date());
    return session;
}

/// An undecorated window of the card's size with one line of text: the least that any banner could be.
std::unique_ptr<QWidget> plainWindow() {
    auto window = std::make_unique<QWidget>(nullptr, Qt::Tool | Qt::FramelessWindowHint |
                                                         Qt::X11BypassWindowManagerHint);
    window->setAttribute(Qt::WA_ShowWithoutActivating);
    window->setFixedSize(WaitingBanner::contentSize);
    auto* const label = new QLabel(QStringLiteral("Claude is waiting for you"), window.get());
    label->setGeometry(window->rect());
    return window;
}

bool areExposed() {
    bool any = false;
    for (const QWidget* const widget : QApplication::topLevelWidgets()) {
        if (!widget->isVisible() || widget->windowHandle() == nullptr) continue;
        if (!widget->windowHandle()->isExposed()) return false;
        any = true;
    }
    return any;
}

/// Seconds from the call of `show` until its window is mapped and painted.
double secondsToScreen(const std::function<void()>& show) {
    PaintMeter meter;
    QElapsedTimer timer;
    timer.start();
    show();
    while (meter.paints == 0 || !areExposed())
        QApplication::processEvents();
    return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

double processorSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double proportionalKilobytes() {
    std::ifstream stream("/proc/self/smaps_rollup");
    std::string word;
    while (stream >> word) {
        double value = 0;
        if (word == "Pss:" && stream >> value) return value;
    }
    return 0;
}

void showPlainWindow(benchmark::State& state) {
    for ([[maybe_unused]] auto iteration : state) {
        std::unique_ptr<QWidget> window = plainWindow();
        state.SetIterationTime(secondsToScreen([&] { window->show(); }));
        window.reset();
        runEventLoopFor(20);
    }
}
BENCHMARK(showPlainWindow)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(30);

void showWaiting(benchmark::State& state) {
    const std::unique_ptr<Platform> platform = Platform::make();
    int number = 0;
    for ([[maybe_unused]] auto iteration : state) {
        BannerController controller(platform->services());
        state.SetIterationTime(secondsToScreen([&] { controller.showWaiting(waitingSession(++number)); }));
        runEventLoopFor(20);
    }
}
BENCHMARK(showWaiting)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(30);

/// One second of the event loop with `show` on the screen: CPU time as the result, paints as counters.
void measureStanding(benchmark::State& state, const std::function<void()>& show) {
    constexpr int seconds = 10;
    show();
    runEventLoopFor(1000);
    for ([[maybe_unused]] auto iteration : state) {
        const PaintMeter meter;
        const double before = processorSeconds();
        runEventLoopFor(seconds * 1000);
        state.SetIterationTime((processorSeconds() - before) / seconds);
        state.counters["paints/s"] = static_cast<double>(meter.paints) / seconds;
        state.counters["pixels/s"] = static_cast<double>(meter.pixels) / seconds;
    }
}

void standingPlainWindow(benchmark::State& state) {
    const std::unique_ptr<QWidget> window = plainWindow();
    measureStanding(state, [&] { window->show(); });
}
BENCHMARK(standingPlainWindow)->UseManualTime()->Unit(benchmark::kMicrosecond)->Iterations(1);

void standingBanner(benchmark::State& state) {
    const std::unique_ptr<Platform> platform = Platform::make();
    BannerController controller(platform->services());
    measureStanding(state, [&] { controller.showWaiting(waitingSession(1)); });
}
BENCHMARK(standingBanner)->UseManualTime()->Unit(benchmark::kMicrosecond)->Iterations(1);

void memoryOfThreePlainWindows(benchmark::State& state) {
    for ([[maybe_unused]] auto iteration : state) {
        const double before = proportionalKilobytes();
        std::vector<std::unique_ptr<QWidget>> windows;
        for (int i = 0; i < 3; ++i) {
            windows.push_back(plainWindow());
            windows.back()->show();
        }
        runEventLoopFor(500);
        state.counters["KiB"] = proportionalKilobytes() - before;
    }
}
BENCHMARK(memoryOfThreePlainWindows)->Iterations(1);

void memoryOfThreeBanners(benchmark::State& state) {
    const std::unique_ptr<Platform> platform = Platform::make();
    for ([[maybe_unused]] auto iteration : state) {
        const double before = proportionalKilobytes();
        BannerController controller(platform->services());
        for (int i = 0; i < 3; ++i)
            controller.showWaiting(waitingSession(i));
        runEventLoopFor(500);
        state.counters["KiB"] = proportionalKilobytes() - before;
    }
}
BENCHMARK(memoryOfThreeBanners)->Iterations(1);

} // namespace

int main(int argc, char** argv) {
    if (!Platform::prepareProcess()) return 1;
    benchmark::Initialize(&argc, argv);
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

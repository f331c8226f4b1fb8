// A pass of the loop in which nothing has happened, through the whole application: inbox, board, menu, icon
// and banners. On Qt's offscreen platform and the recording one, so without any window system.

#include "CorvaneApp.h"
#include "Model/SettingsDefaults.h"
#include "Platform/Recording/RecordingPlatform.h"

#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include <chrono>
#include <filesystem>
#include <malloc.h>
#include <string>

namespace {

using namespace corvane;

AgentSession waitingSession(int number, Date since) {
    AgentSession session;
    session.sessionID = std::to_string(number);
    session.cwd = "/home/you/project";
    session.message = "Claude needs your permission to use Bash";
    session.status = SessionStatus::waiting(EventKind::needsPermission, since);
    return session;
}

/// `state.range(0)` banners are shown meanwhile.
void emptyPass(benchmark::State& state) {
    const QTemporaryDir home;
    const AgentConnector connector(home.path().toStdString());
    std::filesystem::create_directories(connector.paths().events());
    QSettings settings(home.filePath(QStringLiteral("settings")), QSettings::IniFormat);
    SettingsDefaults defaults(settings);
    recording::RecordingPlatform platform;
    CorvaneApp application(connector, defaults, platform.services());
    application.launch();
    BannerController banners(platform.services());
    for (int i = 0; i < state.range(0); ++i)
        banners.showWaiting(waitingSession(i, platform.time.now()));
    constexpr int warmUp = 120;
    platform.time.advance(std::chrono::seconds(warmUp));
    const std::size_t before = mallinfo2().uordblks;
    for ([[maybe_unused]] auto iteration : state)
        platform.time.advance(std::chrono::seconds(1));
    state.counters["grown bytes"] = static_cast<double>(mallinfo2().uordblks) - static_cast<double>(before);
}
BENCHMARK(emptyPass)->Arg(0)->Arg(3)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    benchmark::Initialize(&argc, argv);
    const QApplication application(argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

// How long the interface stalls, and how much memory is in use, while unusually large or many events arrive.
// Each row is measured in a process of its own, on the offscreen platform, with the panel and the settings on
// show.

#include "BannerController.h"
#include "MenuBarView.h"
#include "Model/AppModel.h"
#include "Platform/Recording/RecordingPlatform.h"
#include "Platform/Shared/QtScheduler.h"
#include "Settings/SettingsTabBar.h"
#include "SettingsView.h"
#include "Support/CorvanePaths.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

using namespace corvane;
namespace fs = std::filesystem;

constexpr std::size_t mebibyte = std::size_t{1} << 20U;

class ScratchHome {
  public:
    ScratchHome() {
        std::string pattern = (fs::temp_directory_path() / "corvane-load-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) std::abort();
        path_ = pattern;
    }
    ScratchHome(const ScratchHome&) = delete;
    ScratchHome& operator=(const ScratchHome&) = delete;
    ~ScratchHome() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    [[nodiscard]] const fs::path& path() const { return path_; }

  private:
    fs::path path_;
};

/// What is large in an event.
enum class Large : std::uint8_t { message, folder, session };

/// An event of one of `sessions` sessions.
std::string eventText(int number, int sessions, std::size_t size, Large large) {
    std::string filling;
    const std::string_view line = large == Large::message ? R"(    return \"a line of code\";\n)" : "/folder";
    while (filling.size() < size)
        filling += line;
    const auto filled = [&](Large what) { return what == large ? filling : std::string(); };
    return "corvane-event 1\nsource=claude\nterm=\nbundle=\n---\n"
           R"({"hook_event_name":"Notification","session_id":")" +
           filled(Large::session) + std::to_string(number % sessions) + R"(","cwd":")" +
           filled(Large::folder) + R"(/w/shop","message":")" + filled(Large::message) + "\"}\n";
}

/// As a hook does: under a hidden name first.
void drop(const fs::path& inbox, int number, int sessions, std::size_t size, Large large) {
    const fs::path hidden = inbox / ("." + std::to_string(number) + ".tmp");
    std::ofstream(hidden, std::ios::binary) << eventText(number, sessions, size, large);
    fs::rename(hidden, inbox / (std::to_string(1'700'000'000 + number) + "-1.event"));
}

/// A field of /proc/self/status, in MiB.
double memory(const std::string& field) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(field + ":")) return std::stod(line.substr(field.size() + 1)) / 1024;
    }
    return 0;
}

/// Milliseconds to read all event files plainly, once they are in the page cache.
double plainReading(const fs::path& inbox) {
    double best = 0;
    for (int round = 0; round < 2; ++round) {
        QElapsedTimer timer;
        timer.start();
        for (const auto& entry : fs::directory_iterator(inbox)) {
            std::ifstream file(entry.path(), std::ios::binary);
            std::ostringstream bytes;
            bytes << file.rdbuf();
        }
        best = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    }
    return best;
}

/// The main thread's CPU time, in nanoseconds.
qint64 processorTime() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return time.tv_sec * 1'000'000'000 + time.tv_nsec;
}

/// Measures the longest interval between two iterations of the event loop, as wall-clock time and as CPU time
/// of the main thread.
class Heartbeat : public QTimer {
  public:
    Heartbeat() {
        setTimerType(Qt::PreciseTimer);
        callOnTimeout([this] {
            longest = std::max(longest, since_.nsecsElapsed());
            longestOwn = std::max(longestOwn, processorTime() - ownSince_);
            since_.restart();
            ownSince_ = processorTime();
        });
        since_.start();
        start(std::chrono::milliseconds(2));
    }
    void reset() {
        longest = 0;
        longestOwn = 0;
        since_.restart();
        ownSince_ = processorTime();
    }

    qint64 longest = 0; // nanoseconds
    qint64 longestOwn = 0;

  private:
    QElapsedTimer since_;
    qint64 ownSince_ = processorTime();
};

void runFor(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

struct Load {
    const char* name;
    int files;
    int sessions;
    std::size_t size;
    int writingMilliseconds = 0; // 0 if all are there at once
    Large large = Large::message;
};

void measure(const Load& load) {
    int argumentCount = 1;
    std::array<char, 14> name{"LoadBenchmark"};
    std::array<char*, 2> arguments{name.data(), nullptr};
    QApplication application(argumentCount, arguments.data());

    const ScratchHome home;
    const CorvanePaths paths = CorvanePaths::standard(home.path());
    fs::create_directories(paths.events());

    class NoDefaults : public UserDefaults {
      public:
        [[nodiscard]] std::optional<std::string> data(std::string_view /*key*/) const override { return {}; }
        void setData(std::string_view /*key*/, std::string_view /*bytes*/) override {}
        [[nodiscard]] bool boolean(std::string_view /*key*/) const override { return true; }
        void setBoolean(std::string_view /*key*/, bool /*value*/) override {}
    } defaults;
    recording::RecordingPlatform platform;
    QtScheduler scheduler;
    const PlatformServices recorded = platform.services();
    const PlatformServices services{
        [] { return Date::fromSystemClock(std::chrono::system_clock::now()); },
        scheduler,
        recorded.panels,
        recorded.panelHosts,
        recorded.activation,
        recorded.windowShadow,
        recorded.systemSymbols,
        recorded.screens,
        recorded.appearance,
        recorded.announcer,
        recorded.sounds,
        recorded.applications,
        recorded.agentProcesses,
        recorded.loginItem,
        recorded.fileBrowser,
        recorded.statusItem,
        recorded.singleInstance,
        recorded.menuBars,
    };
    BannerController banners(services);
    AppModel model(AgentConnector(home.path(), paths), defaults, banners, services);
    model.connectAgent(AgentKind::claude);
    const auto openNothing = [](const QUrl& /*url*/) {};
    MenuBarView panel(model, {[] {}, openNothing, [] {}}, nullptr);
    SettingsView settings(
        model, services.fileBrowser, [] { return false; }, openNothing, nullptr);
    panel.show();
    settings.show();
    runFor(1500);

    Heartbeat heartbeat;
    runFor(500);
    const double before = memory("VmRSS");
    std::ofstream("/proc/self/clear_refs") << "5"; // forget the peak
    double plain = 0;
    pid_t writer = 0;
    if (load.writingMilliseconds == 0) {
        const fs::path aside = home.path() / "aside";
        fs::create_directory(aside);
        for (int i = 0; i < load.files; ++i)
            drop(aside, i, load.sessions, load.size, load.large);
        plain = plainReading(aside);
        const fs::path inbox = paths.events();
        fs::remove_all(inbox);
        std::ofstream("/proc/self/clear_refs") << "5";
        heartbeat.reset();
        fs::rename(aside, inbox);
    } else {
        writer = fork();
        if (writer == 0) {
            const auto pause = std::chrono::microseconds(load.writingMilliseconds * 1000 / load.files);
            for (int i = 0; i < load.files; ++i) {
                drop(paths.events(), i, load.sessions, load.size, load.large);
                usleep(static_cast<useconds_t>(pause.count()));
            }
            _exit(0);
        }
        heartbeat.reset();
    }

    const std::int64_t firstPass = model.ticks();
    QElapsedTimer whole;
    whole.start();
    int tab = 0;
    while (model.ticks() < firstPass + 2 || !fs::is_empty(paths.events()) ||
           (writer != 0 && waitpid(writer, nullptr, WNOHANG) == 0)) {
        settings.tabs().setCurrentIndex(++tab % 3);
        runFor(50);
    }
    const double longest = static_cast<double>(heartbeat.longest) / 1e6;
    const double own = static_cast<double>(heartbeat.longestOwn) / 1e6;
    const double peak = memory("VmHWM");
    runFor(1500);
    std::printf("| %-24s | %8.0f | %8.1f | %8.1f | %8.1f | %8.1f | %8.1f | %4zu |\n", load.name, plain,
                longest, own, before, peak, memory("VmRSS"), model.board().sessions().size());
}

} // namespace

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    setenv("XDG_RUNTIME_DIR", fs::temp_directory_path().c_str(), 0);
    constexpr std::array loads{
        Load{"nothing", 0, 1, 0},
        Load{"200 of 4 KiB at once", 200, 20, 4096},
        Load{"5,000 of 1 KiB in 4 s", 5000, 20, 1024, 4000},
        Load{"the same, 1,000 sessions", 5000, 1000, 1024, 4000},
        Load{"100,000 of 100 B at once", 100'000, 20, 100},
        Load{"1 of 5 MiB", 1, 1, 5 * mebibyte},
        Load{"200 of 5 MiB at once", 200, 20, 5 * mebibyte},
        Load{"200 folders of 5 MiB", 200, 20, 5 * mebibyte, 0, Large::folder},
        Load{"200 sessions of 5 MiB", 200, 20, 5 * mebibyte, 0, Large::session},
        Load{"1 of 60 MiB", 1, 1, 60 * mebibyte},
        Load{"5 of 60 MiB at once", 5, 5, 60 * mebibyte},
    };
    std::printf("| %-24s | %8s | %8s | %8s | %8s | %8s | %8s | %4s |\n", "events", "read, ms", "stall", "CPU",
                "MiB", "peak", "after", "rows");
    std::printf("|---|---|---|---|---|---|---|---|\n");
    std::fflush(stdout);
    for (const Load& load : loads) {
        // One row alone, for a profiler.
        if (argc > 1 && load.name != std::string_view(argv[1])) continue;
        const pid_t child = fork();
        if (child == 0) {
            measure(load);
            std::fflush(stdout);
            _exit(0);
        }
        int status = 0;
        if (child < 0 || waitpid(child, &status, 0) != child || status != 0) return 1;
    }
    return 0;
}

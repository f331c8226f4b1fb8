#include "Desktop/Sounds/SoundServer.h"

#include "Desktop/Support/Wait.h"
#include "Support/MessageBus.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <utility>

namespace corvane::test {

namespace {

using Clock = std::chrono::steady_clock;

} // namespace

SoundPlace::SoundPlace(const ScratchFolder& scratch)
    : folder_(scratch.path())
    , socket_(scratch / "pulse") {
    writeFile(scratch / "client.conf", "autospawn = no\nenable-shm = no\n");
    variables_ = {"PULSE_RUNTIME_PATH=" + (scratch / "runtime").string(),
                  "PULSE_STATE_PATH=" + (scratch / "state").string(),
                  "PULSE_CLIENTCONFIG=" + (scratch / "client.conf").string(),
                  "PULSE_SERVER=unix:" + socket_.string()};
}

Command SoundPlace::command(std::vector<std::string> arguments, const std::string& errors) const {
    std::vector<std::string> environment = variables_;
    environment.push_back("HOME=" + folder_.string());
    environment.push_back("XDG_RUNTIME_DIR=" + folder_.string());
    for (const char* const name : {"PATH", "ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS"}) {
        if (const char* const value = std::getenv(name); value != nullptr)
            environment.push_back(std::string(name) + "=" + value);
    }
    return {std::move(arguments), std::move(environment), {}, {}, folder_ / errors};
}

SoundServer::SoundServer(const SoundPlace& place) {
    std::filesystem::remove(place.socket());
    process_ = std::make_unique<ChildProcess>(
        place.command({"pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--disable-shm=yes",
                       "--realtime=no", "--high-priority=no", "-L",
                       "module-null-sink sink_name=null norewinds=1 rate=44100 format=s16le channels=2", "-L",
                       "module-native-protocol-unix auth-anonymous=1 socket=" + place.socket().string()},
                      "server-errors"));
    if (!waitUntil(std::chrono::seconds(10), [&] { return acceptsConnections(place.socket()); }))
        throw std::runtime_error("the sound server does not start");
}

Recording::Recording(const SoundPlace& place)
    : process_(place.command({"parec", "-d", "null.monitor", "--format=s16le", "--channels=1", "--rate=44100",
                              "--latency-msec=20"},
                             "recording-errors")) {
    wave_.rate = 44100;
    take(std::chrono::seconds(10));
    if (wave_.samples.empty()) throw std::runtime_error("nothing is recorded");
}

void Recording::take(std::chrono::milliseconds patience) {
    bytes_ += process_.read(patience);
    for (std::size_t i = 0; i + 1 < bytes_.size(); i += 2) {
        const auto low = static_cast<unsigned char>(bytes_[i]);
        const auto high = static_cast<unsigned char>(bytes_[i + 1]);
        wave_.samples.push_back(static_cast<std::int16_t>(low | (high << 8)) / 32768.0);
    }
    bytes_.erase(0, bytes_.size() / 2 * 2);
}

Waveform Recording::next(double seconds, std::chrono::milliseconds patience) {
    constexpr std::size_t before = 441;
    const auto wanted = static_cast<std::size_t>(seconds * wave_.rate);
    const Clock::time_point deadline = Clock::now() + patience;
    wave_.samples.clear();
    for (;;) {
        const auto isHeard = [](double sample) { return sample != 0; };
        const auto first = std::find_if(wave_.samples.begin(), wave_.samples.end(), isHeard);
        const auto start = static_cast<std::size_t>(first - wave_.samples.begin());
        if (first != wave_.samples.end() && wave_.samples.size() >= start + wanted) {
            const std::size_t from = start < before ? 0 : start - before;
            const auto offset = [this](std::size_t at) {
                return wave_.samples.begin() + static_cast<long>(at);
            };
            return {wave_.rate, std::vector<double>(offset(from), offset(start + wanted))};
        }
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
        if (left.count() <= 0) return {wave_.rate, {}};
        take(left);
    }
}

} // namespace corvane::test

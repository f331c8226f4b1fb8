// Sounds played by the real player through a real sound server, and recorded from its output.

#include "App/Sounds/Waveform.h"
#include "Desktop/Sounds/PipedProcess.h"
#include "Desktop/Sounds/SoundServer.h"
#include "Desktop/Support/Wait.h"
#include "Platform/Linux/Sounds.h"
#include "Sessions/AlertPreferences.h"
#include "Support/TestSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <csignal>
#include <cstring>
#include <optional>
#include <sstream>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace corvane::test {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

// Far below the 30 s that a dead server takes, far above what a busy machine needs.
constexpr milliseconds soon{10000};

// The limit for a call of play(), which queues a name and once starts a thread.
constexpr long mostMicroseconds = 200000;

Waveform soundFile(std::string_view name) {
    std::string problem = "cannot be read";
    const auto bytes = fileBytes(std::filesystem::path(CORVANE_SOUND_FOLDER) / (std::string(name) + ".wav"));
    const auto wave = bytes ? readWav(*bytes, problem) : std::nullopt;
    EXPECT_TRUE(wave) << name << ": " << problem;
    return wave.value_or(Waveform{44100, {1}});
}

// Without the silence before the first and after the last sample that is not 0.
Waveform withoutSilence(const Waveform& wave) {
    std::size_t from = 0;
    std::size_t to = wave.samples.size();
    while (from < to && wave.samples[from] == 0) {
        ++from;
    }
    while (to > from && wave.samples[to - 1] == 0) {
        --to;
    }
    const auto at = [&wave](std::size_t index) { return wave.samples.begin() + static_cast<long>(index); };
    return {wave.rate, std::vector<double>(at(from), at(to))};
}

class SoundPlayback : public testing::Test {
  protected:
    SoundPlayback()
        : place(scratch) {}

    // `variables` are added to its environment.
    void startPlayer(const std::string& folder = CORVANE_SOUND_FOLDER,
                     const std::vector<std::string>& variables = {}) {
        Command command = place.command({CORVANE_SOUND_PLAYER, folder}, "player-errors");
        command.environment.insert(command.environment.end(), variables.begin(), variables.end());
        player.emplace(command);
    }

    // Plays sounds in one pass; returns the number of the player's threads.
    int play(const std::string& names) {
        player->write(names + "\n");
        const std::optional<std::string> answer = player->readLine(soon);
        EXPECT_TRUE(answer) << "play() does not return";
        long microseconds = mostMicroseconds + 1;
        int threads = 0;
        std::istringstream(answer.value_or("")) >> microseconds >> threads;
        EXPECT_LE(microseconds, mostMicroseconds);
        return threads;
    }

    // How the recorded sound differs from the file; empty if it does not.
    static std::string difference(const Waveform& heard, const Waveform& file) {
        if (heard.samples.empty()) return "it is not heard";
        const double likeness = correlation(heard, file, 0, 882);
        const double louder = decibels(peak(heard)) - decibels(peak(file));
        const double longer = withoutSilence(heard).seconds() - file.seconds();
        if (likeness > 0.999 && std::abs(louder) <= 0.2 && std::abs(longer) <= 0.01) return {};
        return "correlation " + std::to_string(likeness) + ", " + std::to_string(louder) + " dB louder, " +
               std::to_string(longer) + " s longer";
    }

    // Expects this request, played in one pass, to be heard as the sound's file has it, and nothing else for
    // `length` seconds. On a busy machine a recording may have gaps, or the sound is too late to be played:
    // then it is played again.
    void expectHeard(Recording& recording, const std::string& request, const std::string& name,
                     double length) {
        constexpr int mostAttempts = 4;
        const Waveform file = withoutSilence(soundFile(name));
        std::string wrong;
        for (int attempt = 0; attempt < mostAttempts; ++attempt) {
            play(request);
            wrong = difference(recording.next(length, seconds(10)), file);
            if (wrong.empty()) return;
        }
        ADD_FAILURE() << name << ": " << wrong;
    }

    // Gives the player's thread time to try; a failing connection takes a few milliseconds.
    static void letItTry() { std::this_thread::sleep_for(milliseconds(300)); }

    void expectQuietEnd() {
        player->closeInput();
        EXPECT_EQ(player->wait(soon), 0);
        EXPECT_EQ(fileBytes(scratch / "player-errors"), "");
    }

    ScratchFolder scratch;
    SoundPlace place;
    std::optional<PipedProcess> player;
};

TEST_F(SoundPlayback, everySoundIsHeardAsInItsFile) {
    const SoundServer server(place);
    Recording recording(place);
    startPlayer();
    for (const std::string_view name : AlertPreferences::soundChoices) {
        expectHeard(recording, std::string(name), std::string(name), 1.6);
    }
    expectQuietEnd();
}

TEST_F(SoundPlayback, tenAlertsOfOnePassSoundOnce) {
    const SoundServer server(place);
    Recording recording(place);
    startPlayer();
    expectHeard(recording, "Glass Glass Glass Glass Glass Glass Glass Glass Glass Glass", "Glass", 3);
    expectQuietEnd();
}

TEST_F(SoundPlayback, waitingAndDoneSoundsOfOnePassAreHeardTogetherAndAThirdIsNot) {
    const SoundServer server(place);
    Recording recording(place);
    startPlayer();
    // Again where the recording has gaps.
    constexpr int mostAttempts = 4;
    std::string wrong = "nothing is heard";
    for (int attempt = 0; !wrong.empty() && attempt < mostAttempts; ++attempt) {
        play("Submarine Tink Glass Submarine Tink Glass");
        const Waveform heard = recording.next(2.5, seconds(10));
        if (heard.samples.empty()) continue;
        wrong.clear();
        for (const auto& [name, isPlayed] :
             {std::pair("Submarine", true), std::pair("Tink", true), std::pair("Glass", false)}) {
            const double likeness = correlation(heard, withoutSilence(soundFile(name)), 0, 2205);
            if (isPlayed ? likeness <= 0.5 : likeness >= 0.1)
                wrong += std::string(name) + ": correlation " + std::to_string(likeness) + "\n";
        }
        if (peak(heard) >= 0.95) wrong += "too loud";
    }
    EXPECT_EQ(wrong, "");
    expectQuietEnd();
}

TEST_F(SoundPlayback, unknownNamesAndNamesWithPathsPlayNothing) {
    const SoundServer server(place);
    Recording recording(place);
    startPlayer();
    EXPECT_EQ(play("Basso glass Glass.wav ../sounds/Glass /etc/passwd"), 1);
    expectHeard(recording, "Basso glass Glass.wav ../sounds/Glass /etc/passwd Pop", "Pop", 1.6);
    expectQuietEnd();
}

TEST_F(SoundPlayback, noThreadExistsBeforeTheFirstSound) {
    startPlayer();
    EXPECT_EQ(play(""), 1);
    expectQuietEnd();
}

TEST_F(SoundPlayback, withoutAServerNothingHappens) {
    startPlayer();
    play("Glass");
    letItTry();
    play("Pop");
    letItTry();
    expectQuietEnd();
}

TEST_F(SoundPlayback, alsaThatFindsNoDevicePrintsNothing) {
    // As where there is neither a sound server nor a card: no device is configured.
    writeFile(scratch / "asound.conf", "");
    startPlayer(CORVANE_SOUND_FOLDER,
                {"CANBERRA_DRIVER=alsa", "ALSA_CONFIG_PATH=" + (scratch / "asound.conf").string()});
    play("Glass");
    EXPECT_TRUE(waitUntil(soon, [this] { return player->hasMapped("libasound.so"); }));
    letItTry();
    play("Pop");
    letItTry();
    expectQuietEnd();
}

TEST_F(SoundPlayback, withoutTheFilesNothingHappens) {
    const SoundServer server(place);
    startPlayer(scratch.path().string());
    play("Glass Tink");
    letItTry();
    expectQuietEnd();
}

TEST_F(SoundPlayback, aServerThatStartsLaterIsFound) {
    startPlayer();
    play("Glass");
    letItTry();
    const SoundServer server(place);
    Recording recording(place);
    play("Hero");
    EXPECT_FALSE(recording.next(1.6, seconds(10)).samples.empty()) << "the first sound is heard already";
    expectHeard(recording, "Hero", "Hero", 1.6);
    expectQuietEnd();
}

TEST_F(SoundPlayback, aRestartedServerIsFoundAgain) {
    startPlayer();
    {
        const SoundServer server(place);
        Recording recording(place);
        expectHeard(recording, "Glass", "Glass", 1.6);
    }
    const SoundServer server(place);
    Recording recording(place);
    play("Ping");
    EXPECT_FALSE(recording.next(1.6, seconds(10)).samples.empty()) << "the first sound is heard already";
    expectHeard(recording, "Ping", "Ping", 1.6);
    expectQuietEnd();
}

TEST_F(SoundPlayback, aServerThatNeverRepliesBlocksNeitherPlayingNorQuitting) {
    const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, place.socket().c_str(), sizeof(address.sun_path) - 1);
    ASSERT_EQ(bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    ASSERT_EQ(listen(listener, 10), 0);
    startPlayer();
    play("Glass");
    // The connection has arrived: from now on the player's thread waits for a reply.
    const int connection = accept(listener, nullptr, nullptr);
    ASSERT_GE(connection, 0);
    play("Tink");
    expectQuietEnd();
    close(connection);
    close(listener);
}

TEST_F(SoundPlayback, aServerThatHangsLaterBlocksNeitherPlayingNorQuitting) {
    const SoundServer server(place);
    startPlayer();
    {
        Recording recording(place);
        expectHeard(recording, "Pop", "Pop", 1.6);
    }
    server.signal(SIGSTOP);
    play("Hero");
    letItTry();
    play("Tink");
    expectQuietEnd();
    server.signal(SIGCONT);
}

TEST(LinuxSounds, areFoundBesideTheProgramsFolder) {
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe");
    EXPECT_EQ(LinuxSounds::installedFolder(), program.parent_path().parent_path() / "share/corvane/sounds");
}

} // namespace

} // namespace corvane::test

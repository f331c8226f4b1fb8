#pragma once

#include "App/Sounds/Waveform.h"
#include "Desktop/Sounds/PipedProcess.h"
#include "Support/TestSupport.h"

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace corvane::test {

/// The place of a sound server of the test's own, and programs that are led to it and to no other.
class SoundPlace {
  public:
    explicit SoundPlace(const ScratchFolder& scratch);

    /// A program that is led to the server, with the file of this name in the folder for its errors.
    [[nodiscard]] Command command(std::vector<std::string> arguments, const std::string& errors) const;
    [[nodiscard]] const std::filesystem::path& socket() const { return socket_; }

  private:
    std::filesystem::path folder_;
    std::filesystem::path socket_;
    std::vector<std::string> environment_;
};

/// A PulseAudio server without a sound card: what is played goes into a sink whose monitor can be recorded.
class SoundServer {
  public:
    /// Comes back when the server answers; throws when it does not within 10 s.
    explicit SoundServer(const SoundPlace& place);

    void signal(int number) const { process_->signal(number); }

  private:
    std::unique_ptr<ChildProcess> process_;
};

/// Records what the server plays.
class Recording {
  public:
    /// Comes back when the first samples arrived.
    explicit Recording(const SoundPlace& place);

    /// What is heard next, from a little before its first sound: recorded until `seconds` after that, or none
    /// when `patience` is over before anything sounds. All that came before is dropped.
    [[nodiscard]] Waveform next(double seconds, std::chrono::milliseconds patience);

  private:
    void take(std::chrono::milliseconds patience);

    PipedProcess process_;
    std::string bytes_;
    Waveform wave_;
};

} // namespace corvane::test

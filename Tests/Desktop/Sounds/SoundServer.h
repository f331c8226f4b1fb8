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

/// The folder of the test's own sound server, and the environment of programs that use that server only.
class SoundPlace {
  public:
    explicit SoundPlace(const ScratchFolder& scratch);

    /// The variables that make a program use the server, as "NAME=value".
    [[nodiscard]] const std::vector<std::string>& variables() const { return variables_; }
    /// A program that uses the server, with the file of this name in the folder for its standard error.
    [[nodiscard]] Command command(std::vector<std::string> arguments, const std::string& errors) const;
    [[nodiscard]] const std::filesystem::path& socket() const { return socket_; }

  private:
    std::filesystem::path folder_;
    std::filesystem::path socket_;
    std::vector<std::string> variables_;
};

/// A PulseAudio server without a sound card: sounds are played to a null sink whose monitor can be recorded.
class SoundServer {
  public:
    /// Returns when the server responds; throws if it does not within 10 s.
    explicit SoundServer(const SoundPlace& place);

    void signal(int number) const { process_->signal(number); }

  private:
    std::unique_ptr<ChildProcess> process_;
};

/// Records what the server plays.
class Recording {
  public:
    /// Returns when the first samples have arrived.
    explicit Recording(const SoundPlace& place);

    /// The next sound, from a little before it begins until `seconds` after that, or none if there is only
    /// silence for `patience`. Everything before is dropped.
    [[nodiscard]] Waveform next(double seconds, std::chrono::milliseconds patience);

  private:
    void take(std::chrono::milliseconds patience);

    PipedProcess process_;
    std::string bytes_;
    Waveform wave_;
};

} // namespace corvane::test

#pragma once

#include "Platform/Linux/SoundRateLimiter.h"
#include "Platform/Sounds.h"

#include <filesystem>
#include <memory>
#include <string>
#include <thread>

namespace corvane {

/// Plays our sound files by libcanberra, through whatever sound server the desktop has.
///
/// All of libcanberra is called in one thread of its own, since connecting to a server that does not answer
/// takes 30 s. The thread begins with the first sound, and sleeps until the next one is asked for. The
/// connection is kept; after an error the next sound connects anew. No failure is reported: an alert without
/// sound still has its banner.
class LinuxSounds : public Sounds {
  public:
    /// `folder` holds one file `<name>.wav` for each name in `AlertPreferences::soundChoices`.
    explicit LinuxSounds(std::filesystem::path folder = installedFolder());
    /// Cuts off what is playing. Waits at most 100 ms for the thread: one that is held up by the server is
    /// left behind, to end by itself or with the process.
    ~LinuxSounds() override;

    void play(const std::string& name) override;

    /// Where the sounds are in relation to the running program, both installed and in a build folder:
    /// `<folder of the program>/../share/corvane/sounds`.
    [[nodiscard]] static std::filesystem::path installedFolder();

  private:
    struct Shared;

    std::shared_ptr<Shared> shared_;
    std::thread thread_;
    SoundRateLimiter rateLimiter_;
};

} // namespace corvane

#pragma once

#include "Platform/Linux/SoundRateLimiter.h"
#include "Platform/Sounds.h"

#include <filesystem>
#include <memory>
#include <string>
#include <thread>

namespace corvane {

/// Plays our sound files with libcanberra, through whatever sound server the desktop has.
///
/// All calls of libcanberra run on one worker thread, since connecting to a server that does not respond
/// takes 30 s. The thread starts with the first sound, and sleeps between requests. The connection is kept;
/// after an error the next sound reconnects. No failure is reported: an alert without sound still has its
/// banner.
class LinuxSounds : public Sounds {
  public:
    /// `folder` holds one file `<name>.wav` for each name in `AlertPreferences::soundChoices`.
    explicit LinuxSounds(std::filesystem::path folder = installedFolder());
    /// Cuts off what is playing. Waits at most 100 ms for the thread: if the server blocks it, it is
    /// detached, to end by itself or with the process.
    ~LinuxSounds() override;

    void play(const std::string& name) override;

    /// Where the sounds are relative to the running program, both installed and in a build folder: `<folder
    /// of the program>/../share/corvane/sounds`.
    [[nodiscard]] static std::filesystem::path installedFolder();

  private:
    struct Shared;

    std::shared_ptr<Shared> shared_;
    std::thread thread_;
    SoundRateLimiter rateLimiter_;
};

} // namespace corvane

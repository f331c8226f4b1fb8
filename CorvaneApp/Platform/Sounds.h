#pragma once

#include <string>

namespace corvane {

/// Plays the short named sounds. Main thread only.
class Sounds {
  public:
    Sounds() = default;
    Sounds(const Sounds&) = delete;
    Sounds& operator=(const Sounds&) = delete;
    virtual ~Sounds() = default;

    /// Starts the sound `name` and returns at once. Plays nothing if the name is unknown or there is no sound
    /// server.
    virtual void play(const std::string& name) = 0;
};

} // namespace corvane

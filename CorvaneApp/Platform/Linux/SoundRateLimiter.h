#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

namespace corvane {

/// Limits the rate at which sounds are started, so that many alerts in one pass sound like one alert instead
/// of noise.
///
/// A sound counts as sounding for 900 ms after its start. That is longer than the loud part of each of our
/// sounds (each has fallen by 20 dB after at most 850 ms) and shorter than the second between two passes, so
/// that an alert of the next pass is always heard. While it sounds
///   - the same sound is not started again: copies some milliseconds apart only sound louder and harsher;
///   - one other may join it, so that a waiting and a done alert of one pass are both heard; a third is not
///     started, since two leave the speakers headroom (each peaks below half of full scale) and can still be
///     told apart.
/// A sound that is not started is dropped, not delayed: its banner is on the screen already.
class SoundRateLimiter {
  public:
    using Moment = std::chrono::steady_clock::time_point;

    static constexpr std::chrono::milliseconds soundingTime{900};
    static constexpr std::size_t mostAtOnce = 2;

    /// Whether to start `name` at `now`, which must never go backwards. If so, the limiter counts it as
    /// started.
    [[nodiscard]] bool admit(const std::string& name, Moment now);

  private:
    struct Started {
        std::string name;
        Moment moment;
    };
    std::vector<Started> sounding_;
};

} // namespace corvane

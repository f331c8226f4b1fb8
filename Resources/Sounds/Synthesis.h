#pragma once

#include <functional>
#include <vector>

namespace corvane::sounds {

/// Samples of one channel; full scale is 1.
using Signal = std::vector<double>;

constexpr double sampleRate = 44100; ///< of every signal, in samples per second

/// A quantity that changes in time, as a function of the seconds since the tone began.
using Curve = std::function<double(double)>;

/// A sine that is struck and dies away.
struct Partial {
    double frequency;   ///< in hertz
    double amplitude;   ///< at the end of the attack
    double attack;      ///< seconds of the soft rise from silence
    double decay;       ///< seconds in which the amplitude falls to 1/e
    double phase = 0.0; ///< in turns, to keep the peaks of many partials apart
};

/// A signal of silence.
[[nodiscard]] Signal silence(double seconds);

/// Frequency of the note this many semitones above the A of 440 Hz.
[[nodiscard]] double note(int semitones);

/// Rises smoothly from 0 to 1 within `seconds`, and stays there.
[[nodiscard]] double softRise(double time, double seconds);

/// Adds a sine whose frequency (in hertz) and amplitude follow curves, from `start` seconds to the signal's
/// end.
void addTone(Signal& signal, double start, const Curve& frequency, const Curve& amplitude, double phase = 0);

/// Adds a struck sine from `start` seconds on.
void addPartial(Signal& signal, double start, const Partial& partial);

/// Adds the signal to itself, `delay` seconds later and multiplied by `gain`.
void addEcho(Signal& signal, double delay, double gain);

/// Makes both ends silent and free of clicks, and removes any DC offset: 2 ms of silence, the signal, which
/// fades out within `fade` seconds, and 10 ms of silence. The length stays.
void finishEnds(Signal& signal, double fade);

} // namespace corvane::sounds

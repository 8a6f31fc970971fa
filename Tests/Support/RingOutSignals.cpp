#include "Support/RingOutSignals.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <functional>
#include <numbers>
#include <random>

#include "Support/LineSpectra.h"

namespace TarvaneKit::Testing {

namespace {

constexpr double pi = std::numbers::pi;
constexpr double rate = spectrumSampleRate;

double amplitude(double levelDB) {
    return std::pow(10.0, levelDB / 20.0);
}

// Second-order section by the bilinear transform: analogue prototypes of a low-pass, a high-pass
// and a bell.
struct Section {
    double b0, b1, b2, a1, a2;
    double z1 = 0.0, z2 = 0.0;

    double step(double x) {
        const double y = b0 * x + z1;
        z1 = b1 * x - a1 * y + z2;
        z2 = b2 * x - a2 * y;
        return y;
    }

    std::complex<double> response(double frequencyHz) const {
        const auto w = std::polar(1.0, -2.0 * pi * frequencyHz / rate);
        return (b0 + w * (b1 + w * b2)) / (1.0 + w * (a1 + w * a2));
    }
};

// s^2 n2 + s n1 + n0 over s^2 + s / q + 1, s in units of the corner.
Section bilinear(double cornerHz, double n2, double n1, double n0, double dampingOfPoles) {
    const double k = std::tan(pi * cornerHz / rate);
    const double a0 = 1.0 + k * dampingOfPoles + k * k;
    return {(n2 + k * n1 + k * k * n0) / a0, 2.0 * (k * k * n0 - n2) / a0,
            (n2 - k * n1 + k * k * n0) / a0, 2.0 * (k * k - 1.0) / a0,
            (1.0 - k * dampingOfPoles + k * k) / a0};
}

Section bell(const RoomMode& mode) {
    return bilinear(mode.frequencyHz, 1.0, amplitude(mode.gainDB) / mode.q, 1.0, 1.0 / mode.q);
}

std::vector<Section> loopSections(const FeedbackRoom& room) {
    std::vector<Section> sections{bilinear(60.0, 1.0, 0.0, 0.0, std::numbers::sqrt2),
                                  bilinear(14000.0, 0.0, 0.0, 1.0, std::numbers::sqrt2)};
    for (const RoomMode& mode : room.modes) {
        sections.push_back(bell(mode));
    }
    return sections;
}

struct LoopPeak {
    double frequencyHz = 0.0;
    double gain = 0.0;
};

// Nyquist's criterion: the loop oscillates first at the in-phase frequency of most gain.
LoopPeak strongestInPhase(const std::vector<Section>& sections, int delaySamples) {
    const auto loop = [&](double frequencyHz) {
        auto response = std::polar(1.0, -2.0 * pi * frequencyHz * delaySamples / rate);
        for (const Section& section : sections) {
            response *= section.response(frequencyHz);
        }
        return response;
    };
    constexpr double stepHz = 0.05;
    LoopPeak best;
    auto before = loop(20.0);
    for (double f = 20.0 + stepHz; f < 20000.0; f += stepHz) {
        const auto now = loop(f);
        const bool passesZero = before.imag() > 0.0 && now.imag() <= 0.0 && now.real() > 0.0;
        if (passesZero && std::abs(now) > best.gain) {
            best = {f, std::abs(now)};
        }
        before = now;
    }
    return best;
}

using Voice = std::function<double(double time)>;

std::vector<float> rendered(double seconds, const Voice& voice, double noiseDB = -85.0) {
    std::mt19937 random(11);
    std::normal_distribution<double> noise(0.0, amplitude(noiseDB));
    std::vector<float> signal(static_cast<std::size_t>(seconds * rate));
    for (std::size_t i = 0; i < signal.size(); ++i) {
        signal[i] = static_cast<float>(voice(static_cast<double>(i) / rate) + noise(random));
    }
    return signal;
}

// A tone of harmonics that fall by `slopeDB` an octave, with vibrato of `depthCents` at 5.5 Hz.
struct Tone {
    double frequencyHz;
    int harmonics = 6;
    double slopeDB = 6.0;
    double depthCents = 0.0;

    double at(double time) const {
        constexpr double vibratoHz = 5.5;
        // Phase of the fundamental: the integral of its frequency, to first order in the depth.
        const double excursion = frequencyHz * depthCents / 1200.0 * std::numbers::ln2;
        const double phase = 2.0 * pi * frequencyHz * time -
                             excursion / vibratoHz * std::cos(2.0 * pi * vibratoHz * time);
        double sum = 0.0;
        for (int h = 1; h <= harmonics; ++h) {
            sum += amplitude(-slopeDB * std::log2(h)) * std::sin(h * phase);
        }
        return sum;
    }
};

// Rises by `risePerSecond` dB from `fromDB`, no further than `toDB`.
double swell(double time, double fromDB, double risePerSecond, double toDB) {
    return amplitude(std::min(fromDB + risePerSecond * time, toDB));
}

Voice chordOf(std::vector<Tone> tones, std::function<double(double)> level) {
    return [tones = std::move(tones), level = std::move(level)](double time) {
        double sum = 0.0;
        for (const Tone& tone : tones) {
            sum += tone.at(time);
        }
        return sum * level(time);
    };
}

std::vector<float> speech() {
    // Pulses through three resonances, the pitch gliding and the syllables three or four a
    // second: vowels in turn.
    const RoomMode vowels[][3] = {{{700, 9, 30}, {1220, 12, 26}, {2600, 15, 20}},
                                  {{300, 8, 30}, {2200, 14, 24}, {3000, 15, 20}},
                                  {{450, 8, 30}, {800, 10, 26}, {2500, 15, 16}}};
    std::mt19937 random(3);
    std::normal_distribution<double> noise(0.0, 1.0);
    std::vector<float> signal(static_cast<std::size_t>(15.0 * rate));
    double phase = 0.0;
    std::vector<Section> tract;
    double nextSyllable = 0.0, syllableStart = 0.0, pitchHz = 120.0;
    int syllable = 0;
    for (std::size_t i = 0; i < signal.size(); ++i) {
        const double time = static_cast<double>(i) / rate;
        if (time >= nextSyllable) {
            syllableStart = time;
            nextSyllable = time + 0.28 + 0.04 * noise(random);
            pitchHz = 120.0 + 15.0 * noise(random);
            tract.clear();
            for (const RoomMode& formant : vowels[syllable++ % 3]) {
                tract.push_back(bell(formant));
            }
        }
        const double along = (time - syllableStart) / 0.28;
        phase += pitchHz * (1.1 - 0.2 * along) / rate;
        double x = 0.002 * noise(random);
        if (phase >= 1.0) {
            phase -= 1.0;
            x += 1.0;
        }
        for (Section& formant : tract) {
            x = formant.step(x);
        }
        const double envelope = std::max(std::sin(pi * std::min(along, 1.0)), 0.0);
        signal[i] = static_cast<float>(0.02 * envelope * x);
    }
    return signal;
}

std::vector<float> applause() {
    // Hands: short bursts of noise, hundreds a second, in and out.
    std::mt19937 random(4);
    std::uniform_real_distribution<double> uniform(0.0, 1.0);
    std::normal_distribution<double> noise(0.0, 1.0);
    std::vector<float> signal(static_cast<std::size_t>(15.0 * rate));
    double burst = 0.0;
    for (std::size_t i = 0; i < signal.size(); ++i) {
        const double time = static_cast<double>(i) / rate;
        const double clapsPerSecond = 400.0 * std::sin(pi * time / 15.0);
        burst *= std::exp(-1.0 / (0.003 * rate));
        if (uniform(random) < clapsPerSecond / rate) {
            burst += 0.1 * uniform(random);
        }
        signal[i] = static_cast<float>(burst * noise(random));
    }
    return signal;
}

Voice pianoChords() {
    return [](double time) {
        const double roots[] = {261.63, 220.0, 174.61, 196.0};
        const double since = std::fmod(time, 1.5);
        const double root = roots[static_cast<int>(time / 1.5) % 4];
        double sum = 0.0;
        for (const double ratio : {1.0, 1.26, 1.498}) {
            for (int h = 1; h <= 8; ++h) {
                // A stiff string's partials lie a little sharp.
                const double f = root * ratio * h * std::sqrt(1.0 + 4e-4 * h * h);
                sum += std::exp(-since * (1.0 + 0.5 * h)) / h * std::sin(2.0 * pi * f * since);
            }
        }
        return 0.08 * sum * std::min(since / 0.005, 1.0);
    };
}

}  // namespace

FeedbackRun simulate(const FeedbackRoom& room) {
    std::vector<Section> sections = loopSections(room);
    const int delaySamples = static_cast<int>(std::round(room.delaySeconds * rate));
    const LoopPeak peak = strongestInPhase(sections, delaySamples);
    FeedbackRun run;
    run.ringFrequencyHz = peak.frequencyHz;
    if (room.creepDBPerSecond > 0.0) {
        run.unstableAtSeconds = std::max(-room.startGainDB / room.creepDBPerSecond, 0.0);
    }
    std::mt19937 random(7);
    std::normal_distribution<double> noise(0.0, amplitude(room.noiseDB));
    std::vector<double> delayLine(static_cast<std::size_t>(delaySamples), 0.0);
    std::size_t place = 0;
    run.signal.resize(static_cast<std::size_t>(room.durationSeconds * rate));
    for (std::size_t i = 0; i < run.signal.size(); ++i) {
        const double time = static_cast<double>(i) / rate;
        double x = delayLine[place];
        for (Section& section : sections) {
            x = section.step(x);
        }
        x *= amplitude(room.startGainDB + room.creepDBPerSecond * time) / peak.gain;
        const double heard = std::tanh(x) + noise(random);
        delayLine[place] = heard;
        place = (place + 1) % delayLine.size();
        run.signal[i] = static_cast<float>(heard);
        if (run.howlAtSeconds < 0.0 && std::abs(heard) >= 0.5) {
            run.howlAtSeconds = time;
        }
    }
    return run;
}

FeedbackRoom roomWithModeAt(double frequencyHz) {
    FeedbackRoom room;
    room.modes.push_back({frequencyHz, 12.0, 12.0});
    for (const double other : {170.0, 410.0, 930.0, 2300.0, 5100.0, 9700.0}) {
        if (std::abs(std::log2(other / frequencyHz)) > 0.4) {
            room.modes.push_back({other, 6.0, 5.0});
        }
    }
    return room;
}

std::vector<Material> musicLikeMaterial() {
    const std::vector<Tone> triad{{261.63}, {329.63}, {392.0}};
    const auto constant = [](double levelDB) { return [=](double) { return amplitude(levelDB); }; };
    const auto rising = [](double fromDB, double perSecond, double toDB) {
        return [=](double time) { return swell(time, fromDB, perSecond, toDB); };
    };
    std::vector<Material> material;
    const auto add = [&](std::string name, std::vector<float> signal, std::string why = {}) {
        material.push_back({std::move(name), std::move(signal), std::move(why)});
    };
    add("silence", std::vector<float>(static_cast<std::size_t>(5 * rate), 0.0F));
    add("sine, steady", rendered(10, chordOf({{1000, 1}}, constant(-10))));
    add("sine, dying away 6 dB/s", rendered(10, chordOf({{1000, 1}}, rising(-6, -6, 0))));
    add("organ chord, steady", rendered(10, chordOf(triad, constant(-30))));
    add("organ chord, swelling 6 dB/s", rendered(8, chordOf(triad, rising(-55, 6, -20))),
        "its low notes share a floor's box and hide each other: a harmonic stands alone");
    add("organ note, swelling 6 dB/s", rendered(8, chordOf({{392.0}}, rising(-55, 6, -20))));
    add("strings, vibrato, swelling 6 dB/s",
        rendered(8, chordOf({{440, 10, 6, 30}}, rising(-55, 6, -15))),
        "its harmonics are still below the least level when it is old enough");
    add("strings, vibrato, steady", rendered(8, chordOf({{440, 10, 6, 30}}, constant(-20))));
    add("flute, vibrato, swelling 5 dB/s",
        rendered(8, chordOf({{880, 3, 12, 12}}, rising(-50, 5, -10))),
        "its second partner is still below the least level");
    add("voice on one note, swelling 6 dB/s",
        rendered(8, chordOf({{220, 6, 3, 8}}, rising(-55, 6, -15))));
    add("piano chords", rendered(15, pianoChords()));
    add("speech", speech());
    add("applause", applause());
    add("noise, steady", rendered(
                             15, [](double) { return 0.0; }, -20));
    add("sweep 100 Hz to 10 kHz, swelling 4 dB/s", rendered(10, [](double time) {
            const double k = std::log(100.0) / 10.0;
            return swell(time, -45, 4, 0) *
                   std::sin(2.0 * pi * 100.0 / k * (std::exp(k * time) - 1.0));
        }));
    add("sweep, an octave in 10 s, swelling 4 dB/s", rendered(10, [](double time) {
            const double k = std::numbers::ln2 / 10.0;
            return swell(time, -45, 4, 0) *
                   std::sin(2.0 * pi * 700.0 / k * (std::exp(k * time) - 1.0));
        }));
    add("sine, swelling 6 dB/s", rendered(8, chordOf({{1000, 1}}, rising(-55, 6, -10))),
        "steady, growing, alone");
    add("whistle with an octave, swelling 6 dB/s",
        rendered(8, chordOf({{1500, 2, 20}}, rising(-55, 6, -10))),
        "steady, growing, one harmonic only");
    add("brass of 10 harmonics, swelling 6 dB/s",
        rendered(8, chordOf({{220, 10, 3}}, rising(-55, 6, -15))),
        "its 7th harmonic has no family among the multiples up to 6");
    return material;
}

}  // namespace TarvaneKit::Testing

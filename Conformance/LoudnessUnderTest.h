// The loudness meter as the program runs it: blocks of 256 frames, the EBU's tones in all channels.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <string>
#include <vector>

#include "Metrics/LoudnessMeter.h"
#include "Support/LoudnessCases.h"
#include "Support/TestSignals.h"

namespace TarvaneConformance {

inline constexpr std::array loudnessRates{44100.0, 48000.0, 96000.0, 192000.0};

/// A second of 1 kHz, amplitude 1; tones of any length are made of it.
class UnitTone {
  public:
    explicit UnitTone(double sampleRate)
        : sampleRate_(sampleRate),
          second_(TarvaneKit::Testing::sine(sampleRate, 1000.0, 1.0, 1.0)) {}

    double sampleRate() const { return sampleRate_; }

    /// Hands out consecutive blocks of a tone that begins at a zero crossing.
    template <class TakeBlock>
    void play(double peakDB, double seconds, TakeBlock takeBlock) const {
        constexpr std::size_t blockLength = 256;
        const auto gain = static_cast<float>(std::pow(10.0, peakDB / 20.0));
        const auto count = static_cast<std::size_t>(std::llround(seconds * sampleRate_));
        std::array<float, blockLength> block{};
        for (std::size_t at = 0; at < count;) {
            const std::size_t from = at % second_.size();
            const std::size_t length = std::min({blockLength, count - at, second_.size() - from});
            for (std::size_t i = 0; i < length; ++i) {
                block[i] = gain * second_[from + i];
            }
            takeBlock(std::span<const float>(block).first(length));
            at += length;
        }
    }

  private:
    double sampleRate_;
    TarvaneKit::Testing::Samples second_;
};

/// A stereo meter that is fed one programme after the other.
class StereoLoudness {
  public:
    explicit StereoLoudness(const UnitTone& tone) : tone_(tone) {}

    template <class AtBlockEnd>
    void play(const TarvaneKit::Testing::Programme& programme, AtBlockEnd atBlockEnd) {
        for (const TarvaneKit::Testing::ProgrammePart& part : programme) {
            tone_.play(part.peakDB, part.seconds, [&](std::span<const float> block) {
                const std::array channels{block, block};
                meter_.process(channels);
                frames_ += static_cast<double>(block.size());
                atBlockEnd();
            });
        }
    }
    void play(const TarvaneKit::Testing::Programme& programme) {
        play(programme, [] {});
    }

    double seconds() const { return frames_ / tone_.sampleRate(); }
    TarvaneKit::LoudnessReadings readings() const { return meter_.readings(); }

  private:
    const UnitTone& tone_;
    TarvaneKit::LoudnessMeter meter_{tone_.sampleRate(), {1.0, 1.0}};
    double frames_ = 0.0;
};

}  // namespace TarvaneConformance

// What the capture tests share: a recorder that takes a source's blocks, and waiting for things
// that a server does in its own time.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "AudioIO/AudioInputSource.h"
#include "AudioIO/PipeWire/PipeWireAudioSystem.h"
#include "Support/PrivateAudioServer.h"
#include "Support/TestPaths.h"

namespace TarvaneTests {

/// True as soon as the condition holds; false when it doesn't within twenty seconds.
inline bool eventually(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (std::chrono::steady_clock::now() < end) {
        if (condition()) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return condition();
}

/// False as well while the server can't be asked: it may be on its way back.
inline bool hasDevice(TarvaneKit::AudioSystem& system, const std::string& uid) {
    try {
        const auto devices = system.availableInputDevices();
        return std::any_of(devices.begin(), devices.end(),
                           [&](const auto& device) { return device.uid == uid; });
    } catch (const TarvaneKit::AudioIOError&) {
        return false;
    }
}

/// The listed device of that uid, waited for.
inline TarvaneKit::AudioInputDevice deviceNamed(TarvaneKit::AudioSystem& system,
                                                const std::string& uid) {
    EXPECT_TRUE(eventually([&] { return hasDevice(system, uid); })) << uid;
    for (const auto& device : system.availableInputDevices()) {
        if (device.uid == uid) {
            return device;
        }
    }
    return {};
}

/// A made-up device, on the server when the constructor returns.
class ToneDevice : public ChildProcess {
  public:
    explicit ToneDevice(const std::vector<std::string>& options) : ChildProcess(command(options)) {
        EXPECT_EQ(readLine(), "ready");
    }

  private:
    static std::vector<std::string> command(const std::vector<std::string>& options) {
        std::vector<std::string> result{TarvaneTests::TestPaths::toneSource()};
        result.insert(result.end(), options.begin(), options.end());
        return result;
    }
};

/// Keeps what a source delivers, and the losses that it reports.
class Recorder {
  public:
    explicit Recorder(TarvaneKit::MultiChannelAudioSource& source) : source_(source) {
        source_.onAudioBuffer = [this](const float* const* channels, int count, int frames) {
            const std::scoped_lock lock(mutex_);
            blocks_.push_back({frames_, frames, std::exchange(missingAhead_, 0)});
            samples_.resize(std::max(samples_.size(), static_cast<std::size_t>(count)));
            for (int channel = 0; channel < count; ++channel) {
                auto& target = samples_[static_cast<std::size_t>(channel)];
                target.insert(target.end(), channels[channel], channels[channel] + frames);
            }
            lastChannelCount_ = count;
            frames_ += frames;
        };
        source_.onAudioLost = [this](std::int64_t frames) {
            const std::scoped_lock lock(mutex_);
            missingAhead_ += frames;
            lostFrames_ += frames;
        };
        source_.onLoss = [this](TarvaneKit::AudioSourceLoss loss) {
            const std::scoped_lock lock(mutex_);
            losses_.push_back(loss);
        };
    }
    ~Recorder() {
        source_.stop();
        source_.onAudioBuffer = nullptr;
        source_.onAudioLost = nullptr;
        source_.onLoss = nullptr;
    }
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    std::int64_t frames() const {
        const std::scoped_lock lock(mutex_);
        return frames_;
    }
    int lastChannelCount() const {
        const std::scoped_lock lock(mutex_);
        return lastChannelCount_;
    }
    std::vector<TarvaneKit::AudioSourceLoss> losses() const {
        const std::scoped_lock lock(mutex_);
        return losses_;
    }
    /// `[channel][frame]`
    std::vector<std::vector<float>> samples() const {
        const std::scoped_lock lock(mutex_);
        return samples_;
    }
    struct Block {
        std::int64_t begin = 0;  ///< in `samples`
        int frameCount = 0;
        std::int64_t missingAhead = 0;  ///< as the source told
    };
    std::vector<Block> blocks() const {
        const std::scoped_lock lock(mutex_);
        return blocks_;
    }
    /// As the source told, since the beginning.
    std::int64_t lostFrames() const {
        const std::scoped_lock lock(mutex_);
        return lostFrames_;
    }
    /// Forgets what came so far and waits for that many frames more.
    std::vector<std::vector<float>> record(std::int64_t frameCount) {
        {
            const std::scoped_lock lock(mutex_);
            samples_.clear();
            blocks_.clear();
            frames_ = 0;
        }
        EXPECT_TRUE(eventually([&] { return frames() >= frameCount; }));
        return samples();
    }

  private:
    TarvaneKit::MultiChannelAudioSource& source_;
    mutable std::mutex mutex_;
    std::vector<std::vector<float>> samples_;
    std::vector<Block> blocks_;
    std::int64_t frames_ = 0;
    std::int64_t missingAhead_ = 0;
    std::int64_t lostFrames_ = 0;
    int lastChannelCount_ = 0;
    std::vector<TarvaneKit::AudioSourceLoss> losses_;
};

template <typename T>
T median(std::vector<T> values) {
    if (values.empty()) {
        return {};
    }
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// RMS in dB re full scale: the median of tenths of a second, so that a block which a busy machine
/// lost ahead of the capture doesn't count.
inline double levelDB(const std::vector<float>& samples) {
    constexpr std::size_t window = 4800;
    std::vector<double> levels;
    for (std::size_t begin = 0; begin + window <= samples.size(); begin += window) {
        double sum = 0;
        for (std::size_t i = begin; i < begin + window; ++i) {
            sum += static_cast<double>(samples[i]) * samples[i];
        }
        levels.push_back(10 * std::log10(std::max(sum / static_cast<double>(window), 1e-24)));
    }
    return median(levels);
}

/// RMS of a sine of that peak: 1/sqrt(2) of it.
inline double sineLevelDB(double peakDBFS) {
    return peakDBFS - 10 * std::log10(2.0);
}

/// The frequency of a sine, from the median of its periods between crossings of zero upward.
inline double frequencyHz(const std::vector<float>& samples, double sampleRate) {
    std::vector<double> periods;
    double last = -1;
    for (std::size_t i = 1; i < samples.size(); ++i) {
        if (samples[i - 1] < 0 && samples[i] >= 0) {
            const double at = static_cast<double>(i) -
                              static_cast<double>(samples[i]) / (samples[i] - samples[i - 1]);
            if (last >= 0) {
                periods.push_back(at - last);
            }
            last = at;
        }
    }
    return sampleRate / median(periods);
}

}  // namespace TarvaneTests

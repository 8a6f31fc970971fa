// That no frame goes missing in silence: with all cores busy, what the meters were given and what
// was told as lost add up to what the audio server delivered by its own clock. For longer than the
// test suite bears: Scripts/count-frames.

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "AudioIO/PipeWire/PipeWireAudioSystem.h"
#include "Engine/Clock.h"
#include "Engine/KernelTickTimer.h"
#include "Engine/MeterChannel.h"
#include "Engine/MeterEngine.h"
#include "Records/LostAudio.h"
#include "Settings/Observable.h"
#include "Support/MemoryStore.h"
#include "Support/PrivateAudioServer.h"
#include "TarvaneKit/AudioIO/PipeWire/Capture.h"

namespace TarvaneTests {
namespace FramesOnPipeWireTests {

using namespace TarvaneApp;
using TarvaneKit::AudioInputDevice;
using TarvaneKit::MultiChannelAudioSource;
using TarvaneKit::UUID;

constexpr const char* deviceName = "tarvane.clock";
constexpr double sampleRate = 48000.0;

// What the device plays: the number of each frame by the server's clock, mod 2^23.
constexpr std::int64_t numbers = 8388608;
constexpr std::int64_t longestHole = 20 * 48000;

std::int64_t numberOf(float sample) {
    return static_cast<std::int64_t>(sample * static_cast<float>(numbers));
}

struct FrameCount {
    std::int64_t delivered = 0;  ///< by the numbers that the server gave them
    std::int64_t metered = 0;
    std::int64_t told = 0;  ///< as lost, at their place

    std::int64_t unaccounted() const { return delivered - metered - told; }
};

// Reads the frames' numbers on their way to the meters.
class FrameCounter {
  public:
    void block(const float* samples, int frames) {
        const std::scoped_lock hold(lock_);
        ++blocksSinceLoss_;
        count_.metered += begun_ ? frames : 0;
        // A device that came late for its turn has sent an old block, or none.
        for (int i = 1; i < frames; ++i) {
            if (numberOf(samples[i]) != (numberOf(samples[0]) + i) % numbers) {
                return;
            }
        }
        const std::int64_t end = (numberOf(samples[0]) + frames) % numbers;
        if (!begun_) {
            begun_ = true;
        } else if (const std::int64_t step = (end - end_ + numbers) % numbers; step < longestHole) {
            count_.delivered += step;
        } else {
            return;
        }
        end_ = end;
        settled_ = count_;
    }
    void lost(std::int64_t frames) {
        const std::scoped_lock hold(lock_);
        count_.told += begun_ ? frames : 0;
        allTold_ += frames;
        holes_ += 1;
        blocksSinceLoss_ = 0;
    }

    /// What was told before is of no session.
    void beginSession() {
        const std::scoped_lock hold(lock_);
        allTold_ = 0;
        holes_ = 0;
    }
    /// Up to a block whose number is known and behind which nothing can be told any more.
    bool isSettled() const {
        const std::scoped_lock hold(lock_);
        return blocksSinceLoss_ > 20 && count_.metered == settled_.metered &&
               settled_.unaccounted() == 0;
    }
    FrameCount count() const {
        const std::scoped_lock hold(lock_);
        return settled_;
    }
    std::int64_t allTold() const {
        const std::scoped_lock hold(lock_);
        return allTold_;
    }
    int holes() const {
        const std::scoped_lock hold(lock_);
        return holes_;
    }

  private:
    mutable std::mutex lock_;
    bool begun_ = false;
    std::int64_t end_ = 0;
    FrameCount count_;
    FrameCount settled_;
    std::int64_t allTold_ = 0;
    int holes_ = 0;
    int blocksSinceLoss_ = 0;
};

// Stands between a real source and the meters.
class CountedSource final : public MultiChannelAudioSource {
  public:
    CountedSource(std::unique_ptr<MultiChannelAudioSource> source, FrameCounter& counter)
        : source_(std::move(source)) {
        source_->onAudioBuffer = [&](const float* const* channels, int channelCount, int frames) {
            counter.block(channels[0], frames);
            onAudioBuffer(channels, channelCount, frames);
        };
        source_->onAudioLost = [&](std::int64_t frames) {
            counter.lost(frames);
            onAudioLost(frames);
        };
        source_->onLoss = [&](TarvaneKit::AudioSourceLoss loss) { onLoss(loss); };
    }

    double sampleRate() const override { return source_->sampleRate(); }
    std::optional<AudioInputDevice> device() const override { return source_->device(); }
    void start() override { source_->start(); }
    void stop() override { source_->stop(); }

  private:
    const std::unique_ptr<MultiChannelAudioSource> source_;
};

class CountedAudioSystem final : public TarvaneKit::PipeWireAudioSystem {
  public:
    std::unique_ptr<MultiChannelAudioSource> makeDeviceSource(
        const std::optional<AudioInputDevice>& device) override {
        return std::make_unique<CountedSource>(PipeWireAudioSystem::makeDeviceSource(device),
                                               counter);
    }

    FrameCounter counter;
};

// One thread for each core, a little behind what else the machine does.
class Load {
  public:
    Load() {
        for (unsigned core = 0; core < std::thread::hardware_concurrency(); ++core) {
            threads_.emplace_back([this] {
                setpriority(PRIO_PROCESS, 0, 5);
                for (double x = 1.0; !ends_; x = x * 1.000001 + 1e-9) {
                    sink_.store(x, std::memory_order_relaxed);
                }
            });
        }
    }
    ~Load() {
        ends_ = true;
        for (std::thread& thread : threads_) {
            thread.join();
        }
    }
    Load(const Load&) = delete;
    Load& operator=(const Load&) = delete;

  private:
    std::atomic<bool> ends_{false};
    std::atomic<double> sink_{0.0};
    std::vector<std::thread> threads_;
};

double secondsToCount() {
    const char* told = std::getenv("TARVANE_COUNT_SECONDS");
    return told != nullptr ? std::atof(told) : 20.0;
}

void runFor(double seconds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (std::chrono::steady_clock::now() < end) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    }
}

bool runUntil(const std::function<bool()>& condition) {
    return eventually([&] {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        return condition();
    });
}

TEST(FramesOnPipeWireTests, everyFrameIsMeteredOrToldAsLostWhileAllCoresAreBusy) {
    PrivateAudioServer server;
    const ToneDevice device({"--name", deviceName, "--clock"});
    CountedAudioSystem audio;
    MemoryStore store;
    SystemClock clock;
    KernelTickTimer tickTimer;
    MeterEngine engine({.audio = audio, .store = store, .clock = clock, .tickTimer = tickTimer});
    deviceNamed(audio, deviceName);
    engine.refreshDevices();
    engine.selectedDeviceUID.set(deviceName);
    ChannelDemandRegistration spectrum;
    spectrum.update(engine, {UUID::main()}, ChannelDemand::rta);
    QObject context;
    follow(engine.isRunning, &context, [&] {
        if (engine.isRunning()) {
            audio.counter.beginSession();
        }
    });
    engine.start();
    ASSERT_TRUE(runUntil([&] { return !engine.isStarting(); }));
    ASSERT_TRUE(engine.isRunning()) << engine.errorMessage().value_or("");
    {
        const Load load;
        runFor(secondsToCount());
    }
    runUntil([&] { return audio.counter.isSettled(); });
    const FrameCount count = audio.counter.count();
    engine.stop();
    runFor(0.2);  // what the last tick has to tell
    const LostAudioTotal shown =
        LostAudioTotal::of(engine.meterChannel(UUID::main()).live.lostAudio);

    fmt::print("delivered {}, metered {}, told as lost {} in {} holes\n", count.delivered,
               count.metered, count.told, audio.counter.holes());
    EXPECT_GT(count.delivered, static_cast<std::int64_t>(0.9 * secondsToCount() * sampleRate));
    EXPECT_EQ(count.unaccounted(), 0);
    EXPECT_NEAR(shown.seconds * sampleRate, static_cast<double>(audio.counter.allTold()), 1.0);
    EXPECT_EQ(shown.count, audio.counter.holes());
}

}  // namespace FramesOnPipeWireTests
}  // namespace TarvaneTests

// One open audio source with the channels that read from it.
//
// The source's capture thread calls `deliver` with each block; every channel picks its inputs
// out of the same block. The subscribers never change, so nothing is locked here.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "AudioIO/AudioInputSource.h"
#include "Metering/ChannelProcessor.h"

namespace TarvaneApp {

class CaptureGroup {
  public:
    struct Subscriber {
        std::shared_ptr<ChannelProcessor> processor;
        int channelIndex = 0;
        std::optional<int> rightChannelIndex;
    };

    /// `deviceName` is what the user chose, for a source that doesn't say what it captures from.
    CaptureGroup(std::string deviceName,
                 std::unique_ptr<TarvaneKit::MultiChannelAudioSource> source,
                 std::vector<Subscriber> subscribers);
    /// Shuts the source.
    ~CaptureGroup();

    CaptureGroup(const CaptureGroup&) = delete;
    CaptureGroup& operator=(const CaptureGroup&) = delete;

    /// Opens the source. Throws what it throws. `cancelOpening` ends it.
    void open();
    /// What is open, absent for the system's output. As it was when the source was opened: a device
    /// that is gone has no name any more. Not before `open` has returned.
    const std::optional<TarvaneKit::AudioInputDevice>& device() const { return device_; }
    const std::string& deviceName() const { return device_ ? device_->name : deviceName_; }
    TarvaneKit::MultiChannelAudioSource& source() { return *source_; }
    const std::vector<Subscriber>& subscribers() const { return subscribers_; }

    /// Gives each channel the samples at its input. An index beyond the source's channels reads
    /// the last one.
    void deliver(const float* const* channels, int channelCount, int frameCount);
    /// Tells each channel of the hole ahead of the next block.
    void skip(std::int64_t frameCount);

    /// Ends an `open` that is under way in another thread.
    void cancelOpening() { source_->stop(); }
    /// Stops the source and lets go of its callbacks; harmless when done before. Not while it
    /// opens.
    void shut();

    /// Why the source stopped by itself, if it did. Noted from any thread.
    std::optional<TarvaneKit::AudioSourceLoss> loss() const;
    void noteLoss(TarvaneKit::AudioSourceLoss loss);

  private:
    const std::string deviceName_;
    const std::unique_ptr<TarvaneKit::MultiChannelAudioSource> source_;
    const std::vector<Subscriber> subscribers_;
    std::optional<TarvaneKit::AudioInputDevice> device_;
    static constexpr int notLost = -1;
    std::atomic<int> loss_{notLost};
};

}  // namespace TarvaneApp

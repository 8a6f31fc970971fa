#include "Metering/CaptureGroup.h"

#include <algorithm>

namespace TarvaneApp {

CaptureGroup::CaptureGroup(std::string deviceName,
                           std::unique_ptr<TarvaneKit::MultiChannelAudioSource> source,
                           std::vector<Subscriber> subscribers)
    : deviceName_(std::move(deviceName)),
      source_(std::move(source)),
      subscribers_(std::move(subscribers)) {
    source_->onAudioBuffer = [this](const float* const* channels, int channelCount,
                                    int frameCount) {
        deliver(channels, channelCount, frameCount);
    };
    source_->onAudioLost = [this](std::int64_t frameCount) { skip(frameCount); };
}

CaptureGroup::~CaptureGroup() {
    shut();
}

void CaptureGroup::open() {
    source_->start();
    device_ = source_->device();
}

void CaptureGroup::deliver(const float* const* channels, int channelCount, int frameCount) {
    if (channelCount < 1) {
        return;
    }
    const auto input = [&](int index) { return channels[std::clamp(index, 0, channelCount - 1)]; };
    for (const Subscriber& subscriber : subscribers_) {
        const float* right =
            subscriber.rightChannelIndex ? input(*subscriber.rightChannelIndex) : nullptr;
        subscriber.processor->ingest(input(subscriber.channelIndex), right, frameCount);
    }
}

void CaptureGroup::skip(std::int64_t frameCount) {
    for (const Subscriber& subscriber : subscribers_) {
        subscriber.processor->skip(frameCount);
    }
}

void CaptureGroup::shut() {
    source_->stop();
    source_->onAudioBuffer = nullptr;
    source_->onAudioLost = nullptr;
    source_->onLoss = nullptr;
}

std::optional<TarvaneKit::AudioSourceLoss> CaptureGroup::loss() const {
    const int loss = loss_.load();
    return loss == notLost ? std::nullopt
                           : std::optional(static_cast<TarvaneKit::AudioSourceLoss>(loss));
}

void CaptureGroup::noteLoss(TarvaneKit::AudioSourceLoss loss) {
    loss_.store(static_cast<int>(loss));
}

}  // namespace TarvaneApp

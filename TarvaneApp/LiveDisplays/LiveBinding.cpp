#include "LiveDisplays/LiveBinding.h"

#include <utility>

#include "Engine/MeterChannel.h"
#include "Engine/MeterEngine.h"

namespace TarvaneApp {

LiveBinding::LiveBinding(QObject& owner, std::function<void()> refresh)
    : owner_(owner), refresh_(std::move(refresh)) {}

LiveBinding::~LiveBinding() {
    for (const auto& connection : connections_) {
        QObject::disconnect(connection);
    }
}

void LiveBinding::bind(MeterEngine& engine, const std::vector<TarvaneKit::UUID>& channelIDs) {
    for (const auto& connection : std::exchange(connections_, {})) {
        QObject::disconnect(connection);
    }
    for (const TarvaneKit::UUID& id : channelIDs) {
        connections_.push_back(QObject::connect(&engine.meterChannel(id).live,
                                                &LiveMeterData::willChange, &owner_,
                                                [this] { schedule(); }));
    }
}

// The data's signal comes ahead of its writes; the event loop runs the refresh after the last of
// them.
void LiveBinding::schedule() {
    if (isPending_) {
        return;
    }
    isPending_ = true;
    QMetaObject::invokeMethod(
        &owner_,
        [this] {
            isPending_ = false;
            refresh_();
        },
        Qt::QueuedConnection);
}

}  // namespace TarvaneApp

#include "Shell/Windows/TrayState.h"

#include <optional>

#include "Displays/RawText.h"
#include "Engine/MeterChannel.h"
#include "Engine/MeterEngine.h"

namespace TarvaneApp {

namespace {

// The first channel of which that is so.
template <class Condition>
std::optional<QString> channelWhere(const MeterEngine& engine, Condition isSo) {
    for (const ChannelInfo& info : engine.activeChannelInfos()) {
        const MeterChannel* channel = engine.findMeterChannel(info.id);
        if (channel != nullptr && isSo(channel->live)) {
            return utf8Text(info.name);
        }
    }
    return std::nullopt;
}

}  // namespace

TrayState TrayState::of(const MeterEngine& engine) {
    if (!engine.isRunning()) {
        return {.kind = Kind::idle, .toolTip = QStringLiteral("Tarvane: not metering")};
    }
    if (engine.isPaused()) {
        return {.kind = Kind::paused, .toolTip = QStringLiteral("Tarvane: paused")};
    }
    if (const auto rings = channelWhere(engine, [](const LiveMeterData& live) {
            return live.currentRingAlert || live.heldRingAlert;
        })) {
        return {.kind = Kind::ring, .toolTip = QStringLiteral("Tarvane: ring-out, ") + *rings};
    }
    if (const auto clips = channelWhere(engine, [](const LiveMeterData& live) {
            return live.inputClipState == TarvaneKit::InputClipState::active;
        })) {
        return {.kind = Kind::clip, .toolTip = QStringLiteral("Tarvane: clipping, ") + *clips};
    }
    return {.kind = Kind::running,
            .toolTip = QStringLiteral("Tarvane: metering ") +
                       utf8Text(engine.mainInputInWords().value_or(std::string()))};
}

}  // namespace TarvaneApp

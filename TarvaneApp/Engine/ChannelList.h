// Which channels there are: the main input, then the extra ones; what feeds them, and what they are
// called. The records are settings; this is where they are looked up and edited. Main thread only.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Engine/ErrorMessage.h"
#include "Engine/InputDevices.h"
#include "Engine/InputGains.h"
#include "Engine/MeterSettings.h"
#include "Records/ChannelInfo.h"

namespace TarvaneApp {

class ChannelList {
  public:
    /// All of it outlives this.
    ChannelList(MeterSettings& settings, const InputDevices& devices, const InputGains& gains,
                ErrorMessage& errorMessage)
        : settings_(settings), devices_(devices), gains_(gains), errorMessage_(errorMessage) {}

    ChannelInfo mainChannelInfo() const;
    ChannelInfo info(const ChannelConfig& config) const;
    /// The main input first, then every extra channel.
    std::vector<ChannelInfo> channelInfos() const;
    /// The main input first, then the extra channels that are enabled.
    std::vector<ChannelInfo> activeChannelInfos() const;
    std::optional<ChannelInfo> channelInfo(const TarvaneKit::UUID& id) const;
    /// Null for the main input and for an unknown channel.
    const ChannelConfig* extraChannel(const TarvaneKit::UUID& id) const;
    /// The id, or the main input's when there is no such channel any more.
    TarvaneKit::UUID resolvedChannelID(const TarvaneKit::UUID& id) const;
    bool measuresLoudness(const TarvaneKit::UUID& id) const;
    /// A channel's device and inputs in words, as "Mic Interface (inputs 3+4, stereo)".
    std::string inputDescription(const ChannelInfo& channel) const;

    /// A channel on the main input's device, at its lowest input that no other channel takes. One
    /// too many is told and not added.
    void addChannel();
    void removeChannel(const TarvaneKit::UUID& id);
    /// Edits an extra channel's record; an unknown id does nothing.
    void updateChannel(const TarvaneKit::UUID& id, const std::function<void(ChannelConfig&)>& edit);
    /// Moves an extra channel, with its inputs kept where the device has them.
    void setChannelDevice(const TarvaneKit::UUID& id, const std::optional<std::string>& uid);
    void setChannelColor(const TarvaneKit::RGBAColor& color, const TarvaneKit::UUID& id);
    void setMeasuresLoudness(bool measures, const TarvaneKit::UUID& id);
    void setRingOutEnabled(bool enabled, const TarvaneKit::UUID& id);

  private:
    int lowestFreeInput(const std::optional<std::string>& deviceUID, int inputs) const;

    MeterSettings& settings_;
    const InputDevices& devices_;
    const InputGains& gains_;
    ErrorMessage& errorMessage_;
    mutable std::size_t lastFound_ = 0;  // where to look first
};

}  // namespace TarvaneApp

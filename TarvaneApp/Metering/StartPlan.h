// How a start opens its sources: one plan per device, all at once, off the main thread.
//
// A plan is a value made on the main thread. Opening it touches no engine state; what it makes
// comes back as a result.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "AudioIO/AudioSystem.h"
#include "Core/UUID.h"
#include "DSP/RingOutSensitivity.h"
#include "Metering/CaptureGroup.h"
#include "Records/ChannelInfo.h"

namespace TarvaneApp {

/// What reads "The selected device isn't connected."
class ChannelStartError : public std::runtime_error {
  public:
    static ChannelStartError deviceUnavailable(const std::string& name) {
        return ChannelStartError(name + " isn't connected.");
    }

  private:
    using std::runtime_error::runtime_error;
};

struct StartPlan {
    /// Absent: the default input.
    std::optional<std::string> uid;
    std::vector<ChannelInfo> members;
    /// The listed device of that uid, if it is there.
    std::optional<TarvaneKit::AudioInputDevice> device;
    /// What is opened, as the user knows it.
    std::string deviceName;

    bool holdsMainInput() const;
    /// The members' names, joined by ", ".
    std::string channelNames() const;
};

/// Which inputs each channel reads, in no order that means anything: what is fixed when sources
/// open.
using SourceSignature =
    std::tuple<TarvaneKit::UUID, std::optional<std::string>, int, std::optional<int>>;
std::vector<SourceSignature> sourceSignatures(const std::vector<ChannelInfo>& channels);

/// What every processor of a start is given.
struct StartSettings {
    TarvaneKit::Weighting leqWeighting = TarvaneKit::Weighting::a;
    double leqIntegrationSeconds = 60.0;
    /// Of each channel that starts.
    std::map<TarvaneKit::UUID, TarvaneKit::RingOutSensitivity> ringOutSensitivities;
};

/// A group with its source running, or the sentence that says why there is none.
struct StartResult {
    std::shared_ptr<CaptureGroup> group;
    std::string error;
};

/// Groups the channels by device, in the order in which each device first occurs. Absent and
/// empty uids are one device, the default input.
std::vector<StartPlan> makeStartPlans(const std::vector<ChannelInfo>& channels,
                                      const std::vector<TarvaneKit::AudioInputDevice>& devices);

/// A start under way, to be called off: what is opening ends at once, what isn't yet never begins.
class StartAttempt {
  public:
    /// While one lives, calling off the attempt ends the opening of its group. Throws when it has
    /// been called off before.
    class Opening;

    void cancel();
    bool isCancelled() const;

  private:
    mutable std::mutex lock_;
    bool isCancelled_ = false;
    std::vector<std::shared_ptr<CaptureGroup>> opening_;
};

/// Tells that a group's source has died.
using LossHandler = std::function<void(const std::weak_ptr<CaptureGroup>&)>;

/// Opens all plans in parallel and blocks until the slowest has an answer. `results[i]` belongs
/// to `plans[i]`. `onLoss` is called on any thread.
std::vector<StartResult> openPlans(const std::vector<StartPlan>& plans,
                                   const StartSettings& settings, TarvaneKit::AudioSystem& audio,
                                   const LossHandler& onLoss, StartAttempt& attempt);

}  // namespace TarvaneApp

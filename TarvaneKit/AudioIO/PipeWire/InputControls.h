// The volume controls of one node, or of a sound card's route, and their reading in dB.
//
// Volumes are amplitude factors. On a card with a dB scale of its own, 1 is the hardware's
// maximum and `volumeBase` is where its mixer says 0 dB; everywhere else the volume is software
// and 1 is 0 dB.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "Calibration/CalibrationProfile.h"

struct spa_pod;

namespace TarvaneKit {

struct InputControls {
    /// Of all inputs together, on top of their own.
    std::optional<float> volume;
    /// One per input, or one for all of several.
    std::vector<float> channelVolumes;
    bool isMuted = false;
    float volumeBase = 1.0F;
    /// Hardware whose steps have no known size in dB.
    bool hasNoDecibels = false;
    /// Of the node that has them.
    int channelCount = 0;

    /// Takes what a Props object says; what it doesn't mention stays.
    void take(const spa_pod& props);

    bool isEmpty() const { return !volume && channelVolumes.empty(); }
    /// One control answers for every input.
    bool isShared() const;
    /// 0 to 1, 0 while muted; absent without controls.
    std::optional<float> scalar(int channel) const;
    /// Absent without controls, while muted or turned all the way down, and without a dB scale.
    std::optional<InputGainState> gain(int channel) const;

    /// With the volumes of these inputs, or that of all, set; empty when there is none to set.
    std::optional<InputControls> withGain(double gainDB, const std::vector<int>& channels) const;
    std::optional<InputControls> withScalar(float scalar, const std::vector<int>& channels) const;

    bool operator==(const InputControls&) const = default;

  private:
    std::optional<double> factor(int channel) const;
    std::optional<InputControls> withFactor(double factor, const std::vector<int>& channels) const;
};

/// A sound card's route: the controls of the nodes that are its device.
struct CardRoute {
    std::int32_t index = 0;
    std::int32_t device = 0;
    InputControls controls;

    /// Empty when the object is no route.
    static std::optional<CardRoute> read(const spa_pod& route);
};

/// A Props object with the volumes of `controls`, in place in `buffer`.
const spa_pod* buildProps(const InputControls& controls, std::vector<std::uint8_t>& buffer);
/// A Route object that sets and stores them.
const spa_pod* buildRoute(const CardRoute& route, std::vector<std::uint8_t>& buffer);

}  // namespace TarvaneKit

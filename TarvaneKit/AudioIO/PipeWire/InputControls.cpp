#include "AudioIO/PipeWire/InputControls.h"

#include <spa/param/props.h>
#include <spa/param/route.h>
#include <spa/pod/builder.h>
#include <spa/pod/iter.h>
#include <spa/pod/parser.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace TarvaneKit {

namespace {

// PipeWire names no lower end. What a card's own mixer can't take off is taken off the samples.
constexpr double rangeDB = 60.0;

// The step of a card that has a dB scale; without one it is a part of the mixer's few steps.
constexpr float finestVolumeStep = 1.0F / 65536.0F;

constexpr std::size_t maxChannels = 64;

const spa_pod* value(const spa_pod& object, std::uint32_t key) {
    const spa_pod_prop* property = spa_pod_find_prop(&object, nullptr, key);
    return property != nullptr ? &property->value : nullptr;
}

std::optional<float> floatValue(const spa_pod& object, std::uint32_t key) {
    const spa_pod* pod = value(object, key);
    float result = 0.0F;
    return pod != nullptr && spa_pod_get_float(pod, &result) == 0 ? std::optional(result)
                                                                  : std::nullopt;
}

std::optional<std::int32_t> intValue(const spa_pod& object, std::uint32_t key) {
    const spa_pod* pod = value(object, key);
    std::int32_t result = 0;
    return pod != nullptr && spa_pod_get_int(pod, &result) == 0 ? std::optional(result)
                                                                : std::nullopt;
}

// A route's info is a count and that many pairs of texts.
bool hasHardwareVolume(const spa_pod& info) {
    spa_pod_parser parser = {};
    spa_pod_parser_pod(&parser, &info);
    spa_pod_frame frame = {};
    std::int32_t count = 0;
    if (spa_pod_parser_push_struct(&parser, &frame) < 0 ||
        spa_pod_parser_get_int(&parser, &count) < 0) {
        return false;
    }
    for (; count > 0; --count) {
        const char* key = nullptr;
        const char* text = nullptr;
        if (spa_pod_parser_get_string(&parser, &key) < 0 ||
            spa_pod_parser_get_string(&parser, &text) < 0) {
            return false;
        }
        if (std::strcmp(key, "route.hw-volume") == 0) {
            return std::strcmp(text, "true") == 0;
        }
    }
    return false;
}

void addProps(spa_pod_builder& builder, const InputControls& controls) {
    spa_pod_frame frame = {};
    spa_pod_builder_push_object(&builder, &frame, SPA_TYPE_OBJECT_Props, SPA_PARAM_Props);
    if (!controls.channelVolumes.empty()) {
        spa_pod_builder_prop(&builder, SPA_PROP_channelVolumes, 0);
        spa_pod_builder_array(&builder, sizeof(float), SPA_TYPE_Float,
                              static_cast<std::uint32_t>(controls.channelVolumes.size()),
                              controls.channelVolumes.data());
    } else if (controls.volume) {
        spa_pod_builder_prop(&builder, SPA_PROP_volume, 0);
        spa_pod_builder_float(&builder, *controls.volume);
    }
    spa_pod_builder_pop(&builder, &frame);
}

spa_pod_builder builderOver(std::vector<std::uint8_t>& buffer) {
    buffer.assign(1024, 0);  // 64 volumes take 256 bytes
    spa_pod_builder builder = {};
    spa_pod_builder_init(&builder, buffer.data(), static_cast<std::uint32_t>(buffer.size()));
    return builder;
}

}  // namespace

void InputControls::take(const spa_pod& props) {
    if (const auto told = floatValue(props, SPA_PROP_volume)) {
        volume = told;
    }
    if (const spa_pod* pod = value(props, SPA_PROP_mute)) {
        spa_pod_get_bool(pod, &isMuted);
    }
    if (const spa_pod* pod = value(props, SPA_PROP_channelVolumes)) {
        std::vector<float> volumes(maxChannels);
        volumes.resize(spa_pod_copy_array(pod, SPA_TYPE_Float, volumes.data(), maxChannels));
        channelVolumes = std::move(volumes);
    }
}

bool InputControls::isShared() const {
    return channelVolumes.empty() || (channelVolumes.size() == 1 && channelCount > 1);
}

std::optional<double> InputControls::factor(int channel) const {
    const double common = volume.value_or(1.0F);
    if (isEmpty()) {
        return std::nullopt;
    }
    if (channelVolumes.empty()) {
        return common;
    }
    const auto last = static_cast<int>(channelVolumes.size()) - 1;
    return common * channelVolumes[static_cast<std::size_t>(std::clamp(channel, 0, last))];
}

std::optional<float> InputControls::scalar(int channel) const {
    const auto told = factor(channel);
    if (!told) {
        return std::nullopt;
    }
    return isMuted ? 0.0F : static_cast<float>(std::clamp(*told, 0.0, 1.0));
}

std::optional<InputGainState> InputControls::gain(int channel) const {
    const auto told = factor(channel);
    if (!told || isMuted || hasNoDecibels) {
        return std::nullopt;
    }
    const double currentDB = 20.0 * std::log10(*told / volumeBase);
    const double maxDB = -20.0 * std::log10(volumeBase);
    if (!std::isfinite(currentDB) || !std::isfinite(maxDB)) {
        return std::nullopt;
    }
    return InputGainState::create(currentDB, maxDB, maxDB - rangeDB, isShared());
}

std::optional<InputControls> InputControls::withGain(double gainDB,
                                                     const std::vector<int>& channels) const {
    if (hasNoDecibels || !std::isfinite(gainDB)) {
        return std::nullopt;
    }
    const double maxDB = -20.0 * std::log10(volumeBase);
    const double taken = std::clamp(gainDB, maxDB - rangeDB, maxDB);
    return withFactor(volumeBase * std::pow(10.0, taken / 20.0), channels);
}

std::optional<InputControls> InputControls::withScalar(float scalar,
                                                       const std::vector<int>& channels) const {
    return std::isfinite(scalar) ? withFactor(std::clamp(scalar, 0.0F, 1.0F), channels)
                                 : std::nullopt;
}

std::optional<InputControls> InputControls::withFactor(double factor,
                                                       const std::vector<int>& channels) const {
    InputControls result = *this;
    if (channelVolumes.empty()) {
        if (!volume) {
            return std::nullopt;
        }
        result.volume = static_cast<float>(factor);
        return result;
    }
    const double common = volume.value_or(1.0F);
    if (!(common > 0.0)) {
        return std::nullopt;  // silent whatever the inputs' own volumes are
    }
    for (const int channel : channels) {
        const auto index =
            std::min(static_cast<std::size_t>(std::max(channel, 0)), channelVolumes.size() - 1);
        result.channelVolumes[index] = static_cast<float>(factor / common);
    }
    return result;
}

std::optional<CardRoute> CardRoute::read(const spa_pod& route) {
    const auto index = intValue(route, SPA_PARAM_ROUTE_index);
    const auto device = intValue(route, SPA_PARAM_ROUTE_device);
    if (!index || !device) {
        return std::nullopt;
    }
    CardRoute result{.index = *index, .device = *device, .controls = {}};
    const spa_pod* props = value(route, SPA_PARAM_ROUTE_props);
    if (props == nullptr) {
        return result;
    }
    result.controls.take(*props);
    const spa_pod* info = value(route, SPA_PARAM_ROUTE_info);
    if (info != nullptr && hasHardwareVolume(*info)) {
        result.controls.volumeBase = floatValue(*props, SPA_PROP_volumeBase).value_or(1.0F);
        result.controls.hasNoDecibels =
            floatValue(*props, SPA_PROP_volumeStep).value_or(1.0F) > finestVolumeStep;
    }
    return result;
}

const spa_pod* buildProps(const InputControls& controls, std::vector<std::uint8_t>& buffer) {
    spa_pod_builder builder = builderOver(buffer);
    addProps(builder, controls);
    return reinterpret_cast<const spa_pod*>(buffer.data());
}

const spa_pod* buildRoute(const CardRoute& route, std::vector<std::uint8_t>& buffer) {
    spa_pod_builder builder = builderOver(buffer);
    spa_pod_frame frame = {};
    spa_pod_builder_push_object(&builder, &frame, SPA_TYPE_OBJECT_ParamRoute, SPA_PARAM_Route);
    spa_pod_builder_prop(&builder, SPA_PARAM_ROUTE_index, 0);
    spa_pod_builder_int(&builder, route.index);
    spa_pod_builder_prop(&builder, SPA_PARAM_ROUTE_device, 0);
    spa_pod_builder_int(&builder, route.device);
    spa_pod_builder_prop(&builder, SPA_PARAM_ROUTE_props, 0);
    addProps(builder, route.controls);
    spa_pod_builder_prop(&builder, SPA_PARAM_ROUTE_save, 0);
    spa_pod_builder_bool(&builder, true);
    spa_pod_builder_pop(&builder, &frame);
    return reinterpret_cast<const spa_pod*>(buffer.data());
}

}  // namespace TarvaneKit

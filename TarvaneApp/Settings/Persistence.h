// The one accessor of the user's stored settings: which keys there are and in what form each
// type is stored. Texts and identifiers are stored as text, 64-bit floats as numbers,
// everything else as the JSON of its value. Main thread only.
#pragma once

#include <type_traits>

#include "Core/Coding.h"
#include "Core/UUID.h"
#include "KeyValueStore.h"

namespace TarvaneApp {

class Persistence {
  public:
    /// Every key is stored under "Tarvane." and its raw text.
    enum class Key {
        deviceUID,
        channelIndex,
        rtaColor,
        metricMode,
        splWeighting,
        splTimeWeighting,
        peakWeighting,
        leqWeighting,
        leqIntegrationSeconds,
        trafficLightConfig,
        trafficLightConfigDBFS,
        calibration,
        splReadoutShowsDBFS,
        splMeterShowsLevelBar,
        mainInputIsDigital,
        extraChannels,
        splMeterChannelID,
        mainInputIsStereo,
        mainInputRightChannelIndex,
    };

    explicit Persistence(KeyValueStore& store) : store_(store) {}

    /// Stores the value and flushes; absent removes the key. A value that has no stored form
    /// (a number that is not finite inside a record) leaves what is stored as it is.
    template <class T>
    void save(Key key, const std::optional<T>& value) {
        const std::string name = storedName(key);
        if (!value) {
            store_.remove(name);
        } else if constexpr (std::is_same_v<T, std::string>) {
            store_.setText(name, *value);
        } else if constexpr (std::is_same_v<T, TarvaneKit::UUID>) {
            store_.setText(name, value->text());
        } else if constexpr (std::is_same_v<T, double>) {
            store_.setNumber(name, *value);
        } else if (const auto bytes = TarvaneKit::encode(*value)) {
            store_.setData(name, *bytes);
        }
        store_.synchronize();
    }

    template <class T>
    void save(Key key, const T& value) {
        save(key, std::optional<T>(value));
    }

    /// Absent, of another form, or not decodable: empty.
    template <class T>
    std::optional<T> load(Key key) const {
        const std::string name = storedName(key);
        if constexpr (std::is_same_v<T, std::string>) {
            return store_.text(name);
        } else if constexpr (std::is_same_v<T, TarvaneKit::UUID>) {
            const auto text = store_.text(name);
            return text ? TarvaneKit::UUID::create(*text) : std::nullopt;
        } else if constexpr (std::is_same_v<T, double>) {
            return store_.number(name);
        } else {
            const auto bytes = store_.data(name);
            return bytes ? TarvaneKit::decode<T>(*bytes) : std::nullopt;
        }
    }

    static std::string storedName(Key key);

  private:
    KeyValueStore& store_;
};

}  // namespace TarvaneApp

template <>
struct TarvaneKit::RawCases<TarvaneApp::Persistence::Key> {
    using Key = TarvaneApp::Persistence::Key;
    static constexpr std::array all{
        RawCase{Key::deviceUID, "deviceUID"},
        RawCase{Key::channelIndex, "channelIndex"},
        RawCase{Key::rtaColor, "rtaColor"},
        RawCase{Key::metricMode, "metricMode"},
        RawCase{Key::splWeighting, "splWeighting"},
        RawCase{Key::splTimeWeighting, "splTimeWeighting"},
        RawCase{Key::peakWeighting, "peakWeighting"},
        RawCase{Key::leqWeighting, "leqWeighting"},
        RawCase{Key::leqIntegrationSeconds, "leqIntegrationSeconds"},
        RawCase{Key::trafficLightConfig, "trafficLightConfig"},
        RawCase{Key::trafficLightConfigDBFS, "trafficLightConfigDBFS"},
        RawCase{Key::calibration, "calibration"},
        RawCase{Key::splReadoutShowsDBFS, "splReadoutShowsDBFS"},
        RawCase{Key::splMeterShowsLevelBar, "splMeterShowsLevelBar"},
        RawCase{Key::mainInputIsDigital, "mainInputIsDigital"},
        RawCase{Key::extraChannels, "extraChannels"},
        RawCase{Key::splMeterChannelID, "splMeterChannelID"},
        RawCase{Key::mainInputIsStereo, "mainInputIsStereo"},
        RawCase{Key::mainInputRightChannelIndex, "mainInputRightChannelIndex"},
    };
};

// What the form of a channel edits, as values: of the main input, whose settings are the engine's,
// in the same words as of an extra channel, whose record has them. A channel that has been removed
// has defaults, and takes nothing.
#pragma once

#include <QString>
#include <optional>
#include <string>

#include "Calibration/CalibrationProfile.h"
#include "Core/RGBAColor.h"
#include "Core/UUID.h"
#include "Engine/MeterEngine.h"
#include "Shell/Forms/FormValue.h"

namespace TarvaneApp {

class ChannelValues {
  public:
    /// The engine outlives all values.
    ChannelValues(MeterEngine& engine, const TarvaneKit::UUID& id) : engine_(&engine), id_(id) {}

    MeterEngine& engine() const { return *engine_; }
    const TarvaneKit::UUID& id() const { return id_; }
    bool isMain() const { return id_ == TarvaneKit::UUID::main(); }

    // Where it comes from.
    FormValue<std::optional<std::string>> device() const;
    FormValue<int> input() const;
    FormValue<bool> isStereo() const;
    FormValue<int> rightInput() const;
    bool isSystemOutput() const;
    /// A feed without acoustic level, which is not calibrated.
    FormValue<bool> isDigital() const;

    // Of an extra channel alone.
    FormValue<QString> name() const;
    FormValue<bool> isEnabled() const;

    // How it is shown.
    FormValue<TarvaneKit::RGBAColor> color() const;
    FormValue<bool> ringOut() const;
    FormValue<ReadoutUnit> readoutUnit() const;
    template <class Field>
    FormValue<Field> display(Field ChannelDisplaySettings::*field) const {
        return {.get = [self = *this, field] { return self.engine().display(self.id_).*field; },
                .set =
                    [self = *this, field](Field value) {
                        self.engine().updateDisplay(self.id_, [&](ChannelDisplaySettings& display) {
                            display.*field = std::move(value);
                        });
                    }};
    }
    template <class Field>
    FormValue<Field> windowLayout(Field ChannelWindowLayout::*field) const {
        return {
            .get = [self = *this, field] { return self.engine().windowLayout(self.id_).*field; },
            .set =
                [self = *this, field](Field value) {
                    self.engine().updateWindowLayout(
                        self.id_, [&](ChannelWindowLayout& layout) { layout.*field = value; });
                }};
    }

    // Its calibration, in force or set aside, with the gain of now.
    TarvaneKit::CalibrationProfile calibration() const;
    /// The level that its microphone file's Sens Factor is of.
    FormValue<double> referenceSPL() const;

    /// Absent where the device reports none.
    std::optional<TarvaneKit::InputGainState> gain() const;
    /// What stood in the way.
    std::optional<std::string> setGain(double gainDB) const;

  private:
    ChannelConfig record() const;
    template <class Field>
    FormValue<Field> recordValue(Field ChannelConfig::*field) const;

    MeterEngine* engine_;
    TarvaneKit::UUID id_;
};

}  // namespace TarvaneApp

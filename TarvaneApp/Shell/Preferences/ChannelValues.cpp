#include "Shell/Preferences/ChannelValues.h"

#include <algorithm>
#include <cmath>

#include "Shell/ChannelControls/ReadoutUnits.h"

namespace TarvaneApp {

using TarvaneKit::CalibrationProfile;
using TarvaneKit::InputGainState;
using TarvaneKit::RGBAColor;

ChannelConfig ChannelValues::record() const {
    const auto& channels = engine_->extraChannels();
    const auto found = std::ranges::find(channels, id_, &ChannelConfig::id);
    return found != channels.end() ? *found : ChannelConfig{};
}

template <class Field>
FormValue<Field> ChannelValues::recordValue(Field ChannelConfig::*field) const {
    return {.get = [self = *this, field] { return self.record().*field; },
            .set =
                [self = *this, field](Field value) {
                    self.engine().updateChannel(self.id_, [&](ChannelConfig& channel) {
                        channel.*field = std::move(value);
                    });
                }};
}

FormValue<std::optional<std::string>> ChannelValues::device() const {
    return isMain() ? settingValue(engine_->selectedDeviceUID)
                    : FormValue<std::optional<std::string>>{
                          .get = [self = *this] { return self.record().deviceUID; },
                          .set =
                              [self = *this](const std::optional<std::string>& uid) {
                                  self.engine().setChannelDevice(self.id_, uid);
                              }};
}

FormValue<int> ChannelValues::input() const {
    return isMain() ? settingValue(engine_->selectedChannelIndex)
                    : recordValue(&ChannelConfig::channelIndex);
}

FormValue<bool> ChannelValues::isStereo() const {
    return isMain() ? settingValue(engine_->mainInputIsStereo)
                    : recordValue(&ChannelConfig::isStereo);
}

FormValue<int> ChannelValues::rightInput() const {
    return isMain() ? settingValue(engine_->mainInputRightChannelIndex)
                    : recordValue(&ChannelConfig::rightChannelIndex);
}

bool ChannelValues::isSystemOutput() const {
    return device().get() == TarvaneKit::systemOutputUID;
}

FormValue<bool> ChannelValues::isDigital() const {
    return {.get = [self = *this] { return self.engine().isDigitalSource(self.id_); },
            .set = [self = *this](
                       bool isDigital) { self.engine().setDigitalSource(isDigital, self.id_); }};
}

FormValue<QString> ChannelValues::name() const {
    return {.get = [self = *this] { return QString::fromStdString(self.record().name); },
            .set =
                [self = *this](const QString& name) {
                    self.engine().updateChannel(self.id_, [&](ChannelConfig& channel) {
                        channel.name = name.trimmed().toStdString();
                    });
                }};
}

FormValue<bool> ChannelValues::isEnabled() const {
    return recordValue(&ChannelConfig::isEnabled);
}

FormValue<RGBAColor> ChannelValues::color() const {
    return {.get =
                [self = *this] {
                    return self.isMain() ? self.engine().rtaColor() : self.record().color;
                },
            .set = [self = *this](
                       const RGBAColor& color) { self.engine().setChannelColor(color, self.id_); }};
}

FormValue<bool> ChannelValues::ringOut() const {
    return {.get =
                [self = *this] {
                    return self.isMain() ? self.engine().ringOutEnabled()
                                         : self.record().ringOutEnabled;
                },
            .set = [self = *this](bool isOn) { self.engine().setRingOutEnabled(isOn, self.id_); }};
}

FormValue<ReadoutUnit> ChannelValues::readoutUnit() const {
    return {.get = [self = *this] { return self.engine().readoutUnit(self.id_); },
            .set = [self = *this](
                       ReadoutUnit unit) { chooseReadoutUnit(unit, self.engine(), self.id_); }};
}

CalibrationProfile ChannelValues::calibration() const {
    if (isMain()) {
        return engine_->calibration();
    }
    CalibrationProfile profile = record().calibration.value_or(MeterEngine::uncalibrated());
    profile.inputGain = gain();
    return profile;
}

FormValue<double> ChannelValues::referenceSPL() const {
    return {.get =
                [self = *this] {
                    const double stored = self.calibration().micCalFileReferenceSPL;
                    return std::isfinite(stored) ? stored
                                                 : CalibrationProfile{}.micCalFileReferenceSPL;
                },
            .set =
                [self = *this](double referenceSPL) {
                    if (self.isMain()) {
                        CalibrationProfile profile = self.engine().calibration();
                        profile.micCalFileReferenceSPL = referenceSPL;
                        self.engine().calibration.set(std::move(profile));
                        return;
                    }
                    self.engine().updateChannel(self.id_, [&](ChannelConfig& channel) {
                        if (channel.calibration) {
                            channel.calibration->micCalFileReferenceSPL = referenceSPL;
                        }
                    });
                }};
}

std::optional<InputGainState> ChannelValues::gain() const {
    return isMain() ? engine_->currentInputGain() : engine_->inputGain(record());
}

std::optional<std::string> ChannelValues::setGain(double gainDB) const {
    return isMain() ? engine_->setInputGain(gainDB) : engine_->setInputGain(gainDB, record());
}

}  // namespace TarvaneApp

#include "Shell/ChannelControls/ReadoutUnitPicker.h"

#include "Engine/MeterEngine.h"
#include "Settings/Observable.h"
#include "Shell/Controls/EnumChoice.h"

namespace TarvaneApp {

ReadoutUnitPicker::ReadoutUnitPicker(MeterEngine& engine, const TarvaneKit::UUID& channelID,
                                     QWidget* parent)
    : MenuButton(QStringLiteral("Readout unit"), parent), engine_(engine), channelID_(channelID) {
    setToolTip(QStringLiteral(
        "Read this channel in dB SPL, dBFS, or as program loudness (LUFS, EBU R128)"));
    followChannels(
        engine.channelChanges(), this,
        [this](const TarvaneKit::UUID& id) { return id == channelID_; }, [this] { showChoices(); });
}

void ReadoutUnitPicker::setChannelID(const TarvaneKit::UUID& channelID) {
    channelID_ = channelID;
    showChoices();
}

void ReadoutUnitPicker::choose(ReadoutUnit unit) {
    const TarvaneKit::UUID id = channelID_;
    engine_.setMeasuresLoudness(unit == ReadoutUnit::lufs, id);
    if (unit != ReadoutUnit::lufs) {
        engine_.updateDisplay(id, [unit](ChannelDisplaySettings& display) {
            display.showsDBFS = unit == ReadoutUnit::dbfs;
        });
    }
}

void ReadoutUnitPicker::showChoices() {
    const ReadoutUnit current = engine_.readoutUnit(channelID_);
    std::vector<Item> items;
    for (const ReadoutUnit unit : TarvaneKit::allCases<ReadoutUnit>()) {
        if (unit == ReadoutUnit::spl && !engine_.isCalibrated(channelID_)) {
            continue;
        }
        items.push_back(EnumChoice<ReadoutUnit>::item(
            unit, current, [this](ReadoutUnit picked) { choose(picked); }));
    }
    setItems(std::move(items));
}

}  // namespace TarvaneApp

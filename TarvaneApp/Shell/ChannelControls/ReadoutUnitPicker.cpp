#include "Shell/ChannelControls/ReadoutUnitPicker.h"

#include "Engine/MeterEngine.h"
#include "Settings/Observable.h"
#include "Shell/ChannelControls/ReadoutUnits.h"
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

void ReadoutUnitPicker::showChoices() {
    const ReadoutUnit current = engine_.readoutUnit(channelID_);
    std::vector<Item> items;
    for (const ReadoutUnit unit : offeredReadoutUnits(engine_, channelID_)) {
        items.push_back(EnumChoice<ReadoutUnit>::item(unit, current, [this](ReadoutUnit picked) {
            chooseReadoutUnit(picked, engine_, channelID_);
        }));
    }
    setItems(std::move(items));
}

}  // namespace TarvaneApp

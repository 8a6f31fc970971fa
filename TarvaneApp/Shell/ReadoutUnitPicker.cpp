#include "ReadoutUnitPicker.h"

#include "LiveFollow.h"
#include "MeterEngine.h"

namespace TarvaneApp {

ReadoutUnitPicker::ReadoutUnitPicker(MeterEngine& engine, const TarvaneKit::UUID& channelID,
                                     QWidget* parent)
    : MenuButton(QStringLiteral("Readout unit"), parent), engine_(engine), channelID_(channelID) {
    setToolTip(QStringLiteral(
        "Read this channel in dB SPL, dBFS, or as program loudness (LUFS, EBU R128)"));
    followAll(
        this, [this] { showChoices(); }, engine.calibration, engine.mainInputIsDigital,
        engine.extraChannels, engine.splReadoutShowsDBFS);
}

void ReadoutUnitPicker::setChannelID(const TarvaneKit::UUID& channelID) {
    channelID_ = channelID;
    showChoices();
}

void ReadoutUnitPicker::showChoices() {
    const bool isCalibrated = engine_.isCalibrated(channelID_);
    const bool readsSPL = isCalibrated && !engine_.display(channelID_).showsDBFS;
    const auto item = [this](const char* label, bool isCurrent, bool showsDBFS) {
        return Item{.text = QString::fromLatin1(label),
                    .isCurrent = isCurrent,
                    .action =
                        [this, showsDBFS] {
                            engine_.updateDisplay(channelID_,
                                                  [showsDBFS](ChannelDisplaySettings& display) {
                                                      display.showsDBFS = showsDBFS;
                                                  });
                        },
                    .dot = std::nullopt};
    };
    std::vector<Item> items;
    if (isCalibrated) {
        items.push_back(item("SPL", readsSPL, false));
    }
    items.push_back(item("dBFS", !readsSPL, true));
    setItems(std::move(items));
}

}  // namespace TarvaneApp

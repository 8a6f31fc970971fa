#include "Shell/ChannelControls/ReadoutUnits.h"

#include "Core/RawEnum.h"
#include "Engine/MeterEngine.h"

namespace TarvaneApp {

using TarvaneKit::UUID;

std::vector<ReadoutUnit> offeredReadoutUnits(const MeterEngine& engine, const UUID& channelID) {
    std::vector<ReadoutUnit> units;
    for (const ReadoutUnit unit : TarvaneKit::allCases<ReadoutUnit>()) {
        if (unit != ReadoutUnit::spl || engine.isCalibrated(channelID)) {
            units.push_back(unit);
        }
    }
    return units;
}

// By value: a picker may show another channel as soon as the first of the two settings is set.
void chooseReadoutUnit(ReadoutUnit unit, MeterEngine& engine, UUID channelID) {
    engine.setMeasuresLoudness(unit == ReadoutUnit::lufs, channelID);
    if (unit != ReadoutUnit::lufs) {
        engine.updateDisplay(channelID, [unit](ChannelDisplaySettings& display) {
            display.showsDBFS = unit == ReadoutUnit::dbfs;
        });
    }
}

}  // namespace TarvaneApp

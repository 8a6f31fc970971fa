// The units that a channel can read in, and what choosing one sets.
#pragma once

#include <vector>

#include "Core/UUID.h"
#include "Records/DisplayEnums.h"

namespace TarvaneApp {

class MeterEngine;

/// dB SPL among them where the channel is calibrated.
std::vector<ReadoutUnit> offeredReadoutUnits(const MeterEngine& engine,
                                             const TarvaneKit::UUID& channelID);

void chooseReadoutUnit(ReadoutUnit unit, MeterEngine& engine, TarvaneKit::UUID channelID);

}  // namespace TarvaneApp

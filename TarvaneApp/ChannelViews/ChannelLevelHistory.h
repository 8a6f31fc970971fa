// What a level history of a channel shows, on the screen and on paper. Main thread.
#pragma once

#include "Displays/LevelHistory/LevelHistoryView.h"

namespace TarvaneApp {

class MeterChannel;
class MeterEngine;

/// The record of the channel's whole session as its settings have it shown: metric, scale, colours,
/// the Momentary line, where audio was lost. Range and overlays are the caller's.
LevelHistoryView channelLevelHistory(const MeterEngine& engine, const MeterChannel& channel);

}  // namespace TarvaneApp

// Where the modules are. The main window is never empty: when the last module leaves it, the SPL
// meter comes back.

#include "Engine/MeterEngine.h"

namespace TarvaneApp {

using TarvaneKit::UUID;

namespace {

struct Placements {
    ModulePlacement splMeter = ModulePlacement::mainWindow;
    ModulePlacement rta = ModulePlacement::mainWindow;
    ModulePlacement spectrogram = ModulePlacement::mainWindow;
    ModulePlacement levelHistory = ModulePlacement::mainWindow;
};

Placements placements(LayoutPreset preset) {
    using enum ModulePlacement;
    switch (preset) {
        case LayoutPreset::allInMainWindow:
            break;
        case LayoutPreset::splMeterOnly:
            return {.splMeter = mainWindow,
                    .rta = hidden,
                    .spectrogram = hidden,
                    .levelHistory = hidden};
        case LayoutPreset::levelHistoryOnly:
            return {.splMeter = hidden,
                    .rta = hidden,
                    .spectrogram = hidden,
                    .levelHistory = mainWindow};
        case LayoutPreset::splInSeparateWindow:
            return {.splMeter = separateWindow};
        case LayoutPreset::rtaInSeparateWindow:
            return {.rta = separateWindow};
        case LayoutPreset::spectrogramInSeparateWindow:
            return {.spectrogram = separateWindow};
    }
    return {};
}

}  // namespace

void MeterEngine::applyLayoutPreset(LayoutPreset preset) {
    const Placements wanted = placements(preset);
    isApplyingLayoutPreset_ = true;
    splMeterPlacement.set(wanted.splMeter);
    rtaPlacement.set(wanted.rta);
    spectrogramPlacement.set(wanted.spectrogram);
    levelHistoryPlacement.set(wanted.levelHistory);
    isApplyingLayoutPreset_ = false;
}

// On the way to a preset the main window may be empty for a moment.
void MeterEngine::placementChanged() {
    if (!isApplyingLayoutPreset_ && !mainWindowShowsGraphArea() &&
        splMeterPlacement() != ModulePlacement::mainWindow &&
        levelHistoryPlacement() != ModulePlacement::mainWindow) {
        splMeterPlacement.set(ModulePlacement::mainWindow);
    }
}

bool MeterEngine::mainWindowShowsGraphArea() const {
    return rtaPlacement() == ModulePlacement::mainWindow ||
           spectrogramPlacement() == ModulePlacement::mainWindow;
}

ChannelWindowLayout MeterEngine::windowLayout(const UUID& channelID) const {
    const auto found = channelWindowLayouts().find(channelID);
    return found != channelWindowLayouts().end() ? found->second : ChannelWindowLayout{};
}

void MeterEngine::updateWindowLayout(const UUID& channelID,
                                     const std::function<void(ChannelWindowLayout&)>& edit) {
    auto layouts = channelWindowLayouts();
    edit(layouts[channelID]);
    channelWindowLayouts.set(std::move(layouts));
}

void MeterEngine::resetWindowLayout(const UUID& channelID) {
    auto layouts = channelWindowLayouts();
    layouts.erase(channelID);
    channelWindowLayouts.set(std::move(layouts));
}

}  // namespace TarvaneApp

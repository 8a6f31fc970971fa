#include "Engine/ModuleLayout.h"

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

void ModuleLayout::applyLayoutPreset(LayoutPreset preset) {
    const Placements wanted = placements(preset);
    placeTogether([&] {
        settings_.splMeterPlacement.set(wanted.splMeter);
        settings_.rtaPlacement.set(wanted.rta);
        settings_.spectrogramPlacement.set(wanted.spectrogram);
        settings_.levelHistoryPlacement.set(wanted.levelHistory);
    });
}

void ModuleLayout::placeTogether(const std::function<void()>& place) {
    isPlacingTogether_ = true;
    place();
    isPlacingTogether_ = false;
    keepMainWindowFilled();
}

void ModuleLayout::keepMainWindowFilled() {
    if (!isPlacingTogether_ && !mainWindowShowsGraphArea() &&
        settings_.splMeterPlacement() != ModulePlacement::mainWindow &&
        settings_.levelHistoryPlacement() != ModulePlacement::mainWindow) {
        settings_.splMeterPlacement.set(ModulePlacement::mainWindow);
    }
}

bool ModuleLayout::mainWindowShowsGraphArea() const {
    return settings_.rtaPlacement() == ModulePlacement::mainWindow ||
           settings_.spectrogramPlacement() == ModulePlacement::mainWindow;
}

ChannelWindowLayout ModuleLayout::windowLayout(const UUID& channelID) const {
    const auto found = settings_.channelWindowLayouts().find(channelID);
    return found != settings_.channelWindowLayouts().end() ? found->second : ChannelWindowLayout{};
}

void ModuleLayout::updateWindowLayout(const UUID& channelID,
                                      const std::function<void(ChannelWindowLayout&)>& edit) {
    auto layouts = settings_.channelWindowLayouts();
    ChannelWindowLayout& layout = layouts[channelID];
    edit(layout);
    if (layout.visibleModuleCount() > 0) {
        settings_.channelWindowLayouts.set(std::move(layouts));
    }
}

void ModuleLayout::resetWindowLayout(const UUID& channelID) {
    auto layouts = settings_.channelWindowLayouts();
    layouts.erase(channelID);
    settings_.channelWindowLayouts.set(std::move(layouts));
}

}  // namespace TarvaneApp

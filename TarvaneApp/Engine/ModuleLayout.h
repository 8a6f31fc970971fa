// Where the modules are: in the main window, in windows of their own, in a channel's window. Main
// thread only.
#pragma once

#include <functional>

#include "Engine/MeterSettings.h"

namespace TarvaneApp {

class ModuleLayout {
  public:
    explicit ModuleLayout(MeterSettings& settings) : settings_(settings) {}

    void applyLayoutPreset(LayoutPreset preset);
    /// Assigns several placements, between which the main window may be empty.
    void placeTogether(const std::function<void()>& place);
    /// Brings the SPL meter back when the last module has left the main window.
    void keepMainWindowFilled();
    bool mainWindowShowsGraphArea() const;

    /// The channel's own layout, or one with all modules and the main window's arrangement.
    ChannelWindowLayout windowLayout(const TarvaneKit::UUID& channelID) const;
    /// An edit that would leave the window without a module changes nothing.
    void updateWindowLayout(const TarvaneKit::UUID& channelID,
                            const std::function<void(ChannelWindowLayout&)>& edit);
    /// Takes the layout out of the settings, so that the default holds again.
    void resetWindowLayout(const TarvaneKit::UUID& channelID);

  private:
    MeterSettings& settings_;
    bool isPlacingTogether_ = false;
};

}  // namespace TarvaneApp

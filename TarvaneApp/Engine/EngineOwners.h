// What lies behind MeterEngine's face: one owner per subject, each given what it may touch. Each
// stands on those above it.
#pragma once

#include "Engine/ChannelCalibration.h"
#include "Engine/ChannelChanges.h"
#include "Engine/ChannelDisplays.h"
#include "Engine/ChannelList.h"
#include "Engine/ErrorMessage.h"
#include "Engine/InputDevices.h"
#include "Engine/InputGains.h"
#include "Engine/MainThreadQueue.h"
#include "Engine/MeterEngine.h"
#include "Engine/ModuleLayout.h"
#include "Engine/Run.h"
#include "Engine/SettingEffects.h"
#include "Engine/SettingsTransfer.h"

namespace TarvaneApp {

struct MeterEngine::Owners {
    Owners(const Environment& environment, MeterSettings& settings)
        : audio(environment.audio),
          devices(audio),
          gains({.audio = audio,
                 .settings = settings,
                 .devices = devices,
                 .mainThread = mainThread,
                 .errorMessage = errorMessage}),
          channels(settings, devices, gains, errorMessage),
          displays(settings, channels, gains),
          layout(settings),
          run({.audio = audio,
               .clock = environment.clock,
               .tickTimer = environment.tickTimer,
               .mainThread = mainThread,
               .settings = settings,
               .devices = devices,
               .channels = channels,
               .displays = displays,
               .changes = changes,
               .errorMessage = errorMessage}),
          calibration({.clock = environment.clock,
                       .settings = settings,
                       .devices = devices,
                       .gains = gains,
                       .channels = channels,
                       .displays = displays,
                       .run = run,
                       .errorMessage = errorMessage}),
          effects({.settings = settings,
                   .devices = devices,
                   .gains = gains,
                   .channels = channels,
                   .run = run,
                   .layout = layout,
                   .changes = changes}),
          transfer({.settings = settings, .devices = devices, .layout = layout, .run = run}) {}

    TarvaneKit::AudioSystem& audio;
    ErrorMessage errorMessage;
    ChannelChanges changes;
    MainThreadQueue mainThread;
    InputDevices devices;
    InputGains gains;
    ChannelList channels;
    ChannelDisplays displays;
    ModuleLayout layout;
    Run run;
    ChannelCalibration calibration;
    SettingEffects effects;
    SettingsTransfer transfer;
};

}  // namespace TarvaneApp

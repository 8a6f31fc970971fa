// What the user has typed into a form and not yet put to use. It outlives the form, whose rows may
// be made anew while a text is half written. The settings window owns it; main thread.
#pragma once

#include <QString>

#include "Settings/Published.h"

namespace TarvaneApp {

struct TextFieldStore {
    /// Of the tone that a channel is to be calibrated with, in dB SPL. At first the level that most
    /// acoustic calibrators play.
    Published<double> knownSPL{94.0};
    /// What the colour ramp is to be saved as.
    Published<QString> newSpectrogramPresetName;
};

}  // namespace TarvaneApp

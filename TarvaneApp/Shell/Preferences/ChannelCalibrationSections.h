// A channel's calibration, by its microphone's file and by a reference tone.
#pragma once

#include "Shell/Preferences/ChannelValues.h"

namespace TarvaneApp {

class Form;
struct TextFieldStore;

/// The main input has a section for each of the two and one for its state, another channel one for
/// all. A digital feed has none.
void addChannelCalibrationSections(Form& form, const ChannelValues& channel, TextFieldStore& texts);

}  // namespace TarvaneApp

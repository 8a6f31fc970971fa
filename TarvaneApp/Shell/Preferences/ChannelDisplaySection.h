// How a channel's spectrum and spectrogram look.
#pragma once

#include "Shell/Preferences/ChannelValues.h"

namespace TarvaneApp {

class Form;

void addChannelDisplaySection(Form& form, const ChannelValues& channel);

}  // namespace TarvaneApp

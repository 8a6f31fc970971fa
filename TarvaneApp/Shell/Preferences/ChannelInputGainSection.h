// The gain of a channel's input, where its device has one that software can turn, and the level
// that comes in.
#pragma once

#include "Shell/Preferences/ChannelValues.h"

namespace TarvaneApp {

class Form;

void addChannelInputGainSection(Form& form, const ChannelValues& channel);

}  // namespace TarvaneApp

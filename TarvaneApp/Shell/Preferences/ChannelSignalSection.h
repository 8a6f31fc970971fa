// What kind of signal a channel carries, and in which unit it reads.
#pragma once

#include "Shell/Preferences/ChannelValues.h"

namespace TarvaneApp {

class Form;

void addChannelSignalSection(Form& form, const ChannelValues& channel);

}  // namespace TarvaneApp

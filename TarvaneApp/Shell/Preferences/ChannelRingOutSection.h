// Whether a channel warns of feedback, and how soon.
#pragma once

#include "Shell/Preferences/ChannelValues.h"

namespace TarvaneApp {

class Form;

void addChannelRingOutSection(Form& form, const ChannelValues& channel);

}  // namespace TarvaneApp

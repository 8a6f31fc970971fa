// Which device and inputs a channel is read from.
#pragma once

#include "Shell/Preferences/ChannelValues.h"

namespace TarvaneApp {

class FormSection;

/// The device; the one input, or the two of a stereo pair; and for the system's output a note.
void addChannelSourceRows(FormSection& section, const ChannelValues& channel);

}  // namespace TarvaneApp

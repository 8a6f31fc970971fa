// What a channel's own window shows, how it is arranged, and the way to it.
#pragma once

#include <functional>

#include "Shell/Preferences/ChannelValues.h"

namespace TarvaneApp {

class Form;

void addChannelWindowLayoutSection(Form& form, const ChannelValues& channel,
                                   std::function<void(const TarvaneKit::UUID&)> openChannelWindow);

}  // namespace TarvaneApp

// What a list of devices calls each of them.
#pragma once

#include <string>
#include <vector>

#include "AudioIO/AudioInputDevice.h"

namespace TarvaneApp {

/// By device: its name, and where several have the same, behind it what tells its uid from theirs:
/// a serial number or the port, "USB Mic (00A1)". It stays the same when they are plugged in in
/// another order. The title of devices with different uids is different.
std::vector<std::string> deviceTitles(const std::vector<TarvaneKit::AudioInputDevice>& devices);

}  // namespace TarvaneApp

#include "Shell/Preferences/InputChannelPicker.h"

#include <algorithm>

#include "Engine/MeterEngine.h"
#include "Settings/Observable.h"
#include "Shell/Preferences/FormHelp.h"

namespace TarvaneApp {

InputChannelPicker::InputChannelPicker(MeterEngine& engine, Setting<int>& input, QWidget* parent)
    : QComboBox(parent), engine_(engine), input_(input) {
    connect(this, &QComboBox::activated, this, [this] { input_.set(currentData().toInt()); });
    followAll(
        this, [this] { showInputs(); }, engine.selectedDeviceUID, engine.availableDevices, input);
}

// A stored input that the device doesn't have keeps its entry, so that the picker shows the
// setting.
void InputChannelPicker::showInputs() {
    const int inputs = std::max(engine_.channelCount(engine_.selectedDeviceUID()), 1);
    std::vector<ComboEntry> entries;
    for (int input = 0; input < inputs; ++input) {
        entries.push_back({QStringLiteral("Input %1").arg(input + 1), input});
    }
    if (input_() >= inputs) {
        entries.push_back({QStringLiteral("Input %1").arg(input_() + 1), input_()});
    }
    setEntries(*this, entries, input_());
}

}  // namespace TarvaneApp

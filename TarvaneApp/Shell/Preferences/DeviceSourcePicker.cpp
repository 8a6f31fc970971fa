#include "Shell/Preferences/DeviceSourcePicker.h"

#include <algorithm>
#include <cstddef>

#include "Engine/MeterEngine.h"
#include "Settings/Observable.h"
#include "Shell/Preferences/DeviceTitles.h"
#include "Shell/Preferences/FormHelp.h"

namespace TarvaneApp {

DeviceSourcePicker::DeviceSourcePicker(MeterEngine& engine, QWidget* parent)
    : QComboBox(parent), engine_(engine) {
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(24);
    connect(this, &QComboBox::activated, this, [this] {
        const QString uid = currentData().toString();
        engine_.selectedDeviceUID.set(uid.isEmpty() ? std::nullopt
                                                    : std::optional(uid.toStdString()));
    });
    followAll(
        this, [this] { showDevices(); }, engine.selectedDeviceUID, engine.availableDevices);
}

// The default input's entry has no uid.
void DeviceSourcePicker::showDevices() {
    const auto& devices = engine_.availableDevices();
    std::vector<ComboEntry> entries{{QStringLiteral("Default Input"), QString()}};
    const auto titles = deviceTitles(devices);
    for (std::size_t i = 0; i < devices.size(); ++i) {
        entries.push_back(
            {QString::fromStdString(titles[i]), QString::fromStdString(devices[i].uid)});
    }
    entries.push_back({QStringLiteral("System Output (what the Mac is playing)"),
                       QString::fromLatin1(TarvaneKit::systemOutputUID)});
    const QString current =
        QString::fromStdString(engine_.selectedDeviceUID().value_or(std::string()));
    if (std::ranges::find(entries, QVariant(current), &ComboEntry::value) == entries.end()) {
        entries.push_back({QStringLiteral("Unavailable Device"), current});
    }
    setEntries(*this, entries, current);
}

}  // namespace TarvaneApp

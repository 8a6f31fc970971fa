// The modules as windows of their own: what each window is called, how small it may be, and which
// of the placements it serves.
#pragma once

#include <QSize>
#include <QString>
#include <array>

#include "Records/LayoutEnums.h"

namespace TarvaneApp {

class MeterSettings;
template <class T>
class Setting;

enum class StandaloneModule { splMeter, rta, spectrogram, levelHistory };

/// In the order in which their windows open.
inline constexpr std::array standaloneModules{StandaloneModule::splMeter, StandaloneModule::rta,
                                              StandaloneModule::spectrogram,
                                              StandaloneModule::levelHistory};

/// What the module is called where it is chosen.
QString label(StandaloneModule module);
QString windowTitle(StandaloneModule module);
/// The name that the window is opened by, and that window managers know it by.
QString sceneIdentifier(StandaloneModule module);
QSize minimumWindowSize(StandaloneModule module);
Setting<ModulePlacement>& placement(MeterSettings& settings, StandaloneModule module);

}  // namespace TarvaneApp

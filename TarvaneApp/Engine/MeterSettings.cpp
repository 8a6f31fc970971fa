// The types of the engine's settings: how each is stored, compiled once.

#include "Engine/MeterEngine.h"
#include "Settings/SettingStorage.h"

namespace TarvaneApp {

using namespace TarvaneKit;

template class Setting<CalibrationProfile>;
template class Setting<GraphOrder>;
template class Setting<GraphOrientation>;
template class Setting<LevelHistoryPosition>;
template class Setting<LevelHistoryZoom>;
template class Setting<LoudnessColors>;
template class Setting<LoudnessMetric>;
template class Setting<LoudnessTarget>;
template class Setting<MetricMode>;
template class Setting<ModulePlacement>;
template class Setting<OctaveFraction>;
template class Setting<PanelLayout>;
template class Setting<RGBAColor>;
template class Setting<RingOutSensitivity>;
template class Setting<SpectrogramRanges>;
template class Setting<SpectrumViewMode>;
template class Setting<TimeWeighting>;
template class Setting<TrafficLightConfig>;
template class Setting<UUID>;
template class Setting<Weighting>;
template class Setting<bool>;
template class Setting<double>;
template class Setting<int>;
template class Setting<std::map<UUID, ChannelWindowLayout>>;
template class Setting<std::optional<UUID>>;
template class Setting<std::optional<std::string>>;
template class Setting<std::vector<ChannelConfig>>;
template class Setting<std::vector<SpectrogramColorPreset>>;
template class Setting<std::vector<SpectrogramColorStop>>;
template class Setting<std::vector<UUID>>;

}  // namespace TarvaneApp

#include "ChannelViews/ChannelLevelHistory.h"

#include "Engine/MeterChannel.h"
#include "Engine/MeterEngine.h"

namespace TarvaneApp {

using TarvaneKit::LoudnessMetric;
using TarvaneKit::SPLHistoryRecorder;
using TarvaneKit::SPLMetric;

LevelHistoryView channelLevelHistory(const MeterEngine& engine, const MeterChannel& channel) {
    const SPLHistoryRecorder& recorder = channel.levelHistory();
    const auto info = engine.channelInfo(channel.id);
    const bool isLoudness = info && info->measuresLoudness;
    const ActiveTrafficLight light = engine.activeTrafficLight(channel.id);
    LevelHistoryView view;
    view.recorder = &recorder;
    view.revision = channel.live.levelHistoryRevision;
    view.metricIndex = recorder.index(engine.historyMetric(channel.id)).value_or(-1);
    view.displayOffsetDB = engine.splReadoutDisplayOffsetDB(channel.id);
    view.unitLabel = QString::fromStdString(engine.levelUnitLabel(channel.id));
    view.trafficLight = light.config;
    view.trafficLightOffsetDB = light.offsetDB;
    if (isLoudness) {
        view.fixedDBRange = LevelHistoryView::loudnessAxis;
        if (engine.levelHistoryShowsMomentary()) {
            view.secondaryMetricIndex =
                recorder.index(SPLMetric::loudness(LoudnessMetric::momentary));
        }
    }
    view.lostAudio = &channel.live.lostAudio;
    view.lostAudioTotal = LostAudioTotal::of(channel.live.lostAudio);
    return view;
}

}  // namespace TarvaneApp

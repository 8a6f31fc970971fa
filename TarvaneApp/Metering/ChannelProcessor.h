// The audio side of one running channel: where a block enters the system's own logic.
//
// The capture thread of a source hands it blocks (`ingest`); each is appended to a short rolling
// buffer for the analysis and fed at once to the level meters, so that SPL, Peak, Leq and loudness
// see every sample, whatever the displays do. The main thread reads the meters; a tick's analysis
// takes what it needs on the analysis queue. Made anew at every start and never reused.
//
// `bufferLock_` guards the rolling buffers, the peak, the pause and the list of meters. It is
// held only for copying and appending: no meter and no analysis runs under it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

#include "Calibration/CalibrationProfile.h"
#include "Core/UUID.h"
#include "Metering/AnalysisSettings.h"
#include "Metering/ChannelAnalysis.h"
#include "Metering/ChannelFrame.h"
#include "Metering/LevelReadings.h"
#include "Metering/RollingBuffer.h"
#include "Metrics/LoudnessMeter.h"
#include "Metrics/LoudnessReadings.h"
#include "Metrics/SPLMetric.h"
#include "Metrics/SPLMetricEngine.h"

namespace TarvaneApp {

class ChannelProcessor {
  public:
    /// The id of the one Leq that the user sets up.
    static constexpr const char* userLeqID = "user";

    struct Configuration {
        double sampleRate = 48000.0;
        TarvaneKit::CalibrationProfile calibration;
        TarvaneKit::Weighting leqWeighting = TarvaneKit::Weighting::a;
        double leqIntegrationSeconds = 60.0;
        TarvaneKit::RingOutSensitivity ringOutSensitivity = TarvaneKit::RingOutSensitivity::normal;
    };

    /// Unconfigured: every block is dropped.
    ChannelProcessor(const TarvaneKit::UUID& id, bool isStereo);

    const TarvaneKit::UUID id;
    const bool isStereo;

    /// Opens `ingest`. Once, on the start queue; blocks may already be arriving.
    void configure(const Configuration& configuration);
    double sampleRate() const { return sampleRate_; }

    /// Takes one block, on the capture thread. `right` may be null: a stereo channel then has a
    /// silent right side; a mono channel ignores it. A sample that is not finite counts as 0.
    /// Doesn't allocate, unless a block is larger than any before and than 8192 frames.
    void ingest(const float* left, const float* right, int frameCount);
    /// So many frames are missing ahead of the next block. What follows such a hole first settles
    /// the meters' filters, so that its click counts into no reading. On the capture thread.
    void skip(std::int64_t frameCount);

    /// The current reading, both sides of a stereo channel combined: the higher peak, else the
    /// mean of the energies; a loudness is of the channel as a whole. Minus infinity when not
    /// configured or not measured.
    double value(const TarvaneKit::SPLMetric& metric) const;
    /// The same for several, all of one side read at one instant.
    std::vector<double> values(std::span<const TarvaneKit::SPLMetric> metrics) const;
    /// The metrics of the level history.
    static const std::vector<TarvaneKit::SPLMetric>& recordedMetrics();
    /// What the level history hasn't had yet: the current readings of `recordedMetrics()` where
    /// audio has come in, behind those that the display was too late for. What was taken before
    /// may be given back: its memory is used again. Main thread.
    LevelReadings::Taken takeReadings(LevelReadings::Taken recycled = {});

    /// Left and right; absent for a loudness, and unless stereo and configured.
    std::optional<std::vector<double>> sideValues(const TarvaneKit::SPLMetric& metric) const;
    /// Progress of the user's Leq, 0 to 1; 0 when not configured.
    double leqElapsedFraction() const;

    /// Loudness from now on, from nothing; or no longer. Nothing when not configured. Whether that
    /// is a change.
    bool setMeasuresLoudness(bool measures);
    /// Absent while the channel measures no loudness.
    std::optional<TarvaneKit::LoudnessReadings> loudnessReadings() const;
    /// Starts integrated loudness, range and maxima anew.
    void resetLoudness();

    /// While true, blocks are dropped before anything sees them.
    void setDropsIncomingAudio(bool drops);
    /// Takes up blocks again after a pause, with nothing left of what came before it.
    void resumeAfterPause();

    /// Each reaches all meters of the channel, from the main thread; nothing when not configured.
    void setCalibration(const TarvaneKit::CalibrationProfile& calibration);
    void configureLeq(TarvaneKit::Weighting weighting, double integrationSeconds);
    void resetPeakDetectors();

    bool isConfigured() const;

    /// One tick's analysis, on the analysis queue; one call at a time. A frame that is no longer
    /// needed may be given back: its arrays are used again, and nothing of it is read.
    ChannelFrame analyze(const AnalysisSettings& settings, const ChannelAnalysisRequest& request,
                         ChannelFrame recycled = {});

    /// Samples waiting for the analysis.
    int accumulatedCount() const;
    int accumulatedRightCount() const;

  private:
    using LevelMeter = TarvaneKit::SPLMetricEngine;

    struct LevelMeters {
        LevelMeter* left = nullptr;
        LevelMeter* right = nullptr;
    };
    /// The meters as of now. They live as long as the processor once they are there.
    LevelMeters levelMeters() const;
    std::shared_ptr<TarvaneKit::LoudnessMeter> loudnessMeter() const;
    /// Of `recordedMetrics()`, on the capture thread.
    void putReading(const LevelMeters& meters, const TarvaneKit::LoudnessMeter* loudness);
    void measure(const LevelMeters& meters, TarvaneKit::LoudnessMeter* loudness,
                 std::span<const float> left, std::span<const float> right, bool hasRight);
    void settle(const LevelMeters& meters, TarvaneKit::LoudnessMeter* loudness,
                std::span<const float> left, std::span<const float> right);
    /// `right` is the right side's scratch; without one it may be empty.
    static void read(std::span<const TarvaneKit::SPLMetric> metrics, const LevelMeters& meters,
                     const TarvaneKit::LoudnessMeter* loudness, std::span<double> result,
                     std::span<double> right);

    double sampleRate_ = 48000.0;

    mutable std::mutex bufferLock_;
    RollingBuffer accumulated_;
    RollingBuffer accumulatedRight_;
    float peakSinceLastTick_ = 0.0F;
    bool dropsIncomingAudio_ = false;
    std::unique_ptr<LevelMeter> leftMeter_;
    std::unique_ptr<LevelMeter> rightMeter_;
    // Shared with a block under way on the capture thread.
    std::shared_ptr<TarvaneKit::LoudnessMeter> loudnessMeter_;
    bool isConfigured_ = false;

    // The loudness meter dropped last stays, so that the capture thread is never the one to free
    // it.
    std::shared_ptr<TarvaneKit::LoudnessMeter> droppedLoudnessMeter_;

    std::unique_ptr<LevelReadings> readings_;  // there once configured

    // Capture thread only.
    std::vector<float> leftBlock_;
    std::vector<float> rightBlock_;
    std::vector<double> reading_;
    std::vector<double> rightReading_;
    std::size_t settlingFrames_ = 0;  // that the filters alone still hear
    std::size_t heardFrames_ = 0;     // by the meters since the last hole

    // Analysis queue only, once configured.
    std::unique_ptr<ChannelAnalysis> analysis_;
};

}  // namespace TarvaneApp

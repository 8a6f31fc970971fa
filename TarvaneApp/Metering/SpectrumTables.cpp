#include "Metering/SpectrumTables.h"

#include <map>
#include <mutex>
#include <utility>

#include "Metering/ChannelAnalysis.h"

namespace TarvaneApp {

using TarvaneKit::OctaveBandAnalyzer;
using TarvaneKit::OctaveBands;
using TarvaneKit::OctaveFraction;
using TarvaneKit::OctaveTilt;

namespace {

constexpr double lowestHz = 20.0;
constexpr double highestHz = 20000.0;

// One of each kind, for as long as somebody has it.
template <class Key, class Tables>
class Shared {
  public:
    template <class Make>
    std::shared_ptr<const Tables> get(const Key& key, Make make) {
        const std::lock_guard hold(lock_);
        std::weak_ptr<const Tables>& known = tables_[key];
        std::shared_ptr<const Tables> found = known.lock();
        if (!found) {
            known = found = make();
        }
        return found;
    }

  private:
    std::mutex lock_;
    std::map<Key, std::weak_ptr<const Tables>> tables_;
};

}  // namespace

SpectrumTables::SpectrumTables(double sampleRate)
    : lineTilt(ChannelAnalysis::fftSize / 2, ChannelAnalysis::fftSize, sampleRate),
      spectrogramColumns(TarvaneKit::spectrogramFrequencies(), sampleRate,
                         ChannelAnalysis::spectrogramFFTSize) {
    const OctaveTilt tilt(ChannelAnalysis::spectrogramFFTSize / 2,
                          ChannelAnalysis::spectrogramFFTSize, sampleRate);
    for (const std::int32_t line : spectrogramColumns.lines()) {
        spectrogramTiltDB.push_back(tilt.levelsDB()[static_cast<std::size_t>(line)]);
    }
}

std::shared_ptr<const SpectrumTables> sharedSpectrumTables(double sampleRate) {
    static Shared<double, SpectrumTables> shared;
    return shared.get(sampleRate,
                      [&] { return std::make_shared<const SpectrumTables>(sampleRate); });
}

std::shared_ptr<const OctaveBandAnalyzer> sharedBandAnalyzer(OctaveFraction fraction,
                                                             double sampleRate) {
    static Shared<std::pair<OctaveFraction, double>, OctaveBandAnalyzer> shared;
    return shared.get({fraction, sampleRate}, [&] {
        return std::make_shared<const OctaveBandAnalyzer>(
            OctaveBands::standardBands(fraction, lowestHz, highestHz), ChannelAnalysis::fftSize,
            sampleRate);
    });
}

}  // namespace TarvaneApp

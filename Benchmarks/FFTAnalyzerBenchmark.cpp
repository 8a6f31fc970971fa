// One spectrum: window, transform, magnitudes, on every instruction set of this machine; beside
// FFTW's real transform alone, which has neither a window nor magnitudes to take.

#include <benchmark/benchmark.h>
#include <fftw3.h>
#include <fmt/format.h>

#include <map>
#include <string>
#include <vector>

#include "DSP/FFTAnalyzer.h"
#include "DSP/Kernels/VectorTarget.h"
#include "Support/Signals.h"
#include "TickCost.h"

namespace TarvaneBenchmarks {
namespace {

using TarvaneKit::FFTAnalyzer;
using TarvaneKit::VectorTarget;

// Window, real transform and magnitudes with FFTW on a 2.95 GHz AVX-512 cloud machine.
const std::map<int, double> microsecondsToBeat = {{4096, 5.8}, {8192, 12.3}};

void magnitudeSpectrum(benchmark::State& state, const VectorTarget& target) {
    TarvaneKit::useVectorTarget(target);
    const int size = static_cast<int>(state.range(0));
    const auto analyzer = FFTAnalyzer::create(size, FFTAnalyzer::WindowType::hann).value();
    const auto samples = TarvaneKit::Testing::whiteNoise(size);
    std::vector<float> magnitudes(samples.size() / 2);
    measureTicks(state, [&] { analyzer.magnitudeSpectrum(samples, magnitudes); });
    TarvaneKit::useBestVectorTarget();
}

void transformAlone(benchmark::State& state) {
    const int size = static_cast<int>(state.range(0));
    const auto samples = TarvaneKit::Testing::whiteNoise(size);
    float* in = fftwf_alloc_real(samples.size());
    fftwf_complex* out = fftwf_alloc_complex(samples.size());
    fftwf_plan plan = fftwf_plan_dft_r2c_1d(size, in, out, FFTW_MEASURE);
    std::copy(samples.begin(), samples.end(), in);
    measureTicks(state, [&] {
        fftwf_execute(plan);
        benchmark::ClobberMemory();
    });
    fftwf_destroy_plan(plan);
    fftwf_free(out);
    fftwf_free(in);
}

const bool isRegistered = [] {
    const std::string plain = "FFTW/real transform alone";
    benchmark::RegisterBenchmark(plain.c_str(), transformAlone)->Arg(4096)->Arg(8192);
    for (const VectorTarget& target : TarvaneKit::availableVectorTargets()) {
        const std::string name = "FFTAnalyzer/" + target.name;
        auto* spectrum = benchmark::RegisterBenchmark(name.c_str(), magnitudeSpectrum, target);
        for (const int size : {4096, 8192}) {
            spectrum->Arg(size);
            compareCost({fmt::format("{}/{}", name, size), fmt::format("{}/{}", plain, size),
                         nsPerFrame(microsecondsToBeat.at(size))});
        }
    }
    return true;
}();

}  // namespace
}  // namespace TarvaneBenchmarks

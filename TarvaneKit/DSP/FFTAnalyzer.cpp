// FFTW does the complex transform of half the length; the kernel beside it makes that a real one.
// FFTW's planner is one for the process and not made for threads, so plans are made under one
// mutex, once per size, and kept until the process ends. Executing a plan on other arrays is
// safe from any thread, given the alignment that it was planned with.

#include "DSP/FFTAnalyzer.h"

#include <fftw3.h>

#include <cmath>
#include <map>
#include <mutex>
#include <numbers>
#include <numeric>

#include "Core/AlignedVector.h"
#include "Core/Contract.h"
#include "DSP/Kernels/RealSpectrumKernel.h"

namespace TarvaneKit {

namespace {

using Values = AlignedVector<float>;

std::size_t asSize(int count) {
    return static_cast<std::size_t>(count);
}

fftwf_complex* asComplex(Values& values) {
    return reinterpret_cast<fftwf_complex*>(values.data());
}

struct Workspace {
    Values windowed;
    Values transformed;

    void makeRoom(int fftSize) {
        if (windowed.size() < asSize(fftSize)) {
            windowed.resize(asSize(fftSize));
            transformed.resize(asSize(fftSize));
        }
    }
};

Workspace& workspaceOfThisThread() {
    thread_local Workspace workspace;
    return workspace;
}

Values hannWindow(int count) {
    Values window(asSize(count));
    for (int n = 0; n < count; ++n) {
        window[asSize(n)] =
            static_cast<float>(0.5 * (1.0 - std::cos(2.0 * std::numbers::pi * n / count)));
    }
    return window;
}

Values blackmanHarrisWindow(int count) {
    const float denominator = count < 3 ? 1.0F : static_cast<float>(count - 1);
    Values window(asSize(count));
    for (int n = 0; n < count; ++n) {
        const float x = 2.0F * std::numbers::pi_v<float> * static_cast<float>(n) / denominator;
        window[asSize(n)] = 0.35875F - 0.48829F * std::cos(x) + 0.14128F * std::cos(2.0F * x) -
                            0.01168F * std::cos(3.0F * x);
    }
    return window;
}

Values makeWindow(int count, FFTAnalyzer::WindowType type) {
    return type == FFTAnalyzer::WindowType::hann ? hannWindow(count) : blackmanHarrisWindow(count);
}

}  // namespace

struct FFTAnalyzer::Transform {
    fftwf_plan plan = nullptr;
    Values cosines;
    Values sines;

    explicit Transform(int fftSize) {
        const int half = fftSize / 2;
        if (half == 0) {
            return;
        }
        Workspace planning;
        planning.makeRoom(fftSize);
        plan =
            fftwf_plan_dft_1d(half, asComplex(planning.windowed), asComplex(planning.transformed),
                              FFTW_FORWARD, FFTW_MEASURE | FFTW_DESTROY_INPUT);
        for (int k = 1; k <= half / 2; ++k) {
            const double angle = 2.0 * std::numbers::pi * k / fftSize;
            cosines.push_back(static_cast<float>(std::cos(angle)));
            sines.push_back(static_cast<float>(std::sin(angle)));
        }
    }
};

struct FFTAnalyzer::Tables {
    int fftSize;
    const Transform& transform;
    Values window;
    float windowNormalization;

    Tables(int size, WindowType type, const Transform& transformOfSize)
        : fftSize(size), transform(transformOfSize), window(makeWindow(size, type)) {
        const auto sum = static_cast<float>(std::accumulate(window.begin(), window.end(), 0.0));
        windowNormalization = sum > 0.0F ? 2.0F / sum : 1.0F;
    }
};

// All that was ever planned. It is not destroyed: a thread may still be analysing when the
// process ends.
struct FFTAnalyzer::Registry {
    std::mutex planning;
    std::map<int, Transform> transforms;
    std::map<std::pair<int, WindowType>, std::shared_ptr<const Tables>> tables;

    static Registry& shared() {
        static Registry& registry = *new Registry;
        return registry;
    }
};

std::optional<FFTAnalyzer> FFTAnalyzer::create(int fftSize, WindowType windowType) {
    if (fftSize < 1 || (fftSize & (fftSize - 1)) != 0) {
        return std::nullopt;
    }
    Registry& registry = Registry::shared();
    const std::lock_guard hold(registry.planning);
    const Transform& transform = registry.transforms.try_emplace(fftSize, fftSize).first->second;
    if (fftSize > 1 && transform.plan == nullptr) {
        return std::nullopt;
    }
    auto& found = registry.tables[{fftSize, windowType}];
    if (!found) {
        found = std::make_shared<const Tables>(fftSize, windowType, transform);
    }
    return FFTAnalyzer(found);
}

int FFTAnalyzer::fftSize() const {
    return tables_->fftSize;
}

int FFTAnalyzer::binCount() const {
    return tables_->fftSize / 2;
}

std::span<const float> FFTAnalyzer::window() const {
    return tables_->window;
}

float FFTAnalyzer::windowNormalization() const {
    return tables_->windowNormalization;
}

void FFTAnalyzer::magnitudeSpectrum(std::span<const float> samples,
                                    std::span<float> magnitudes) const {
    const int size = fftSize();
    TARVANE_PRECONDITION(size > 1);
    TARVANE_PRECONDITION(samples.size() == asSize(size));
    TARVANE_PRECONDITION(magnitudes.size() == asSize(binCount()));
    Workspace& workspace = workspaceOfThisThread();
    workspace.makeRoom(size);
    applyWindow(samples, tables_->window, workspace.windowed);
    const Transform& transform = tables_->transform;
    fftwf_execute_dft(transform.plan, asComplex(workspace.windowed),
                      asComplex(workspace.transformed));
    packedMagnitudes({.values = workspace.transformed.data(),
                      .cosines = transform.cosines.data(),
                      .sines = transform.sines.data(),
                      .count = binCount()},
                     tables_->windowNormalization, magnitudes.data());
}

std::vector<float> FFTAnalyzer::magnitudeSpectrum(std::span<const float> samples) const {
    std::vector<float> magnitudes(asSize(binCount()));
    magnitudeSpectrum(samples, magnitudes);
    return magnitudes;
}

double FFTAnalyzer::binFrequency(int bin, double sampleRate) const {
    return sampleRate * bin / fftSize();
}

}  // namespace TarvaneKit

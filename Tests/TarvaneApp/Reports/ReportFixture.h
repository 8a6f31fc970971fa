// Sessions made in a moment, two hours east of Greenwich: they begin on 2026-03-01 at 21:30:00.
#pragma once

#include <QCoreApplication>
#include <ctime>
#include <limits>
#include <ostream>

#include "Reports/LevelHistoryReport.h"
#include "TarvaneApp/Engine/EngineFixture.h"

/// What a failed comparison prints.
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << text.toStdString();
}

namespace TarvaneTests {

inline constexpr double silence = -std::numeric_limits<double>::infinity();

class ReportFixture : public EngineFixture {
  protected:
    ReportFixture() {
        qputenv("TZ", "EAST-2");
        tzset();
        QCoreApplication::setApplicationVersion(QStringLiteral("7.8.9"));
    }

    /// A 1 kHz sine at that peak level, to the main input's device. All weightings read its RMS,
    /// which is 3.01 dB lower.
    void play(double seconds, double peakDBFS) {
        const std::vector<std::vector<float>> block{
            sine(1000.0, std::pow(10.0, peakDBFS / 20.0), 4800)};
        for (int n = 0; n < std::lround(seconds * 10.0); ++n) {
            clock.advance(0.1);
            audio.feed("", block);
            tick();
        }
    }

    std::optional<TarvaneApp::LevelHistoryReport> make(
        const TarvaneKit::UUID& id = TarvaneKit::UUID::main()) {
        return TarvaneApp::LevelHistoryReport::make(*engine, id, clock.now());
    }

    /// The value of a row of the main channel's report; "no row" where there is none.
    QString row(const QString& label) {
        const auto report = make();
        for (const auto& section : report->sections) {
            for (const auto& row : section.rows) {
                if (row.label == label) {
                    return row.value;
                }
            }
        }
        return QStringLiteral("no row");
    }

    void calibrate(double offsetDB) {
        TarvaneKit::CalibrationProfile profile;
        profile.reference.emplace();
        profile.reference->offsetDB = offsetDB;
        engine->calibration.set(profile);
    }
};

}  // namespace TarvaneTests

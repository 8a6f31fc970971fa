// How one channel turns digital level into sound pressure level.
//
// A channel is calibrated by a reference tone or by its microphone file's Sens Factor; the
// reference tone always wins. The record holds data and arithmetic only: the engine fills and
// stores it, the meters and the analysis read their own copies.
#pragma once

#include <filesystem>
#include <numbers>
#include <optional>
#include <string>

#include "Calibration/MicCalFile.h"
#include "Core/Coding.h"
#include "Core/Date.h"

namespace TarvaneKit {

enum class CalibrationSource { none, micCalFileSensFactor, referenceTone };

/// The gain of an input as its device reports it.
struct InputGainState {
    double currentDB = 0.0;
    double maxDB = 0.0;
    double minDB = 0.0;
    /// One gain for all inputs of the device: changing it moves the other channels too.
    bool isShared = false;

    /// An unknown minimum is taken as the smaller of maximum and current gain.
    static InputGainState create(double currentDB, double maxDB, std::optional<double> minDB,
                                 bool isShared);

    bool operator==(const InputGainState&) const = default;
};

/// One calibration against a tone of known level.
struct ReferenceCalibration {
    double offsetDB = 0.0;  ///< known SPL minus raw measured level
    std::optional<std::string> referenceDeviceUID;
    std::optional<std::string> referenceDeviceName;
    Date calibratedAt;
    /// Absent when the device reported no gain.
    std::optional<double> inputGainDB;

    struct Measurement {
        double measuredDBFS = 0.0;
        double knownSPL = 0.0;
        std::optional<std::string> deviceUID;
        std::optional<std::string> deviceName;
        std::optional<double> inputGainDB;
        Date now;
    };
    static ReferenceCalibration fromReference(const Measurement& measurement);

    bool operator==(const ReferenceCalibration&) const = default;
};

struct CalibrationProfile {
    std::string name = "Default";
    std::optional<MicCalFile> micCalFile;
    std::optional<ReferenceCalibration> reference;
    /// The SPL that the file's Sens Factor was measured at.
    double micCalFileReferenceSPL = 94.0;
    /// Live state of the input; never stored.
    std::optional<InputGainState> inputGain;

    /// 20 log10(2): the fixed step from a Sens Factor's AES17 sine reference to this meter's scale.
    static constexpr double aes17SineReferenceCorrectionDB =
        20.0 * (std::numbers::ln2 * std::numbers::log10e);

    /// `referenceTone` with a reference; else `micCalFileSensFactor` with a file that has a
    /// Sens Factor; else `none`.
    CalibrationSource calibrationSource() const;

    /// dB to add to a raw level to give dB SPL; 0 when uncalibrated.
    double broadbandOffsetDB() const { return broadbandOffsetDB(inputGain); }
    /// The same with the input at that gain.
    double broadbandOffsetDB(const std::optional<InputGainState>& atGain) const;

    /// The part of `broadbandOffsetDB` that makes up for a gain changed since calibration.
    double inputGainCompensationDB() const;

    /// The gain at which the calibration in force was made, as far as it is known. A Sens
    /// Factor counts as measured at maximum gain.
    std::optional<double> calibratedInputGainDB() const;

    /// True when a reference calibration was made on another device than the given one. False
    /// where either identifier is unknown: a microphone file is never stale.
    bool isStale(const std::optional<std::string>& activeDeviceUID) const;

    /// dB to add to a spectrum's line at that frequency; 0 without a microphone file.
    double micCorrectionDB(double frequencyHz) const;

    /// Takes the microphone file at `path`. Throws a `TextFileError` or a
    /// `MicCalFile::ParseError`, and then keeps the file it had.
    void loadMicCalFile(const std::filesystem::path& path);

    bool operator==(const CalibrationProfile&) const = default;
};

template <>
struct Coding<ReferenceCalibration> {
    static constexpr auto keys = std::tuple{
        required("offsetDB", &ReferenceCalibration::offsetDB),
        optional("referenceDeviceUID", &ReferenceCalibration::referenceDeviceUID),
        optional("referenceDeviceName", &ReferenceCalibration::referenceDeviceName),
        required("calibratedAt", &ReferenceCalibration::calibratedAt),
        optional("inputGainDB", &ReferenceCalibration::inputGainDB),
    };
};

template <>
struct Coding<CalibrationProfile> {
    static constexpr auto keys = std::tuple{
        required("name", &CalibrationProfile::name),
        optional("micCalFile", &CalibrationProfile::micCalFile),
        optional("reference", &CalibrationProfile::reference),
        required("micCalFileReferenceSPL", &CalibrationProfile::micCalFileReferenceSPL),
    };
};

}  // namespace TarvaneKit

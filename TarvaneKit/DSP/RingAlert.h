// One sighting of a ring: which note it is, and the notch filter that would tame it. Made by the
// ring-out detector, shown by the spectrum and the readouts.
#pragma once

#include "Core/Date.h"
#include "Core/UUID.h"
#include "DSP/MusicalNote.h"

namespace TarvaneKit {

struct RingAlert {
    /// New for every alert that is made, also for the same ring a frame later.
    UUID id;
    double frequencyHz;
    /// The nearest one, A4 at 440 Hz.
    MusicalNote note;
    /// -12 to -3.
    double suggestedCutDB;
    double suggestedQ;
    /// Measured between the -3 dB points, or 4 bins where it can't be measured.
    double bandwidthHz;
    /// Of the frame.
    Date date;

    bool operator==(const RingAlert&) const = default;
};

}  // namespace TarvaneKit

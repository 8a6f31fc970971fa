// A frequency as the nearest note of the equal-tempered scale, with how far it lies off: what a
// sound engineer can say aloud of a ring.
#pragma once

#include <optional>
#include <string>

#include "Core/Coding.h"

namespace TarvaneKit {

struct MusicalNote {
    /// Note and octave, "A4"; sharps only.
    std::string name;
    /// A4 is 69, middle C ("C4") is 60.
    int midiNumber = 0;
    /// −50 to 50, positive when the frequency is sharp of the note.
    double centsOffset = 0.0;
    /// The exact frequency of the note.
    double referenceFrequencyHz = 0.0;

    bool operator==(const MusicalNote&) const = default;
};

namespace MusicalNoteNaming {

/// ISO 16.
inline constexpr double a4Frequency = 440.0;

/// The note nearest to a frequency, with A4 tuned to `a4` Hz. A frequency halfway between two
/// notes belongs to the higher one. Empty when either argument is not above 0, or their ratio is
/// beyond all numbers.
std::optional<MusicalNote> nearestNote(double frequencyHz, double a4 = a4Frequency);

}  // namespace MusicalNoteNaming

template <>
struct Coding<MusicalNote> {
    static constexpr auto keys = std::tuple{
        required("name", &MusicalNote::name),
        required("midiNumber", &MusicalNote::midiNumber),
        required("centsOffset", &MusicalNote::centsOffset),
        required("referenceFrequencyHz", &MusicalNote::referenceFrequencyHz),
    };
};

}  // namespace TarvaneKit

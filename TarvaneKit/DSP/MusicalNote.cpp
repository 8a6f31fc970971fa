#include "DSP/MusicalNote.h"

#include <array>
#include <cmath>
#include <string_view>

namespace TarvaneKit::MusicalNoteNaming {

namespace {

constexpr int notesPerOctave = 12;
constexpr int a4Number = 69;  // of MIDI

constexpr std::array<std::string_view, notesPerOctave> classNames{
    "C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B"};

// The octave number truncates towards zero, so that the eleven notes below number 0 carry the
// octave of those above it. They lie under 8.2 Hz, beneath hearing.
std::string nameOf(int midiNumber) {
    const int remainder = midiNumber % notesPerOctave;
    const int pitchClass = remainder < 0 ? remainder + notesPerOctave : remainder;
    const int octave = midiNumber / notesPerOctave - 1;
    return std::string(classNames[static_cast<std::size_t>(pitchClass)]) + std::to_string(octave);
}

}  // namespace

std::optional<MusicalNote> nearestNote(double frequencyHz, double a4) {
    if (!(frequencyHz > 0.0) || !(a4 > 0.0)) {
        return std::nullopt;
    }
    const double exact = notesPerOctave * std::log2(frequencyHz / a4) + a4Number;
    if (!std::isfinite(exact)) {
        return std::nullopt;
    }
    const double nearest = std::round(exact);
    const int midiNumber = static_cast<int>(nearest);
    return MusicalNote{
        .name = nameOf(midiNumber),
        .midiNumber = midiNumber,
        .centsOffset = (exact - nearest) * 100.0,
        .referenceFrequencyHz = a4 * std::exp2((nearest - a4Number) / notesPerOctave)};
}

}  // namespace TarvaneKit::MusicalNoteNaming

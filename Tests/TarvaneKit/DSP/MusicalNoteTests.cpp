#include "DSP/MusicalNote.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <limits>

namespace TarvaneKit {
namespace MusicalNoteTests {

using MusicalNoteNaming::nearestNote;

TEST(MusicalNote, concertPitchIsA4) {
    EXPECT_EQ(
        nearestNote(440.0),
        (MusicalNote{
            .name = "A4", .midiNumber = 69, .centsOffset = 0.0, .referenceFrequencyHz = 440.0}));
}

TEST(MusicalNote, middleCIsC4) {
    const auto note = nearestNote(261.626);
    ASSERT_TRUE(note);
    EXPECT_EQ(note->name, "C4");
    EXPECT_EQ(note->midiNumber, 60);
    // Nine semitones below A4.
    EXPECT_DOUBLE_EQ(note->referenceFrequencyHz, 440.0 * std::pow(2.0, -9.0 / 12.0));
    EXPECT_NEAR(note->centsOffset, 0.0, 0.01);
}

TEST(MusicalNote, halfwayBetweenTwoNotesIsTheHigherOneFiftyCentsFlat) {
    // 12 log2(f/a4) is exactly 0.5 only where the arithmetic gives it, so the tuning is searched
    // upward from the half tone until the ratio's logarithm reaches it.
    double frequencyHz = 440.0 * std::exp2(0.5 / 12.0);
    while (12.0 * std::log2(frequencyHz / 440.0) + 69.0 < 69.5) {
        frequencyHz = std::nextafter(frequencyHz, 1000.0);
    }
    const auto note = nearestNote(frequencyHz);
    ASSERT_TRUE(note);
    EXPECT_EQ(note->name, "A#4");
    EXPECT_NEAR(note->centsOffset, -50.0, 1e-9);
    const auto below = nearestNote(440.0 * std::exp2(0.4999 / 12.0));
    EXPECT_EQ(below->name, "A4");
    EXPECT_NEAR(below->centsOffset, 49.99, 1e-9);
}

TEST(MusicalNote, thereIsNoneForWhatIsNotAbove0) {
    EXPECT_FALSE(nearestNote(0.0));
    EXPECT_FALSE(nearestNote(-440.0));
    EXPECT_FALSE(nearestNote(440.0, 0.0));
    EXPECT_FALSE(nearestNote(440.0, -440.0));
    EXPECT_FALSE(nearestNote(std::numeric_limits<double>::quiet_NaN()));
    EXPECT_FALSE(nearestNote(440.0, std::numeric_limits<double>::quiet_NaN()));
    EXPECT_FALSE(nearestNote(std::numeric_limits<double>::infinity()));
    EXPECT_FALSE(nearestNote(1e300, 1e-300));
    EXPECT_FALSE(nearestNote(1e-300, 1e300));
}

TEST(MusicalNote, theOctaveOfNegativeNumbersIsTruncatedTowardsZero) {
    const auto note = nearestNote(7.5);
    ASSERT_TRUE(note);
    EXPECT_EQ(note->midiNumber, -1);
    EXPECT_EQ(note->name, "B-1");
}

TEST(MusicalNote, namesTheTwelveClassesWithSharps) {
    const std::array names{"C4",  "C#4", "D4",  "D#4", "E4",  "F4",
                           "F#4", "G4",  "G#4", "A4",  "A#4", "B4"};
    for (int i = 0; i < 12; ++i) {
        const auto note = nearestNote(440.0 * std::exp2((60 + i - 69) / 12.0));
        EXPECT_EQ(note->name, names[static_cast<std::size_t>(i)]);
        EXPECT_EQ(note->midiNumber, 60 + i);
    }
    EXPECT_EQ(nearestNote(27.5)->name, "A0");
    EXPECT_EQ(nearestNote(4186.009)->name, "C8");
}

TEST(MusicalNote, followsTheTuning) {
    EXPECT_EQ(nearestNote(432.0, 432.0)->centsOffset, 0.0);
    // 1200 log2(442/440) cents.
    EXPECT_NEAR(nearestNote(442.0)->centsOffset, 1200.0 * std::log2(442.0 / 440.0), 1e-9);
}

RC_GTEST_PROP(MusicalNoteLaws, noteAndOffsetGiveTheFrequencyBack, ()) {
    const double octaves = *rc::gen::inRange(-6000, 6000) * 0.001;
    const double a4 = *rc::gen::inRange(4000, 4800) * 0.1;
    const double frequencyHz = a4 * std::exp2(octaves);
    const auto note = nearestNote(frequencyHz, a4);
    RC_ASSERT(note.has_value());
    RC_ASSERT(std::abs(note->centsOffset) <= 50.0);
    const double back = note->referenceFrequencyHz * std::exp2(note->centsOffset / 1200.0);
    RC_ASSERT(std::abs(back / frequencyHz - 1.0) < 1e-12);
}

}  // namespace MusicalNoteTests
}  // namespace TarvaneKit

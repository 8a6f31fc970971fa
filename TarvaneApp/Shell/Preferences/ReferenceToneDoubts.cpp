#include "Shell/Preferences/ReferenceToneDoubts.h"

namespace TarvaneApp {

using TarvaneKit::ReferenceTone;
using TarvaneKit::Weighting;

namespace {

// Of IEC 61672-1, table 3: A at 250 Hz. C and Z have none there, and all three none at 1 kHz.
constexpr double weightingOfPistonphoneDB = -8.6;
constexpr double pistonphoneHz = 250.0;

QString frequencyDoubt(const ReferenceTone& tone) {
    if (!tone.frequencyHz) {
        return QStringLiteral("No tone stands out: calibrators play 1 kHz, pistonphones 250 Hz.");
    }
    return QStringLiteral(
               "The strongest tone is at %1 Hz: calibrators play 1 kHz, pistonphones 250 Hz.")
        .arg(*tone.frequencyHz, 0, 'f', 0);
}

}  // namespace

QStringList referenceToneDoubts(const HeardTone& heard) {
    QStringList doubts;
    if (heard.isClipping) {
        doubts << QStringLiteral("The input is clipping: lower its gain before calibrating.");
    }
    if (!heard.tone.isSteady()) {
        doubts << QStringLiteral(
                      "The tone isn't steady: its level moved by %1 dB within %2 seconds.")
                      .arg(heard.tone.spreadDB, 0, 'f', 1)
                      .arg(ReferenceTone::observedSeconds, 0, 'f', 0);
    }
    const auto nominalHz = heard.tone.calibratorFrequencyHz();
    if (!nominalHz) {
        doubts << frequencyDoubt(heard.tone);
    } else if (*nominalHz == pistonphoneHz && heard.weighting == Weighting::a) {
        doubts << QStringLiteral(
                      "A weighting reads 250 Hz %1 dB low: choose C or Z weighting for this "
                      "channel before calibrating.")
                      .arg(-weightingOfPistonphoneDB, 0, 'f', 1);
    }
    if (heard.metric == MetricMode::peak) {
        doubts << QStringLiteral(
            "This channel's meter shows Peak, which is 3 dB above the level of a tone: choose SPL "
            "before calibrating.");
    }
    return doubts;
}

}  // namespace TarvaneApp

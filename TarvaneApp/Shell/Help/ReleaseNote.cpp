#include "Shell/Help/ReleaseNote.h"

namespace TarvaneApp {

const std::vector<ReleaseNote>& releaseNotes() {
    static const std::vector<ReleaseNote> notes{
        {"1.3.1",
         "October 8, 2026",
         {"Help for every part of the program, with a search: **Help > Tarvane Help**.",
          "**Calibrate** shows the level and the offset it will give before you press it, and "
          "warns of a tone that isn't steady or that no calibrator plays.",
          "An extra channel that can't be opened is told once, and the others go on.",
          "**F11** shows the level alone over the whole screen. Where the desktop has a tray, an "
          "icon there shows whether Tarvane meters.",
          "Audio that the system lost is marked under the reading and in the history. A "
          "measurement that was cut short is told at the next launch."}},
        {"1.3.0",
         "October 7, 2026",
         {"**Profiles**: the whole setup under a name, a click away in the toolbar, in a file that "
          "you can carry to another computer, with or without its inputs and calibrations.",
          "**Export Level History**: a PDF with a page for each channel, a PNG image or plain "
          "text, with levels and statistics.",
          "Color ramps of the spectrogram can be edited, and saved as presets."}},
        {"1.2.0",
         "October 3, 2026",
         {"Program loudness in LUFS after ITU-R BS.1770 and EBU R128: momentary, short-term, "
          "integrated, loudness range and true peak, against a target of your choice.",
          "**Level History**: the whole session as a graph, with its loudest and quietest moments.",
          "System Output measures what the computer is playing; digital feeds read in dBFS or LUFS "
          "and need no calibration."}},
        {"1.1.1",
         "September 30, 2026",
         {"A reference calibration remembers the input gain. Where the device reports its gain, "
          "the level in dB SPL stays right when it is turned afterwards.",
          "A device that is unplugged while metering is told once; **Start** works again when it "
          "is back."}},
        {"1.1.0",
         "September 30, 2026",
         {"**Channels**: any number of inputs on any devices at the same time, each with its own "
          "calibration, color and display.",
          "**Stereo Pairs** read two inputs as one source, with L and R beside the combined level.",
          "Every module can have a window of its own, and every channel one with all its modules.",
          "Other channels can be laid over the analyzer."}},
        {"1.0.0",
         "Initial release",
         {"Sound level with A, C and Z weighting, Fast and Slow after IEC 61672-1; Peak, and an "
          "Leq with a weighting and a length of its own; with Min and Max.",
          "Real-time analyzer from full octave to 1/48 octave, with peak hold and target curves, "
          "and a scrolling spectrogram.",
          "Calibration by a microphone's calibration file or by a reference tone.",
          "Ring-out alerts that name the frequency and note of feedback, and traffic-light colors "
          "for the level."}},
    };
    return notes;
}

}  // namespace TarvaneApp

#include "Shell/Help/Book/HelpChapters.h"

namespace TarvaneApp {

namespace {

using namespace HelpBlocks;

HelpTopic splMeter() {
    return {
        "SPL Meter",
        "speedometer",
        "The big number: current level, with Min and Max.",
        {
            Paragraph{"The large value is the level now, in the color of the **Traffic Light**. "
                      "Under it stands what it is, such as “SPL A Slow”, and its unit: nothing "
                      "behind it means dB SPL, “(dBFS, uncalibrated)” that the channel isn't "
                      "calibrated yet. A dash is no value yet. A number near −240 is digital "
                      "silence: nothing at all reaches the meter."},
            Heading{"What it measures"},
            Bullets{{
                "**SPL**: the time-weighted level. **A** for what people hear and most limits at a "
                "venue, **C** where bass counts, **Z** for everything alike. **Fast** (125 ms) "
                "follows the music, **Slow** (1 s) is what you note down; both as IEC 61672-1 "
                "defines them. **Infinite** averages everything since start, **None** shows each "
                "block as it comes.",
                "**Peak**: the highest sample of the last second, through the weighting. A limit "
                "such as 140 dB C peak is read here, and not in **SPL**: the peak of a sine stands "
                "3 dB above its level, that of music 10 to 20 dB.",
                "**Leq**: the average energy over time. See **Leq**.",
            }},
            Paragraph{"All of them run all the time. A change of weighting shows a settled value "
                      "at once, and can be taken back; only MIN, MAX and CLIPPED start over, since "
                      "they would be of another reading."},
            Heading{"Unit"},
            Paragraph{
                "The menu with the unit, ahead of the other controls, switches the channel between "
                "**SPL**, **dBFS** and **LUFS**; **SPL** is offered once it is calibrated. LUFS "
                "turns the meter into a loudness meter: see **Loudness (LUFS)**."},
            Heading{"Min, Max and clipping"},
            Paragraph{"MIN and MAX are those of the reading shown, since start or the last **Reset "
                      "Min/Max**. That button also clears CLIPPED and the peaks, on every channel. "
                      "CLIP means full scale now, CLIPPED that it happened: a level from such a "
                      "moment is too low."},
            Heading{"Also here"},
            Bullets{{
                "**View > Show Level Bar in SPL Meter**: the input's peak as a bar, with a line "
                "that holds it. The bar ends where the input clips, and turns red 3 dB below that.",
                "**View > Show Clock Instead of SPL Meter** (**Ctrl+Shift+C**): the time of day, "
                "large.",
                "**View > Full-Screen SPL Meter** (**F11**): the number alone over the whole "
                "screen, to be read from the stage. **F11** or **Esc** ends it; **Space** and "
                "**P** work on.",
            }},
        },
    };
}

HelpTopic realTimeAnalyzer() {
    return {
        "Real-Time Analyzer",
        "chart.bar.xaxis",
        "The live spectrum, from full octave to 1/48 octave.",
        {
            Paragraph{
                "The analyzer shows the level per frequency band, from 20 Hz to 20 kHz. Point at "
                "it, or go along it with the arrow keys: the readout gives frequency and level "
                "there. It reads the line, also where only bars are shown."},
            Heading{"Set it up"},
            Steps{{
                "**Averaging**: **Fast** to see what happens, **Slow** to judge a balance, "
                "**Infinite** for pink noise, until the curve stands. **None** averages nothing.",
                "Press the options button in the header. **Bands** picks the resolution: 1/3 "
                "octave for tonal balance, 1/6 to 1/12 for equalizing, 1/24 and 1/48 to find a "
                "narrow peak.",
                "**View**: **Bands**, **Line**, or **Both**. The line is the spectrum itself, "
                "every 12 Hz at 48 kHz.",
                "**Peak hold** keeps the highest values as a line that falls by 6 dB a second. "
                "**Reset Peak Hold** in the toolbar starts it over.",
                "**Target curve**: hold the response against flat, or against the X-Curve of "
                "cinemas. The slider under it moves the curve to your level, separately for SPL "
                "and dBFS. **None** takes it away; on the main input the X-Curve is back at the "
                "next launch.",
            }},
            Heading{"What the numbers mean"},
            Bullets{{
                "A band holds all energy between its edges: pink noise is a flat row of bars, and "
                "a bar grows by 3 dB where the bands are twice as wide.",
                "The line shows each frequency alone, where pink noise falls by 3 dB an octave. "
                "**Octave-normalized display** turns the line about 1 kHz by that much, so that it "
                "lies as flat as the bars. It is on from the start. A tone at 100 Hz then reads 10 "
                "dB low, one at 10 kHz 10 dB high: switch it off to read the level of a tone.",
                "Lines and bars go by the peaks of a sine: a tone's line stands up to 3.0 dB, a "
                "bar 4.8 dB above what the meter reads in **Z**. Compare levels here; the level "
                "that counts is the meter's.",
                "Band centers are steps of the fraction from 1 kHz, as in IEC 61260-1, but bands "
                "are sums of FFT lines and not that standard's filters: at fine resolutions the "
                "lowest share a line, and none belongs in a class 1 report.",
            }},
            Heading{"More"},
            Bullets{{
                "The overlay menu lays other channels over this one: front of house against "
                "balcony, left against right. An analyzer in dB SPL takes calibrated ones only.",
                "The dashed lines FLOOR and CEILING are the range of colors of the "
                "**Spectrogram**.",
                "A loaded microphone file corrects the spectrum, also without a calibration of the "
                "level.",
                "Feedback that builds up is marked: see **Ring-Out Alerts**.",
            }},
        },
    };
}

HelpTopic spectrogram() {
    return {
        "Spectrogram",
        "rectangle.grid.3x2",
        "The spectrum over time, as a scrolling picture.",
        {
            Paragraph{"Frequency runs across, time runs down: the newest row is at the bottom, and "
                      "the color is the level. What the analyzer shows for a moment stays here to "
                      "be looked at: a resonance is a vertical stripe that hangs on, feedback a "
                      "thin one that brightens, a clap a horizontal line, hum a comb at 50 or 60 "
                      "Hz and its multiples."},
            Heading{"Set the colors to your level"},
            Steps{{
                "Play the program at show level.",
                "Lower **Ceiling** until only the loudest parts reach the top color.",
                "Raise **Floor** until the noise of the room is nearly black. What lies between "
                "the two gets all the colors.",
            }},
            Paragraph{"Both are kept for each channel, separately for SPL and dBFS, and are the "
                      "dashed lines in the **Real-Time Analyzer**."},
            Heading{"Set the pace"},
            Bullets{{
                "**Speed**: to the right the picture moves faster and spans less time, from 6 "
                "seconds down to half a second.",
                "**Slice Height**: taller slices are easier to read from afar. Fewer of them fit, "
                "so the picture spans less time.",
            }},
            Paragraph{"In a narrow window the four sliders are behind one button in the header."},
            Heading{"Look back"},
            Paragraph{"Drag the picture down, or press **Up** and **Page Up** once it has the "
                      "focus (**Tab**): the last two minutes are kept. The badge then says "
                      "HISTORY. The picture goes on moving, that much later; **P** holds it still. "
                      "Double-click, click the badge, or press **Esc** for LIVE. What passed while "
                      "the spectrogram couldn't be seen, in any window, has no picture."},
            Heading{"Your own colors"},
            Paragraph{
                "**Settings > Display** has the ramp: a slider for where each color begins, **Add "
                "Color**, and **Reset to Default**. A ramp for a dark room or for people who see "
                "red and green alike can be kept under a name with **Save Current as Preset**."},
            Tip{"For low bass give it time: below 100 Hz the picture needs a sixth of a second to "
                "tell neighboring tones apart. With **Octave-normalized display** in the "
                "analyzer's options pink noise has one color from left to right, and a tone's "
                "color is its level at 1 kHz alone."},
        },
    };
}

HelpTopic levelHistory() {
    return {
        "Level History",
        "chart.xyaxis.line",
        "The whole session graphed, with the loudest and quietest moments.",
        {
            Paragraph{
                "From start to stop the level of every channel is kept, ten times a second, in "
                "every weighting, whichever is on screen. So you can decide afterwards: switch the "
                "meter from A to C, and the history of the whole evening is in C. LUFS are the "
                "exception: they are measured while the channel reads in LUFS. After four hours "
                "the points grow longer, and keep their highest and lowest value."},
            Heading{"Find a moment"},
            Steps{{
                "Press **MAX** or **MIN** in the header: the graph goes to the loudest or the "
                "quietest moment of the session.",
                "Point at the graph: the readout gives the time in the session, the time of day, "
                "and the lowest and highest level there.",
                "Turn the wheel, or pinch, to zoom in at the pointer, down to ten seconds. Drag to "
                "go through time.",
                "Double-click, or press **Esc**, to return to the range of the picker at the "
                "right: **Session**, **Last 1 min**, **Last 5 min**, **Last 15 min**.",
            }},
            Heading{"Which channel"},
            Paragraph{"With several channels the header has a picker: **Follow SPL Meter**, or a "
                      "channel that stays whatever the meter shows. The overlay menu lays the "
                      "history of other channels over it, as far as they read in the same unit. On "
                      "a channel in LUFS the graph shows short-term loudness, whatever the meter "
                      "shows large; **Momentary** draws the faster reading over it."},
            Heading{"What the graph says"},
            Bullets{{
                "Colors are those of the **Traffic Light**. Two small triangles mark the maximum "
                "and the minimum.",
                "A hole is a pause, a device that was lost, a computer that slept, or digital "
                "silence. Lost audio is marked at its moment.",
                "The first three seconds count for no minimum, while the detectors settle.",
                "What was recorded before a calibration keeps its old scale. Stop and start once "
                "you have calibrated.",
            }},
            Tip{"A session ends with the next start, which clears it, and with **File > Quit**. "
                "Export it before: see **Exporting Reports**. To take a break, use **P**."},
        },
    };
}

HelpTopic exportingReports() {
    return {
        "Exporting Reports",
        "square.and.arrow.up",
        "Save a session as a PDF report, an image or text.",
        {
            Steps{{
                "On the meter choose the reading that the report is to show, and the unit: for a "
                "limit in dB A, **A**. The whole session is in it, as every weighting was "
                "recorded.",
                "Press the export button in the header of **Level History**, or choose **File > "
                "Export Level History…** (**Ctrl+Shift+E**). It works while metering goes on: the "
                "report then ends at this moment and says so.",
                "Choose the **Format**: **PDF Report**, **PNG Image** or **Summary Text**.",
                "With several channels, tick those that you want. The PDF gets a page for each, "
                "the image stacks them.",
                "Choose folder and name, and save. The note at the foot of the main window opens "
                "the file, or shows its folder.",
            }},
            Heading{"What is in it"},
            Bullets{{
                "When the session began, how long it was, and how much of it was paused or lost.",
                "The input, and how it is calibrated. An uncalibrated channel is reported in dBFS, "
                "and says that it is.",
                "Session Leq in A, C and Z, and the loudest and quietest moment with the time of "
                "day. A loudness channel has Integrated, Loudness Range and True Peak Max in place "
                "of the Leq.",
                "L10 / L50 / L90: the levels that were exceeded for 10, 50 and 90 percent of the "
                "time. L90 is near the background, L10 near the loud parts.",
                "How long each threshold of the **Traffic Light** was reached, as a time and in "
                "percent.",
                "The graph of the whole session, in the PDF and in the image.",
            }},
            Paragraph{"L10 to L90 and the times at thresholds count the level as it moved. Where "
                      "the meter shows **Peak**, **Leq** or **Infinite** that is the Fast level of "
                      "the same weighting: the heading “Statistics” says which. For a limit on an "
                      "Leq start and stop with its period, and read Session Leq."},
            Heading{"What it is good for"},
            Paragraph{"It is an honest record of a show. Where a law or a contract asks for a "
                      "class 1 measurement, microphone, calibrator and meter need their "
                      "certificates, which no program can give."},
            Tip{"The next start clears the session, and so does quitting. Without one there is "
                "nothing to export: “There's no level history to export yet. Press Start to record "
                "a session.”"},
        },
    };
}

}  // namespace

HelpGroup HelpChapters::modules() {
    return {"Modules",
            {splMeter(), realTimeAnalyzer(), spectrogram(), levelHistory(), exportingReports()}};
}

}  // namespace TarvaneApp

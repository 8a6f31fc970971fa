#include "Shell/Help/Book/HelpChapters.h"

namespace TarvaneApp {

namespace {

using namespace HelpBlocks;

HelpTopic calibration() {
    return {
        "Calibration",
        "tuningfork",
        "Turn raw digital levels into real dB SPL.",
        {
            Paragraph{"Until a channel is calibrated it reads dBFS. There are two ways, both in "
                      "**Settings > Audio**, in the channel's own section, while its **Source** is "
                      "**Microphone**. Choose the **Device** by its name first. A reference tone "
                      "always wins over a file's sensitivity."},
            Heading{"With the microphone's file"},
            Steps{{
                "Press **Load Cal File…**, or drop the maker's text file onto the section.",
                "If the file has a Sens Factor, the **Status** says so. Set **Reference SPL** to "
                "the level that the maker means: usually 94 dB, for some mics 100.",
                "Set the device's input gain to its maximum, where Sens Factors are measured. If "
                "the device reports its gain, Tarvane works out any other gain itself.",
            }},
            Paragraph{
                "A file without a Sens Factor corrects the spectrum and leaves the level in dBFS. "
                "A file's numbers are added as they stand: if yours lists the microphone's own "
                "response, have the signs turned. Each line is a frequency and a level with blanks "
                "between them, not commas; the factor stands in a line that begins with \" or * or "
                "#, as in “Sens Factor =-1.5dB”, with no blank behind the sign."},
            Heading{"With a calibrator"},
            Steps{{
                "Set the gain as you will use it, fit the calibrator closely over the mic, and "
                "press **Space** in the main window to start.",
                "On the channel's meter choose **SPL** and **Fast** or **Slow**: what stands there "
                "is calibrated, even if it is an average or a peak.",
                "In the settings enter what the calibrator plays under **Known reference SPL** "
                "(**Known SPL** on an extra channel): most often 94.0 dB at 1 kHz.",
                "Watch the line above the button: the level as it is, and the offset that it will "
                "give. Warnings stand under the button: a tone that isn't steady, that no "
                "calibrator plays, or an input that clips. Mend them first.",
                "Press **Calibrate**. The meter reads the calibrator's level; take it off and "
                "write the offset down.",
            }},
            Tip{"A 250 Hz pistonphone reads 8.6 dB low in A weighting (IEC 61672-1): choose **C** "
                "or **Z** on the meter before you calibrate with it."},
            Heading{"What moves a calibration"},
            Bullets{{
                "A gain that Tarvane sees is compensated: the form shows it as **SPL "
                "compensation**. A knob on the device may be invisible. After touching one, "
                "calibrate again.",
                "Another device: the form warns that a reference tone was measured elsewhere. "
                "Behind **Default Input** it can't tell.",
                "Another microphone, cable or pad: nobody can see it. Calibrate again.",
            }},
            Paragraph{"Check before and after the show: a reading more than 0.5 dB off says that "
                      "something moved in between."},
        },
    };
}

HelpTopic inputGainAndClipping() {
    return {
        "Input Gain & Clipping",
        "slider.horizontal.3",
        "Set the preamp level so the input never clips.",
        {
            Paragraph{"A converter that is driven past full scale cuts the waveform off. Every "
                      "level from that moment is too low, the spectrum fills with false tones, and "
                      "no software can repair it. So leave room: the peaks of music stand 10 to 20 "
                      "dB above the level that you read."},
            Steps{{
                "Open **Settings > Audio** and unfold the channel. Under **Input Gain** watch "
                "**Input level**, which shows peaks. It needs metering to run, and **Source** on "
                "**Microphone**.",
                "Make the loudest sound of the show, or leave 20 dB above what you have now.",
                "Turn the knob of the interface, or move **Input gain**, until the peaks stay "
                "below −10 dBFS.",
                "Press **Reset Min/Max** on the meter. If CLIPPED comes back, take off more.",
            }},
            Tip{"A device without a gain of its own gets the slider from PipeWire, behind the "
                "converter. Moved down it hides CLIP and repairs nothing. If the reading stops "
                "growing while the sound gets louder, turn the device itself down."},
            Heading{"What the form can show"},
            Bullets{{
                "**Input gain**, a slider in dB with **Max**: the gain is known. A calibrated "
                "channel stays right when it is turned, here or elsewhere; **SPL compensation** "
                "says by how much.",
                "**Current volume**, in percent: the device has a control without a dB scale, or "
                "is muted. It is not compensated.",
                "“Not adjustable in software for this device”: use its own knob, and calibrate "
                "after touching it.",
                "A device may have one gain for all inputs. Then the slider turns the other "
                "channels too, and a note says so.",
            }},
            Heading{"CLIP, CLIPPED and GAP"},
            Bullets{{
                "CLIP: a sample reached full scale within the last one and a half seconds.",
                "CLIPPED: it happened since the start or the last **Reset Min/Max** (on a loudness "
                "channel **Reset Integration**).",
                "GAP, in the same place while nothing clips: samples were lost on their way to the "
                "meter. That is no matter of level: see **Troubleshooting**.",
            }},
            Paragraph{"Too little gain does less harm than too much: 24-bit converters leave 20 dB "
                      "to spare. Look at the quiet end: with the system silent, the level should "
                      "still fall when you cover the mic."},
            Paragraph{"Microphones clip, too. Near a loud source a measurement mic reaches its own "
                      "limit, often between 120 and 135 dB SPL, with the input far from CLIP. Its "
                      "data sheet has the figure."},
        },
    };
}

HelpTopic leq() {
    return {
        "Leq",
        "sum",
        "The energy-average level over time.",
        {
            Paragraph{
                "Leq, the equivalent continuous level of IEC 61672-1, is the steady level that "
                "would hold the same energy as all that was heard. Limits for venues and neighbors "
                "are mostly written as an Leq over a quarter of an hour, an hour or a night."},
            Heading{"Measure one"},
            Steps{{
                "Open **Settings > Leq**. Choose the **Weighting** (nearly always A) and the "
                "**Integration time** of your limit, from 1 second to 24 hours.",
                "On the meter choose **Leq**. Beside it stands what is set, such as “A-weighted, "
                "15 min”.",
                "Start, or press **Apply** while metering runs. The line under the number fills as "
                "the time passes; the number is the average so far.",
            }},
            Paragraph{
                "The integration time is a mark and not an end, and no window that slides: when it "
                "is full the average goes on growing, over everything since it began. To begin the "
                "next quarter of an hour press **Apply** again: the session and its history go on. "
                "A stop and a start would clear them. A pause takes no time."},
            Heading{"How it moves"},
            Bullets{{
                "It adds energy: ten minutes at 100 dB and fifty of silence are 92.2 dB over the "
                "hour. Twice the time at a level adds 3 dB.",
                "Early on it follows every sound, late in the hour hardly any. A first minute of "
                "line check stays in it: press **Apply** when the show begins.",
                "Once over the limit, only quiet brings it back, and slowly: after half an hour at "
                "3 dB over an hour's limit, the other half hour would have to be silent.",
            }},
            Heading{"More than one"},
            Paragraph{"All channels share the setting, and each has its own sum. In the report "
                      "every channel that reads levels has besides its Session Leq in A, C and Z, "
                      "from start to stop without the pauses: see **Exporting Reports**. On the "
                      "meter the same is **SPL** with **Infinite**."},
            Tip{"A change of weighting or time on this tab begins at zero, on every channel, and "
                "so does loading a profile."},
        },
    };
}

HelpTopic loudness() {
    return {
        "Loudness (LUFS)",
        "speaker.wave.3",
        "Program loudness for broadcast, streaming and podcasts.",
        {
            Paragraph{"LUFS says how loud a program is for listeners at home, whatever they set "
                      "their volume to. Tarvane measures it as ITU-R BS.1770-4 and EBU R128 tell, "
                      "on a digital feed: a mix bus, a stream, what the computer is playing."},
            Steps{{
                "Choose the feed as a stereo pair: see **Stereo Pairs**. Both sides count in full, "
                "so a pair reads 3 dB above one side alone.",
                "Set the unit in front of the meter's controls to **LUFS**. Loudness is measured "
                "from then on, and not before; another unit ends it and forgets its numbers.",
                "Choose the target beside it: EBU R128 at −23 LUFS, ATSC A/85 at −24, streaming at "
                "−14, podcasts at −16. **Settings > Loudness** has your own: **Target**, "
                "**Tolerance**, **True peak ceiling**.",
                "Play the program from its beginning to its end, and read Integrated. Press "
                "**Reset Integration** before the next one.",
            }},
            Heading{"The readings"},
            Bullets{{
                "Momentary: the last 400 ms (EBU Tech 3341). For faders.",
                "Short-Term: the last 3 seconds. For the flow of a program.",
                "Integrated: since start or reset. Silence is left out below −70 LUFS, and so is "
                "what lies 10 LU below the rest. This is what is delivered.",
                "Loudness Range: from quiet to loud in LU, without the extremes (EBU Tech 3342). "
                "Speech has about 5, film up to 20.",
                "True Peak Max: the highest peak between the samples, in dBTP. Over the ceiling a "
                "lossy codec or a converter distorts.",
                "Momentary Max and Short-Term Max: the highest since reset.",
            }},
            Paragraph{"Pick the large one in the menu in front of the target: **M**, **S**, **I**, "
                      "**LRA**, **TP**, **M Max**, **S Max**. It is the same for all channels. The "
                      "first momentary value needs 0.4 seconds, the first short-term one three; "
                      "until then, and in silence, a dash stands there."},
            Heading{"Colors"},
            Paragraph{"Green is on target within the tolerance, red above it, yellow below; see "
                      "**Traffic Light**. On the bar the target is a band: the bar is momentary, "
                      "the line short-term."},
            Tip{"Loudness needs no calibration and no microphone. A mic in the room reads some "
                "number of LUFS, and it means nothing for delivery."},
        },
    };
}

HelpTopic ringOutAlerts() {
    return {
        "Ring-Out Alerts",
        "exclamationmark.triangle",
        "Find feedback frequencies while ringing out a system.",
        {
            Paragraph{"Feedback is one tone that holds its pitch, grows, and has no harmonics. "
                      "Tarvane looks for just that, and tells the frequency, the nearest note, and "
                      "how far beside it the tone lies, in cents."},
            Heading{"Ring out a system"},
            Steps{{
                "Put the measurement mic where the audience is, or take the vocal mic's channel "
                "from the console.",
                "Show the channel in the **Real-Time Analyzer**: only what an analyzer shows is "
                "watched. See that **Ring-Out** is on in its options, or **Ring-Out alerts** in "
                "**Settings > Audio**. It is on from the start, but off on a channel that you add "
                "on a digital feed.",
                "Raise the vocal mic's gain slowly until it begins to ring. The banner at the top "
                "right shows, for example, “1.25kHz D#6 +8¢”, and a line marks the place.",
                "Cut that frequency with a narrow filter, by 3 dB first, and go on. Stop after "
                "four or five filters: what rings then is the position of mic and loudspeaker.",
            }},
            Paragraph{"The banner stays, paler, for three seconds after the tone has gone, so that "
                      "you have time to look up."},
            Heading{"Sensitivity"},
            Bullets{{
                "**Low** waits for a clear, fast build-up, by 9 dB: for music at the same time.",
                "**Normal** warns after about a second of growth by 6 dB.",
                "**High** warns of slow and quiet ones, from 4 dB on, and now and then of a held "
                "note.",
            }},
            Heading{"When it doesn't warn"},
            Bullets{{
                "The tone stands still: only a growing one is told.",
                "It is below 80 Hz or above 16 kHz, or too quiet: below 40 dB SPL, on a channel "
                "without calibration below −60 dBFS.",
                "It has harmonics at two and three times its frequency: then it is taken for a "
                "voice or an instrument, and a system that rings into distortion has them too.",
                "The channel is in no analyzer that can be seen, or metering is paused.",
            }},
            Tip{"The **Spectrogram** shows the same as a thin vertical line that brightens, also "
                "for tones that no alert is given for."},
        },
    };
}

HelpTopic trafficLight() {
    return {
        "Traffic Light",
        "circle.lefthalf.filled",
        "Thresholds and colors that show at a glance where the level is.",
        {
            Paragraph{"The large value, the level history and the report share three colors: fine, "
                      "close, too much. Set the limit of tonight, and the color can be read from "
                      "the other end of the desk."},
            Steps{{
                "Open **Settings > Traffic Light**.",
                "Under **SPL Thresholds (calibrated, SPL readout)** set the upper slider to your "
                "limit, the lower one 3 to 6 dB below it.",
                "Look at the meter: a level exactly at a threshold already has its color.",
            }},
            Heading{"Which thresholds count"},
            Bullets{{
                "A calibrated channel that reads SPL goes by the SPL thresholds: red from 100 dB, "
                "yellow from 85 dB, green below, until you change them.",
                "A channel in dBFS goes by **dBFS Thresholds (dBFS readout, or uncalibrated)**: "
                "red from −3, yellow from −12.",
                "A channel in LUFS goes by the loudness target and its tolerance: above, on, or "
                "below it. True peak has its own two colors. There are no sliders: the numbers are "
                "in **Settings > Loudness**.",
            }},
            Paragraph{
                "A lower threshold can't pass the one above it: it is taken along when the upper "
                "one comes down. **Reset to Default** brings thresholds and colors back."},
            Heading{"Colors"},
            Paragraph{"Each color is a button: press it for any other. If red and green look alike "
                      "to you, take blue, white and orange; the graph and the report follow."},
            Heading{"The reading behind the color"},
            Paragraph{"The color judges the reading that is shown. Slow and A are calmer than Peak "
                      "and C, and a limit only means something with both named: “100 dB LAeq over "
                      "15 minutes” belongs to **Leq**, “140 dB C peak” to **Peak**. All readings "
                      "share the sliders: for a limit on peaks move them up. The report counts how "
                      "long each threshold was reached."},
            Tip{"Thresholds are for all channels. If the desk and the neighbor's window have "
                "different limits, save each setup as a profile: see **Profiles**."},
        },
    };
}

}  // namespace

HelpGroup HelpChapters::measuring() {
    return {"Measuring",
            {calibration(), inputGainAndClipping(), leq(), loudness(), ringOutAlerts(),
             trafficLight()}};
}

}  // namespace TarvaneApp

#include "Shell/Help/Book/HelpChapters.h"

namespace TarvaneApp {

namespace {

using namespace HelpBlocks;

HelpTopic gettingStarted() {
    return {
        "Getting Started",
        "play.circle",
        "Pick an input and take your first reading in about a minute.",
        {
            Steps{{
                "Plug in the measurement microphone or the interface. If the mic needs phantom "
                "power, switch that on at the interface and wait a few seconds.",
                "Open **File > Settings…** (**Ctrl+,**) and there the tab **Audio**. Under **Main "
                "Input** choose the **Device**, and under **Input** the socket that the mic is on.",
                "Back in the main window press **Space**, or the round start button at the top "
                "left. The level appears, and the analyzer begins to move.",
                "Speak, clap, or play pink noise: the bars should follow. If the level stays at "
                "the bottom, see **Troubleshooting**.",
                "Set the preamp so that loud passages stay clear of CLIP: **Input Gain & "
                "Clipping** says how.",
            }},
            Paragraph{"The number is in dBFS now, the level below digital full scale: a 1 kHz sine "
                      "whose peaks are at −20 dBFS reads −23.0. It says how much signal there is, "
                      "and nothing yet about sound pressure."},
            Heading{"To read dB SPL"},
            Paragraph{"Load the microphone's calibration file, or hold a calibrator over the mic "
                      "and press **Calibrate**: both take a minute and are told in "
                      "**Calibration**. From then on the meter shows sound pressure level, and the "
                      "traffic light goes by the SPL thresholds."},
            Heading{"To stop, and to read afterwards"},
            Paragraph{"**P** pauses and keeps everything where it is. **Space** stops. After a "
                      "stop the last session stays on screen: scroll through it, read its loudest "
                      "moment, export it. The next start begins a new session and clears the old "
                      "one. Quitting clears it, too. Neither asks."},
            Heading{"The right microphone"},
            Bullets{{
                "**Default Input** is the system's default microphone at each start. For a show, "
                "choose the device by its name: then no headset that somebody plugs in takes its "
                "place.",
                "A chosen device that isn't connected is replaced by the default input at the "
                "start. The toolbar then says “the chosen device isn't connected”: look there "
                "before you trust a level.",
                "While metering Tarvane never changes the microphone. One that is pulled out ends "
                "the measurement, with a message.",
            }},
            Tip{"**Settings > Audio** in this book means the tab **Audio** of the settings window. "
                "Some notes in the program call it Preferences > Audio."},
        },
    };
}

HelpTopic theMainWindow() {
    return {
        "The Main Window",
        "macwindow",
        "What each part of the window and toolbar does.",
        {
            Heading{"The toolbar, from left to right"},
            Bullets{{
                "**Start** or **Stop** (**Space**). While a device opens it shows a turning wheel; "
                "press again to cancel.",
                "**Pause** or **Resume** (**P**), while metering. PAUSED stands beside it.",
                "The device. While metering, the one that is metered, whatever you choose in the "
                "meantime. Its dot is a ring while nothing is metered, a green disc while "
                "metering, two bars in a pause, and a red cross if the chosen device isn't "
                "connected.",
                "The profile in use, or **No Profile**: click to switch the whole setup. See "
                "**Profiles**.",
                "At the right end **Extra channels**, when there are any: opens a channel in its "
                "own window. See **Channels**.",
                "**Layout**: where each module goes. See **Window Layout**.",
                "**Reset Peak Hold**, while the analyzer shown holds peaks. In a narrow window it "
                "is in the menu with the three dots.",
            }},
            Heading{"The modules"},
            Paragraph{"Below the toolbar stand up to four modules: **SPL Meter**, **Level "
                      "History**, **Real-Time Analyzer** and **Spectrogram**. Each has its "
                      "controls in a row at its top. With several channels the row also has a "
                      "picker with a colored dot: each module can show a different channel."},
            Paragraph{"Drag the grip between the two graphs to share their room, and double-click "
                      "it for equal halves. The grip under the meter makes its number larger. The "
                      "arrows at the right of a graph's header expand it over both places; press "
                      "again to get the other one back."},
            Heading{"Menus"},
            Bullets{{
                "**File**: export, settings, quit.",
                "**View**: the clock, the level bar, the meter on the full screen.",
                "**Profiles**: load a setup, save to the current one, manage them.",
                "**Window**: the main window, and the windows of channels.",
                "**Help**: this book, what is new, and the version.",
            }},
            Heading{"When it is closed"},
            Paragraph{"Closing the main window stops nothing: metering goes on, also with all "
                      "windows closed. To have it back, start Tarvane again, or press **Ctrl+0** "
                      "in another of its windows. Where the desktop has a tray, Tarvane's icon "
                      "there brings it back, too. It shows whether Tarvane meters, pauses, clips "
                      "or hears feedback, and its menu starts and stops."},
            Tip{"**File > Quit** (**Ctrl+Q**) ends the program, and with it the measurement: "
                "nobody asks. Export the session before."},
        },
    };
}

HelpTopic microphonePermissions() {
    return {
        "Microphone Permissions",
        "lock.shield",
        "Microphone and system audio access.",
        {
            Paragraph{
                "On Linux nobody asks: a program that reaches the PipeWire audio server may use "
                "its inputs and listen to its output. There is no dialog to confirm, and Tarvane "
                "needs no permission of its own, neither for a microphone nor for System Output."},
            Heading{"When no input is there"},
            Bullets{{
                "PipeWire isn't running. Tarvane then says at its launch that it failed to "
                "enumerate audio devices. PipeWire runs in your desktop session: a program started "
                "as another user, or over a plain remote shell, doesn't find it.",
                "The card is taken. A program that opens the sound card directly, past PipeWire, "
                "hides it from everybody else. Quit that program.",
                "The card's profile has no input. In the system's sound settings choose a profile "
                "with input for it, such as a duplex one or “Pro Audio”. The list of devices "
                "follows; if it doesn't, press **Refresh Devices** in **Settings > Audio**.",
                "The input is muted. Tarvane then reads silence. Unmute it in the system's sound "
                "settings, or with the switch on the device.",
            }},
            Heading{"Flatpak"},
            Paragraph{"The Flatpak of Tarvane reaches PipeWire through the permission it is "
                      "installed with; if somebody has taken that away, give it back in the "
                      "desktop's application settings."},
            Heading{"What happens to the audio"},
            Paragraph{"Tarvane measures and forgets. It keeps levels, spectra and the picture of "
                      "the last two minutes in memory, and sound only for the moment that "
                      "measuring it takes: nothing that was said near the microphone is recorded "
                      "or sent anywhere. Of a measurement only what you export yourself is "
                      "written, and a report holds levels alone."},
            Tip{"While Tarvane meters, the desktop may show a microphone symbol in its panel. It "
                "is the desktop's own, and goes away when you stop."},
        },
    };
}

}  // namespace

HelpGroup HelpChapters::basics() {
    return {"Basics", {gettingStarted(), theMainWindow(), microphonePermissions()}};
}

}  // namespace TarvaneApp

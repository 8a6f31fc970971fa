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
                "Plug in the measurement microphone or the interface. An interface with phantom "
                "power: switch it on for the mic, then wait a few seconds.",
                "Open **File > Settings…** (**Ctrl+,**) and there the tab **Audio**. Under "
                "**Main Input** choose the **Device**, and under **Input** the socket that the mic "
                "is on.",
                "Press **Space**, or the round start button at the top left. The level appears, "
                "and the analyzer begins to move.",
                "Speak, clap, or play pink noise: the bars should follow. If the level stays at "
                "the bottom, see **Troubleshooting**.",
                "Set the preamp so that loud passages stay clear of CLIP: **Input Gain & "
                "Clipping** says how.",
            }},
            Paragraph{"The number is in dBFS now, the level below digital full scale: a sine whose "
                      "peaks are at −20 dBFS reads −23.0. It says how much signal there is, and "
                      "nothing yet about sound pressure."},
            Heading{"To read dB SPL"},
            Paragraph{"Load the microphone's calibration file, or hold a calibrator over the mic "
                      "and press **Calibrate**: both take a minute and are told in "
                      "**Calibration**. From then on the meter shows sound pressure level, and the "
                      "traffic light goes by the SPL thresholds."},
            Heading{"To stop, and to read afterwards"},
            Paragraph{
                "**P** pauses and keeps everything where it is. **Space** stops. After a stop the "
                "last session stays on screen: scroll through it, read its loudest moment, export "
                "it. The next start begins a new session and clears the old one."},
            Tip{"**Default Input** follows the system's default microphone at each start. For a "
                "show, choose the device by its name: then no headset that somebody plugs in can "
                "take its place."},
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
                "meantime.",
                "**Extra channels**, when there are any: opens a channel in its own window. See "
                "**Channels**.",
                "The profile in use, or **No Profile**: click to switch the whole setup. See "
                "**Profiles**.",
                "**Layout**: where each module goes. See **Window Layout**.",
                "**Reset Peak Hold**, while the analyzer shown holds peaks. In a narrow window it "
                "is in the menu with the three dots.",
            }},
            Heading{"The modules"},
            Paragraph{"Below the toolbar stand up to four modules: **SPL Meter**, **Level "
                      "History**, **Real-Time Analyzer** and **Spectrogram**. Each has a header "
                      "with its name and its own controls. With several channels a header also has "
                      "a picker with a colored dot: each module can show a different channel."},
            Paragraph{"Drag the grip between the two graphs to share their room, and double-click "
                      "it for equal halves. The arrows at the right of a graph's header expand it "
                      "over both places; press again to get the other one back."},
            Heading{"Menus"},
            Bullets{{
                "**File**: export, settings, quit.",
                "**View**: the clock, the level bar.",
                "**Profiles**: load a setup, save to the current one, manage them.",
                "**Window**: the main window, and the windows of channels.",
                "**Help**: this book, and what is new.",
            }},
            Tip{"Closing the main window stops nothing: metering goes on, also with all windows "
                "closed. Start Tarvane again, or choose **Window > Show Main Window** (**Ctrl+0**) "
                "in another of its windows, and it is back as it was. Only **File > Quit** "
                "(**Ctrl+Q**) ends the program."},
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
                "PipeWire isn't running. Tarvane says so when you press start. PipeWire runs in "
                "your desktop session: a program started as another user, or over a plain remote "
                "shell, doesn't find it.",
                "The card is taken. A program that opens the sound card directly, past PipeWire, "
                "hides it from everybody else. Quit that program.",
                "The card's profile has no input. In the system's sound settings choose a profile "
                "with input for it, such as a duplex one or “Pro Audio”, then press **Refresh "
                "Devices** in **Preferences > Audio**.",
                "The input is muted. Tarvane then reads silence. Unmute it in the system's sound "
                "settings, or with the switch on the device.",
            }},
            Heading{"Flatpak"},
            Paragraph{"The Flatpak of Tarvane reaches PipeWire through the permission it is "
                      "installed with; if somebody has taken that away, give it back in the "
                      "desktop's application settings."},
            Heading{"What happens to the audio"},
            Paragraph{"Tarvane measures and forgets. It keeps levels, spectra and the picture of "
                      "the last two minutes in memory, and no sound: nothing that was said near "
                      "the microphone is recorded or sent anywhere. Only what you export yourself "
                      "is written, and a report holds levels alone."},
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

#include "Shell/Help/Book/HelpChapters.h"

namespace TarvaneApp {

namespace {

using namespace HelpBlocks;

HelpTopic keyboardShortcuts() {
    return {
        "Keyboard Shortcuts",
        "keyboard",
        "Every shortcut in one place.",
        {
            Heading{"Metering"},
            Paragraph{"In the main window, in every module's window, in every channel's window and "
                      "in the full-screen meter; not in the settings and in this help:"},
            Shortcuts{{
                {"Space", "Start or stop; while a device opens, cancel"},
                {"P", "Pause without clearing, or resume"},
                {"Enter",
                 "Press the button that has the focus, or open its menu: Space would start and "
                 "stop"},
            }},
            Heading{"Menus"},
            Paragraph{"In every window:"},
            Shortcuts{{
                {"Ctrl+Shift+E", "Export the level history"},
                {"Ctrl+,", "Open the settings"},
                {"Ctrl+Q", "Quit"},
                {"Ctrl+Shift+C", "Show the clock instead of the SPL meter, or the meter again"},
                {"F11", "The SPL meter on the full screen, or the end of it"},
                {"Ctrl+0", "Show the main window"},
                {"Ctrl+? or F1", "Open this help"},
            }},
            Heading{"Moving around"},
            Shortcuts{{
                {"Tab, Shift+Tab", "The next or the previous control or graph"},
                {"Arrow keys", "Within a row of choices, a list or a slider"},
                {"F10", "Open the menu bar of the main window"},
                {"Alt+F, Alt+V, Alt+P, Alt+W, Alt+H", "Open a menu of the main window"},
                {"Ctrl+W", "Close the window; not the main one"},
                {"Esc",
                 "Close the settings, About, what is new, the full-screen meter, or a popover"},
                {"Ctrl+Tab, Ctrl+Shift+Tab",
                 "In the settings: the next or the previous tab, also with Ctrl+Page Down and "
                 "Ctrl+Page Up"},
            }},
            Heading{"Real-Time Analyzer, when it has the focus"},
            Shortcuts{{
                {"Left, Right", "Move the readout along the frequencies; with Shift in fine steps"},
                {"Esc", "Put the readout away"},
            }},
            Heading{"Spectrogram, when it has the focus"},
            Shortcuts{{
                {"Up, Down", "Scroll back, or forward again, by a tenth of the picture"},
                {"Page Up, Page Down", "The same by a whole picture"},
                {"End or Esc", "Back to live"},
                {"Drag", "Scroll back; a double-click, or a click on the badge, goes back to live"},
            }},
            Heading{"Level History, when it has the focus"},
            Shortcuts{{
                {"Left, Right", "Go back or forward in time"},
                {"Up or +, Down or -", "Zoom in, zoom out"},
                {"Esc", "Back to the time range of the picker"},
                {"Wheel, pinch", "Zoom at the pointer; a sideways wheel goes through time"},
                {"Drag", "Go through time; a double-click resets"},
            }},
            Heading{"The grips under the meter and between the graphs"},
            Shortcuts{{
                {"Arrow keys", "Give one side more room"},
                {"Double-click", "Equal halves of the graphs; the meter's own height"},
            }},
            Heading{"This help"},
            Shortcuts{{
                {"Ctrl+F", "Search; Enter goes to what was found, Esc clears the search"},
                {"Up, Down", "In the list of topics: the topic before, the next one"},
                {"Page Up, Page Down", "On the page: scroll; Home and End go to its ends"},
            }},
        },
    };
}

HelpTopic troubleshooting() {
    return {
        "Troubleshooting",
        "wrench.and.screwdriver",
        "Common problems and how to fix them.",
        {
            Heading{"The meter doesn't start"},
            Bullets{{
                "“No audio input device is available.” Nothing is plugged in, or the card's "
                "profile has no input: choose another profile in the system's sound settings.",
                "“Failed to enumerate audio devices”, or for System Output “needs PipeWire 0.3.65 "
                "or later”: PipeWire isn't running in this session. Log in again, or start it.",
                "“The device delivered no audio within 5 seconds.” It is asleep or hung: unplug "
                "it, plug it in, press start.",
            }},
            Heading{"It runs, but the level stays at the bottom"},
            Bullets{{
                "Look at the device in the toolbar: a chosen one that isn't connected was replaced "
                "by the default.",
                "Look at **Input level** under **Input Gain**. If it moves, you look at another "
                "channel; if not, try the other entries of **Input**.",
                "Phantom power off, a muted input, a gain at its minimum, a pad. Near −240 nothing "
                "at all arrives.",
                "System Output reads what programs play: with nothing playing it reads nothing.",
            }},
            Heading{"It reads dBFS and should read dB SPL"},
            Bullets{{
                "The channel isn't calibrated, or **Readout** is on dBFS. See **Calibration**.",
                "**Source** is on **Digital feed**, which has no calibration: set it to "
                "**Microphone**. Devices that look like network or virtual audio start out as "
                "digital.",
            }},
            Heading{"The SPL can't be right"},
            Bullets{{
                "Off by a round 6, 10 or 20 dB: a pad, a switch on the mic, or a **Reference SPL** "
                "of 94 where its maker means another level.",
                "The gain was turned on the device's own knob, which no computer sees. Calibrate "
                "again.",
                "The calibration belongs to another device. Calibrate again.",
                "A weighting: bass reads far lower in A than in C.",
                "The analyzer reads more than the meter. It always does: see **Real-Time "
                "Analyzer**.",
            }},
            Heading{"“GAP” under the reading"},
            Paragraph{
                "Audio was lost on its way: a USB hub, a bad cable, or a computer too busy. The "
                "history shows where. Use another port, close what is heavy, put the power supply "
                "in. Levels around a gap are still right; an Leq misses the gap's time."},
            Heading{"No ring-out alert"},
            Paragraph{
                "It listens only while an analyzer shows that channel in a window that can be "
                "seen, and only to a tone that is still growing. See **Ring-Out Alerts**."},
            Heading{"“Device or input changes take effect after a restart.”"},
            Paragraph{"A running measurement stays with its devices. Press **Restart Now**, which "
                      "starts a new session: export the old one before."},
            Heading{"A window or module is gone"},
            Bullets{{
                "Start Tarvane again: the one that runs shows its main window. **Layout** and "
                "**All in Main Window** there bring every module back.",
                "“Tarvane is already running but doesn't answer.” It hangs. Starting anyway takes "
                "its place; its measurement is lost.",
            }},
        },
    };
}

}  // namespace

HelpGroup HelpChapters::reference() {
    return {"Reference", {keyboardShortcuts(), troubleshooting()}};
}

}  // namespace TarvaneApp

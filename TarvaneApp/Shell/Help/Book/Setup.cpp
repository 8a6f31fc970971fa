#include "Shell/Help/Book/HelpChapters.h"

namespace TarvaneApp {

namespace {

using namespace HelpBlocks;

HelpTopic channels() {
    return {
        "Channels",
        "square.stack.3d.up",
        "Measure several inputs at the same time.",
        {
            Paragraph{"The main input is always there. Beside it you can have as many channels as "
                      "you have inputs: front of house and balcony, the stage, the neighbor's "
                      "window, a console bus. Each has its own calibration, color, unit, display "
                      "and history, and all run together."},
            Steps{{
                "Open **Settings > Audio** and press **Add Channel**.",
                "Give it a **Name**: menus, windows and reports call it by that.",
                "Choose **Device** and **Input**. Tarvane proposes the next free input of the main "
                "input's device.",
                "Set what it is under **Signal**, and calibrate it like the main input: every "
                "microphone needs its own.",
                "While metering runs, press **Restart Now**. That starts a new session: export the "
                "old one before.",
            }},
            Heading{"See them"},
            Bullets{{
                "Each module's row of controls now has a picker with a colored dot. Meter, "
                "analyzer, spectrogram and history may each show another channel.",
                "The overlay menu of **Real-Time Analyzer** and **Level History** lays channels "
                "over each other, in their colors. One that doesn't fit the scale is in the menu "
                "with the reason.",
                "**Extra channels** in the toolbar opens a channel in its own window: see "
                "**Channel Windows**.",
            }},
            Heading{"Switch off, take away"},
            Paragraph{"With **Enabled** off a channel stands still, and sits out from the next "
                      "start on. It keeps all its settings. **Remove Channel**, at the end of its "
                      "section, takes it away with its calibration and its history, and doesn't "
                      "ask. A click on a section's name folds it to one line with name and input."},
            Heading{"What belongs together"},
            Bullets{{
                "Channels of one device share one stream: they are aligned to the sample. "
                "Different devices run on their own clocks.",
                "A device that can't be opened, or is pulled out, is told once, and the channels "
                "of other devices go on. Only the main input's device ends the run with it.",
                "For all channels alike: averaging, Leq, thresholds, the loudness target and the "
                "loudness shown large, and the pace and colors of the spectrogram. The rest is "
                "each channel's own.",
            }},
            Tip{"A channel that isn't on screen costs next to nothing, and its level history is "
                "complete all the same."},
        },
    };
}

HelpTopic stereoPairs() {
    return {
        "Stereo Pairs",
        "hifispeaker.2",
        "Read two inputs as one stereo source.",
        {
            Paragraph{"A mix, a pair of microphones or a stream has two sides, and is one thing to "
                      "measure. Added together as voltages, sides that are out of phase would "
                      "cancel: the analyzer would show notches that nobody hears. So Tarvane "
                      "measures each side and combines their energies."},
            Steps{{
                "Open **Settings > Audio** and unfold the channel.",
                "Choose the left side under **Input**.",
                "Switch **Stereo pair** on, and choose the other side under **Right channel**. The "
                "two need not be neighbors.",
                "While metering runs, press **Restart Now**. It begins a new session.",
            }},
            Heading{"What it reads"},
            Bullets{{
                "Level and Leq: the mean of both sides' energy. The same signal on both reads as "
                "one of them alone does; with one side silent the reading is 3 dB lower.",
                "**Peak**: the higher of the two sides.",
                "L and R stand under the combined level.",
                "Spectrum and spectrogram: both sides, averaged by power.",
                "Loudness: the sum, as ITU-R BS.1770 wants it. The same signal on both sides reads "
                "3 dB more than on one.",
                "CLIP: either side.",
            }},
            Heading{"One calibration for both"},
            Paragraph{"A pair has one offset and one microphone file. For two measurement "
                      "microphones of different sensitivity use two channels, calibrate each, and "
                      "lay them over each other. A pair fits two mics that are alike with equal "
                      "gain, and every feed from a console or a program."},
            Paragraph{"Calibrate such mics before you pair them, with **Stereo pair** off: with "
                      "the calibrator on one mic alone the pair reads 3 dB low, and would be set 3 "
                      "dB too high for good."},
            Heading{"When one side is missing"},
            Paragraph{"Look at L and R: a dash is digital silence, a much lower number a side "
                      "without a signal. Check cable and routing, and that **Right channel** is "
                      "not the input of something else. If the device that you choose has too few "
                      "inputs for the pair, Tarvane switches it off."},
            Tip{"System Output is a stereo pair from the start; there is nothing to set."},
        },
    };
}

HelpTopic digitalFeeds() {
    return {
        "Digital Feeds & System Output",
        "cable.connector",
        "Console buses, network audio, loopback and the computer's own playback.",
        {
            Paragraph{"A feed has no sound pressure: it is a signal in a wire. It reads in dBFS, "
                      "or in LUFS, and can't be calibrated."},
            Heading{"A console or an interface"},
            Steps{{
                "Connect the console by USB, and choose it under **Device**. Every channel that it "
                "sends is an **Input**.",
                "Set **Source** to **Digital feed**, unless the section says so already.",
                "For a bus, switch **Stereo pair** on.",
                "Set **Readout** to **dBFS**, or to **LUFS** for a program that is delivered.",
            }},
            Heading{"System Output"},
            Paragraph{"The entry **System Output (what the computer is playing)** measures what "
                      "all programs play together through the default output, in stereo, and "
                      "follows when you make another output the default. It is taken ahead of the "
                      "loudspeaker; whether the volume of the output counts depends on the device, "
                      "so leave it at full."},
            Heading{"Network audio and other programs"},
            Bullets{{
                "RTP and AES67 streams are a **Device** like any other, once PipeWire takes them "
                "in: see below.",
                "The output of one program alone: make a virtual input in PipeWire, connect the "
                "program to it, and choose that.",
                "Virtual and network devices start out as **Digital feed**. If one carries a "
                "microphone, set **Source** to **Microphone**, and calibrate.",
            }},
            Heading{"An input of another machine"},
            Steps{{
                "In your home folder make the file .config/pipewire/pipewire.conf.d/network.conf. "
                "For PipeWire 0.3.65, as Debian 12 has it, put this into it: context.modules = [ { "
                "name = libpipewire-module-rtp-source args = { stream.props = { media.class = "
                "Audio/Source }}} ]",
                "For PipeWire 1.0 and newer put in this: context.modules = [ { name = "
                "libpipewire-module-rtp-sap args = { stream.rules = [ { matches = [ { rtp.session "
                "= \"~.*\" } ] actions = { create-stream = { media.class = Audio/Source }}} ]}} ]",
                "If the sender announces itself elsewhere than at 224.0.0.56, say where behind "
                "“args = {”: AES67 equipment uses sap.ip = 239.255.255.255.",
                "Log in again. Each stream that is announced becomes a **Device** by the name of "
                "its session.",
            }},
            Paragraph{"What the network loses PipeWire replaces by silence, and tells nobody: the "
                      "level falls for as long, and there is no GAP. Use a cable. A sender that is "
                      "switched off is a lost device, and is told."},
            Heading{"What can go wrong"},
            Bullets{{
                "A full-scale sine reads −3.0 dBFS and not 0: the meter shows the level of its "
                "energy, not of its peaks. **Peak** shows 0.",
                "CLIP on a feed may be no fault: mastered music touches full scale. Its true peak "
                "is under **Loudness (LUFS)**.",
                "A feed at another sample rate than the system's is converted by PipeWire. Levels "
                "stay; true peaks may move by a tenth.",
            }},
            Tip{"A calibration isn't lost when you switch a channel to **Digital feed**: it is set "
                "aside, and there again under **Microphone**."},
        },
    };
}

HelpTopic channelWindows() {
    return {
        "Channel Windows",
        "rectangle.on.rectangle",
        "Give a channel a window of its own.",
        {
            Paragraph{"A channel's window has its own meter, analyzer, spectrogram and history, "
                      "all of that one channel: the balcony on the second screen, the neighbor's "
                      "window large beside the desk."},
            Heading{"Open one"},
            Bullets{{
                "Choose the channel in **Window > Channel Windows**, or under **Extra channels** "
                "in the toolbar. Both need a channel beside the main input.",
                "Or press **Open in Window** in the channel's section in **Settings > Audio**. The "
                "main input can have one, too.",
            }},
            Paragraph{"A channel has one window: opened again, it comes to the front. Windows that "
                      "are open when you quit open again with the next launch."},
            Heading{"Arrange it"},
            Steps{{
                "Press the layout button at the right of its header.",
                "Under **Show** tick what this window needs. The last one can't be unticked.",
                "**RTA & Spectrogram**, **Graph Order** and **Level History Position** say how it "
                "is arranged. **Same as Main Window** goes by the main window, now and later.",
                "**Reset to Main Window Layout** forgets what is special here.",
            }},
            Paragraph{"Drag the grips under the meter and between the graphs: each window has its "
                      "own division. The same choices stand in the section **Channel Window** of "
                      "the channel's settings."},
            Heading{"What it shares"},
            Bullets{{
                "**Space** and **P** start, stop and pause here, too: for all channels at once.",
                "Weighting, unit, bands and colors are the channel's. A change here is one in "
                "every window that shows it.",
                "The channels laid over the graphs are those of the main window.",
            }},
            Heading{"When it stays empty"},
            Bullets{{
                "“Press Start in the main window”: nothing runs. **Space** does it from here.",
                "“Turned off in Preferences > Audio”: switch **Enabled** on in **Settings > "
                "Audio**. While metering, press **Restart Now**.",
                "“This channel has been removed.”: close the window.",
            }},
            Tip{"For a display that is read from afar show **SPL Meter** alone: the number grows "
                "with its window. **F11** in this window gives the channel's number the whole "
                "screen."},
        },
    };
}

HelpTopic windowLayout() {
    return {
        "Window Layout",
        "rectangle.3.group",
        "Arrange, pop out or hide each module.",
        {
            Paragraph{"**Layout** in the toolbar decides where each module is, and how the main "
                      "window shares its room."},
            Heading{"In one click"},
            Paragraph{
                "Under **Quick Layouts** stand **All in Main Window**, **SPL Meter Only**, **Level "
                "History Only**, and three that put one module in its own window: **SPL Meter in "
                "Its Own Window**, **RTA in Its Own Window**, **Spectrogram in Its Own Window**."},
            Heading{"Module by module"},
            Bullets{{
                "**Main Window**: here.",
                "**Separate Window**: in a window of its own, for another screen or a corner of "
                "this one. Close it, and the module is back in the main window.",
                "**Hidden**: nowhere. A graph that is hidden isn't computed, and no feedback is "
                "looked for; levels and the history are measured all the same.",
            }},
            Paragraph{"One module stays in the main window: if you send the last one away, the SPL "
                      "meter comes back."},
            Heading{"The order of things"},
            Bullets{{
                "**RTA & Spectrogram**: **Stacked**, so that both share the frequency axis, or "
                "**Side by Side**.",
                "**Graph Order**: **RTA First** or **Spectrogram First**.",
                "**Level History Position**: **Above Graphs** or **Below Graphs**. Without a graph "
                "in the window it takes all the room that is left.",
                "The grip between the graphs divides their room: drag it, use the arrow keys, or "
                "double-click for halves. The one under the meter sets its height; a double-click "
                "gives it back its own.",
                "The arrows at the right of a graph's header expand it over both, and bring the "
                "other one back.",
            }},
            Paragraph{"A window that is too small for all leaves out the second graph, then both, "
                      "then the history. They are back once it is larger."},
            Heading{"What comes back"},
            Paragraph{"Placements and windows return when Tarvane starts again, where they were; a "
                      "window whose screen is gone moves onto one that is there. Under Wayland the "
                      "desktop chooses the place, and only sizes return. A profile carries the "
                      "arrangement, but no places on the screen."},
            Tip{"Three that work: SPL meter and history alone on a small laptop; the meter in a "
                "window of its own, large, on the screen that faces the mixing position; stacked "
                "graphs for ringing out, where a tone in the analyzer stands straight above its "
                "stripe in the spectrogram."},
        },
    };
}

HelpTopic profiles() {
    return {
        "Profiles",
        "person.crop.circle",
        "Save a whole setup and recall it in one click.",
        {
            Paragraph{
                "A profile is everything that you have set, under a name: inputs, channels, "
                "calibrations, displays, layout, thresholds, Leq, loudness target, spectrogram "
                "colors. One for each room, each job, or each person at the desk."},
            Heading{"Save and load"},
            Steps{{
                "Set Tarvane up as you want it.",
                "Open **Settings > Profiles**, type a **Profile name**, press **Save**. A name "
                "that exists is overwritten, without a question.",
                "Load it from the toolbar, where the name of the profile in use stands, from the "
                "menu **Profiles**, or with **Load**. What you have changed since the last save is "
                "gone.",
                "Changed something? The item “Save to” in the menu **Profiles** puts it into the "
                "profile in use. Until then the file keeps what it had.",
            }},
            Heading{"While metering"},
            Paragraph{"A profile with other inputs starts a new session at once, and clears the "
                      "one that runs: export it before. Any profile begins the Leq anew."},
            Heading{"Several people, one microphone"},
            Paragraph{"Switch **Loading also switches input device & calibration** off. Loading "
                      "then takes name, color and display of each channel, and leaves device, "
                      "input and calibration as they are: nobody measures with somebody else's "
                      "offset. It adds and removes no channel. Leave it on to move between rooms "
                      "with their own microphones."},
            Heading{"On another computer"},
            Bullets{{
                "**Export…**, in a profile's menu, writes it to a file; **Import…** there takes it "
                "in. A name that exists gets a number, and nothing is overwritten.",
                "**Show in File Manager** opens the folder of all profiles, usually "
                "~/.local/share/Tarvane/Profiles. A file that you copy there is listed at once.",
                "A device that the other computer lacks is shown as **Unavailable Device**. Choose "
                "one that is there: until you do, the main input starts on the default input. A "
                "reference tone stays, and the form warns that it was measured on another device.",
            }},
            Heading{"Good to know"},
            Bullets{{
                "The name in the toolbar is the profile last loaded or saved. It doesn't promise "
                "that nothing was changed since.",
                "Not in a profile: the recorded session, and where windows stand.",
            }},
            Tip{"Save one profile as soon as a room is calibrated. After an evening of turning "
                "knobs it is the way back."},
        },
    };
}

}  // namespace

HelpGroup HelpChapters::setup() {
    return {
        "Setup",
        {channels(), stereoPairs(), digitalFeeds(), channelWindows(), windowLayout(), profiles()}};
}

}  // namespace TarvaneApp

#!/usr/bin/python3
"""The real program in a real window, against a real audio server: signals of known level go in, and
what comes out is what the window says to a screen reader.

    window_tests.py --list                  the names of all tests
    window_tests.py PROGRAMS NAME…          runs these tests, with the programs of that build folder

A failed test leaves a picture of the screen in the folder system-tests beside the programs.
"""

import math
import os
import re
import signal
import subprocess
import sys
import time
import traceback
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "Scripts"))
sys.dont_write_bytecode = True

from desk import Desk  # noqa: E402
from desk.processes import wait_until  # noqa: E402
from desk.program import text_of  # noqa: E402
from desk.session import Session  # noqa: E402
from desk.tone import pink_noise, rising_sine, sine_1khz  # noqa: E402
from desk.tray import Tray  # noqa: E402
import spoken  # noqa: E402
from end_to_end import Measurement, a_weighting  # noqa: E402
from network import OtherMachine  # noqa: E402

MIC = "tarvane.tone"
SYSTEM_OUTPUT = "org.brenlow.tarvane.system-output"

# A sine's RMS lies 10 log10(2) dB under its peak. All weightings are 0 dB at 1 kHz
# (IEC 61672-1, 5.4.3). Tenths are shown, so that a true reading may be half of one off.
SINE_RMS_RE_PEAK_DB = -3.01
TOLERANCE_DB = 0.1

TESTS = {}


def test(function):
    head, *rest = function.__name__.split("_")
    TESTS[head + "".join(word.capitalize() for word in rest)] = function
    return function


def expect_level(program, reading, expected):
    """Where the program tells of lost audio, as on a busy machine, also later."""
    for _ in range(10):
        shown = program.settled_level(reading)
        if abs(shown - expected) <= TOLERANCE_DB:
            return
        if not program.find("Lost audio"):
            break
    raise AssertionError(f"{reading} shows {shown}, not {expected}")


def expect(condition, what):
    assert condition, what


def metering(desk):
    """The program, metering: Space was pressed and the toolbar offers Stop."""
    program = desk.launch()
    program.start()
    return program


def uses(desk, uid):
    """The program's device, as the user chose it in an earlier run."""
    desk.write_settings(deviceUID=uid)


def stored(text):
    """A choice or a list as the settings file holds it."""
    return f'@ByteArray(\\"{text}\\")'


@test
def a_sine_reads_its_level_in_every_weighting(desk):
    desk.plug_in("--tone", "1000:-20")
    program = metering(desk)
    program.click("Slow time weighting")
    for weighting in "ACZ":
        program.click(f"{weighting} weighting")
        expect_level(program, f"SPL {weighting} Slow", -20 + SINE_RMS_RE_PEAK_DB)


@test
def fast_and_slow_agree_on_a_steady_sine(desk):
    desk.plug_in("--tone", "1000:-20")
    program = metering(desk)
    for time_weighting in ("Fast", "Slow"):
        program.click(f"{time_weighting} time weighting")
        expect_level(program, f"SPL A {time_weighting}", -20 + SINE_RMS_RE_PEAK_DB)


@test
def a_screen_reader_works_the_buttons(desk):
    desk.plug_in("--tone", "1000:-20")
    program = desk.launch()
    program.press("Start")
    program.press("Slow time weighting")
    program.press("Z weighting")
    expect_level(program, "SPL Z Slow", -20 + SINE_RMS_RE_PEAK_DB)
    program.press("Z weighting")  # what is chosen stays chosen
    expect_level(program, "SPL Z Slow", -20 + SINE_RMS_RE_PEAK_DB)
    program.press("Peak", "radio button")
    expect_level(program, "Peak C", -20)


@test
def peak_reads_the_peak(desk):
    desk.plug_in("--tone", "1000:-20")
    program = metering(desk)
    program.click("Peak", "radio button")
    for weighting in "ACZ":
        program.click(f"{weighting} peak weighting")
        expect_level(program, f"Peak {weighting}", -20)


def expect_true_peak(program, level):
    """Within EBU Tech 3341's +0.2 and -0.4 dB. A tone source that misses its turn on a busy machine
    puts a step into its own tone, which has a higher peak: then it is measured again."""
    for _ in range(8):
        peak = program.settled_level("True peak")
        if peak <= level + 0.2:
            break
        program.press("Reset Integration", "push button")
        wait_until(lambda: program.level("True peak") != peak, 10, "True peak isn't reset")
    expect(level - 0.4 <= peak <= level + 0.2, f"True peak shows {peak}, not {level}")


@test
def a_sine_reads_its_loudness(desk):
    desk.plug_in("--tone", "1000:-20")
    program = metering(desk)
    program.click("Readout unit: dBFS", "push button")
    desk.xdotool("key", "Down", "Down", "Return")  # from dBFS to the entry under it
    program.wait_for("Readout unit: LUFS", "push button")
    # A 1 kHz sine in one channel reads its RMS level (ITU-R BS.1770-4).
    expect_level(program, "Short-Term", -20 + SINE_RMS_RE_PEAK_DB)
    expect_level(program, "Integrated", -20 + SINE_RMS_RE_PEAK_DB)
    expect_true_peak(program, -20)
    program.press("Reset Integration", "push button")
    program.click("Readout unit: LUFS", "push button")
    desk.xdotool("key", "Down", "Return")
    expect_level(program, "SPL A Fast", -20 + SINE_RMS_RE_PEAK_DB)


@test
def the_keys_put_the_clock_in_the_meters_place(desk):
    desk.plug_in("--tone", "1000:-20")
    program = desk.launch()
    program.key("ctrl+shift+c")
    program.wait_for("Clock", "label")
    first = program.reading("Clock")
    wait_until(lambda: program.reading("Clock") != first, 10, "The clock stands still")
    program.key("ctrl+shift+c")
    program.wait_for("SPL A Fast", "label")


@test
def six_db_less_read_six_db_less(desk):
    file = desk.write_signal("step", sine_1khz(-20, 8) + sine_1khz(-26, 60))
    desk.plug_in("--file", file)
    program = metering(desk)
    expect_level(program, "SPL A Fast", -20 + SINE_RMS_RE_PEAK_DB)
    wait_until(lambda: program.level("SPL A Fast") < -25, 20, "The level doesn't fall")
    expect_level(program, "SPL A Fast", -26 + SINE_RMS_RE_PEAK_DB)
    # MAX keeps the first level.
    expect_level(program, "MAX", -20 + SINE_RMS_RE_PEAK_DB)


@test
def full_scale_shows_clip_and_then_that_it_clipped(desk):
    file = desk.write_signal("clip", sine_1khz(0, 6) + sine_1khz(-20, 60))
    desk.plug_in("--file", file)
    program = metering(desk)
    wait_until(lambda: program.reading("Input clipping") == "CLIP", 10, "CLIP isn't shown")
    wait_until(lambda: program.reading("Input clipping") == "CLIPPED", 15, "CLIPPED isn't shown")
    expect_level(program, "SPL A Fast", -20 + SINE_RMS_RE_PEAK_DB)
    expect(program.reading("Input clipping") == "CLIPPED", "the clip isn't latched")
    program.click("Reset Min/Max")
    wait_until(lambda: program.clip_is_clear(), 5, "Reset Min/Max doesn't clear the clip")


@test
def silence_shows_no_clip(desk):
    desk.plug_in()
    program = metering(desk)
    expect_level(program, "Peak dBFS", -60)
    expect(program.clip_is_clear(), "silence clips")


@test
def an_input_of_an_interface_is_read(desk):
    desk.plug_in("--tone", "1=1000:-40", "--tone", "4=1000:-26", channels=8, name="tarvane.eight",
                 description="Interface")
    desk.write_settings(deviceUID="tarvane.eight", channelIndex="@ByteArray(3)")
    program = metering(desk)
    expect_level(program, "SPL A Fast", -26 + SINE_RMS_RE_PEAK_DB)


@test
def the_systems_output_is_read(desk):
    uses(desk, SYSTEM_OUTPUT)
    desk.play("--tone", "1000:-20")
    program = metering(desk)
    program.click("Slow time weighting")
    for weighting in "ACZ":
        program.click(f"{weighting} weighting")
        expect_level(program, f"SPL {weighting} Slow", -20 + SINE_RMS_RE_PEAK_DB)
    program.click("Peak", "radio button")
    expect_level(program, "Peak C", -20)


@test
def a_device_is_chosen_in_preferences(desk):
    desk.plug_in("--tone", "1000:-26", name="tarvane.other", description="Other Mic")
    desk.plug_in("--tone", "1000:-20")
    program = desk.launch()
    program.key("ctrl+comma")
    program.choose("Other Mic", instead_of="Default Input")
    program.start()
    expect_level(program, "SPL A Fast", -26 + SINE_RMS_RE_PEAK_DB)
    expect("tarvane.other" in desk.settings_file().read_text(), "the device isn't stored")


@test
def the_help_opens_by_its_key_and_a_search_leads_to_a_topic(desk):
    program = desk.launch()
    program.key("ctrl+question")
    program.wait_for("Getting Started", "heading")
    desk.xdotool("search", "--sync", "--name", "^Tarvane Help$", "windowactivate", "--sync")
    desk.xdotool("key", "ctrl+f")
    desk.xdotool("type", "pistonphone")
    desk.xdotool("key", "Return")
    program.wait_for("Calibration", "heading")


# What a measurement microphone's maker sends with it, of one with a flat response.
MIC_FILE = '"Sens Factor =-30dB, SERNO: 7000123"\n20 0.0\n20000 0.0\n'


def choose_file(desk, program, path, dialog="Load Cal File"):
    """In the dialog that is open."""
    program.wait_for(dialog)
    program.type_into("File name:", str(path))
    desk.xdotool("key", "Return")


@test
def a_calibration_file_gives_sound_pressure_levels(desk):
    desk.plug_in("--tone", "1000:-20")
    good, bad = desk.folder / "mic.txt", desk.folder / "notes.txt"
    good.write_text(MIC_FILE)
    bad.write_text("nothing of use")
    program = metering(desk)
    program.key("ctrl+comma")
    program.wait_for("Not calibrated — showing raw dBFS, not real SPL", "label")
    program.press("Load Cal File…", "push button")
    choose_file(desk, program, bad)
    sentence = "The calibration file contained no valid frequency/magnitude data points."
    program.wait_for(f"notes.txt: {sentence}", "label")
    program.dismiss_alert()
    program.press("Load Cal File…", "push button")
    choose_file(desk, program, good)
    program.wait_for("Calibrated from mic cal file", "label")
    # Reference SPL less Sens Factor, and the 20 lg 2 between a sine's RMS and AES17's full scale.
    expect_level(program, "SPL A Fast", -20 + SINE_RMS_RE_PEAK_DB + 94 + 30 + 6.02)


@test
def a_calibrators_tone_reads_its_level_at_any_gain(desk):
    desk.plug_in("--tone", "1000:-20")
    program = metering(desk)
    program.key("ctrl+comma")
    program.wait_for("-23.0 dBFS → offset +117.0 dB", "label")
    program.press("Calibrate", "push button")
    program.wait_for("Calibrated from reference tone", "label")
    expect_level(program, "SPL A Fast", 94.0)
    expect(program.find("SPL compensation", "label") is None, "there is nothing to compensate")
    program.slide("Input gain", -6)
    program.wait_for("+6.0 dB", "label")
    wait_until(lambda: program.reading("Input level") == "-26.0 dBFS", 10, "the gain isn't turned")
    expect_level(program, "SPL A Fast", 94.0)
    program.press("Max", "push button")
    wait_until(lambda: program.find("SPL compensation", "label") is None, 10,
               "the compensation stays")
    wait_until(lambda: program.reading("Input level") == "-20.0 dBFS", 10, "the gain isn't turned back")
    expect_level(program, "SPL A Fast", 94.0)


@test
def a_channel_on_a_second_device_is_added_and_read_after_a_restart(desk):
    desk.plug_in("--tone", "1000:-26", name="tarvane.other", description="Other Mic")
    desk.plug_in("--tone", "1000:-20")
    program = metering(desk)
    program.key("ctrl+comma")
    program.press("Collapse Main Input", "push button")
    program.press("Add Channel", "push button")
    program.wait_for("Channel 2", "label")
    # By its first letters: the list of the main input's picker, which is closed, has one of them too.
    program.click("Default Input", "combo box")
    desk.xdotool("type", "Other")
    desk.xdotool("key", "Return")
    program.wait_for("Other Mic", "combo box")
    program.press("Open in Window", "push button")
    program.wait_for("Tarvane — Channel 2", "frame")
    program.press("Restart Now", "push button")
    expected = [-20 + SINE_RMS_RE_PEAK_DB, -26 + SINE_RMS_RE_PEAK_DB]

    def both_read():
        shown = sorted(program.levels("SPL A Fast"), reverse=True)
        return len(shown) == 2 and all(abs(level - wanted) <= TOLERANCE_DB
                                       for level, wanted in zip(shown, expected))

    wait_until(both_read, 20, f"not {expected} are read, but {program.levels('SPL A Fast')}")


@test
def a_profile_brings_a_setup_back_with_and_without_its_input(desk):
    desk.plug_in("--tone", "1000:-26", name="tarvane.other", description="Other Mic")
    desk.plug_in("--tone", "1000:-20")
    uses(desk, MIC)
    program = metering(desk)
    program.press("C weighting")
    expect_level(program, "SPL C Fast", -20 + SINE_RMS_RE_PEAK_DB)
    program.key("ctrl+comma")
    program.press("Profiles", "page tab")
    program.click("Profile name", "text")
    program.type_into("Profile name", "Night & Day")
    program.press("Save", "push button")
    program.wait_for("Profile: Night & Day", "push button")

    def other_setup():
        program.press("Audio", "page tab")
        program.click("Tone Mic", "combo box")
        desk.xdotool("type", "Other")
        desk.xdotool("key", "Return")
        program.press("Restart Now", "push button")
        program.press("Z weighting")
        expect_level(program, "SPL Z Fast", -26 + SINE_RMS_RE_PEAK_DB)
        program.press("Profiles", "page tab")

    # With its input: what is metered changes at once.
    other_setup()
    program.press("Load Night & Day", "push button")
    expect_level(program, "SPL C Fast", -20 + SINE_RMS_RE_PEAK_DB)
    # Without: the weighting comes back, and the input stays.
    other_setup()
    program.press("Loading also switches input device & calibration", "check box")
    program.press("Load Night & Day", "push button")
    expect_level(program, "SPL C Fast", -26 + SINE_RMS_RE_PEAK_DB)


@test
def a_profile_is_carried_to_another_user(desk):
    desk.plug_in("--tone", "1000:-20")
    program = desk.launch()
    program.press("C weighting")
    program.wait_for("SPL C Fast", "label")
    program.key("ctrl+comma")
    program.press("Profiles", "page tab")
    program.click("Profile name", "text")
    program.type_into("Profile name", "Show")
    program.press("Save", "push button")
    program.click("More for Show", "push button")
    time.sleep(0.5)  # until the menu has the keys
    desk.xdotool("key", "Down", "Down", "Return")  # past what overwrites it
    carried = desk.folder / "carried.json"
    choose_file(desk, program, carried, "Export Profile")
    wait_until(carried.exists, 10, "nothing is exported")
    program.quit()
    desk.become_another_user()
    program = desk.launch()
    program.wait_for("SPL A Fast", "label")
    program.key("ctrl+comma")
    program.press("Profiles", "page tab")
    for name in ("Show", "Show (2)"):
        program.press("Import…", "push button")
        choose_file(desk, program, carried, "Import Profiles")
        program.wait_for(name, "label")
    program.press("Load Show", "push button")
    program.wait_for("SPL C Fast", "label")


def seconds(time_label):
    """Of "1:15" or "1:02:05"."""
    total = 0
    for part in time_label.split(":"):
        total = 60 * total + int(part)
    return total


def gap_in_graph(desk, report):
    """The share of the graph's width at which a report's picture shows no level. The plot begins and
    ends where its page has it, 68 and 36 points from the edges, at two pixels a point."""
    size = subprocess.run(["identify", "-format", "%w %h", report], capture_output=True, text=True,
                          check=True).stdout.split()
    width, height = map(int, size)
    expect(width == 2800, f"the picture is {width} pixels wide")
    pixels = subprocess.run(["convert", report, "-depth", "8", "gray:-"], capture_output=True,
                            check=True).stdout
    ground = pixels[0]

    def row(y):
        return [pixel != ground for pixel in pixels[y * width + 136:y * width + 2728]]

    # The lowest row that is drawn all across is the axis.
    axis = next(y for y in range(height - 1, 0, -1) if all(row(y)[:2580]))
    gap = longest = 0
    for x, is_drawn in enumerate(above := row(axis - 10)):
        # A line of the grid is no level.
        is_level = is_drawn and all(above[x:x + 6])
        gap = 0 if is_level else gap + 1
        longest = max(longest, gap)
    return longest / len(above)


@test
def a_session_becomes_a_report_by_keyboard_alone(desk):
    desk.plug_in("--tone", "1000:-20")
    program = desk.launch()
    before_start = time.monotonic()
    program.start()
    started = time.monotonic()
    expect_level(program, "SPL A Fast", -20 + SINE_RMS_RE_PEAK_DB)
    time.sleep(5)
    before_pause = time.monotonic()
    program.key("p")
    program.wait_for("Resume", "push button")
    paused = time.monotonic()
    time.sleep(5)
    before_resume = time.monotonic()
    program.key("p")
    program.wait_for("Pause", "push button")
    resumed = time.monotonic()
    time.sleep(5)
    before_stop = time.monotonic()
    program.key("space")
    program.wait_for("Start", "push button")
    stopped = time.monotonic()
    for place, extension in enumerate(("pdf", "png", "txt")):
        program.key("ctrl+shift+e")
        program.wait_for("Export Level History")
        report = desk.folder / f"night.{extension}"
        desk.xdotool("key", "alt+f", *["Down"] * place)
        desk.xdotool("key", "alt+n", "ctrl+a")
        program.type_into("File name:", str(report.with_suffix("")))
        desk.xdotool("key", "Return")
        program.wait_for(f"Exported {report.name}", "label")
        expect(report.exists(), f"there is no {report.name}")
    text = (desk.folder / "night.txt").read_text()
    # Nothing is written over without asking.
    program.key("ctrl+shift+e")
    program.wait_for("Export Level History")
    desk.xdotool("key", "alt+f", "Down", "Down", "alt+n", "ctrl+a")
    program.type_into("File name:", str(desk.folder / "night"))
    desk.xdotool("key", "Return")
    program.wait_for(re.compile("night.txt already exists"), "label")
    desk.xdotool("key", "Escape", "Escape")
    expect((desk.folder / "night.txt").read_text() == text, "it is written over")
    leq = re.search(r"LAeq (-?[0-9.]+) dBFS", text)
    expect(leq and abs(float(leq.group(1)) - (-20 + SINE_RMS_RE_PEAK_DB)) <= 0.2, text)
    session = re.search(r"  Session +(\S.*\(([0-9:]+)\))", text)
    expect(session and before_stop - started - 1 <= seconds(session.group(2)) <=
           stopped - before_start, text)
    pause = re.search(r"  Paused +([0-9:]+)\n", text)
    # In whole seconds, and less a history point at either end.
    expect(pause and before_resume - paused - 1.5 <= seconds(pause.group(1)) <=
           resumed - before_pause + 0.5, text)
    read = subprocess.run(["pdftotext", "-layout", desk.folder / "night.pdf", "-"],
                          capture_output=True, text=True, check=True).stdout
    for found in (leq.group(), session.group(1)):
        expect(found in read, read)
    expect(re.search(rf"Paused +{pause.group(1)}\b", read), read)
    gap = gap_in_graph(desk, desk.folder / "night.png")
    share = seconds(pause.group(1)) / seconds(session.group(2))
    expect(abs(gap - share) <= 0.08, f"{gap} of the picture is a gap, and {share} of the session")


@test
def a_pause_keeps_the_reading_and_stop_ends_it(desk):
    tone = desk.plug_in("--tone", "1000:-20")
    program = metering(desk)
    expect_level(program, "SPL A Fast", -20 + SINE_RMS_RE_PEAK_DB)
    program.key("p")
    program.wait_for("Resume", "push button")
    expect_level(program, "SPL A Fast", -20 + SINE_RMS_RE_PEAK_DB)
    program.key("p")
    program.wait_for("Pause", "push button")
    expect_level(program, "SPL A Fast", -20 + SINE_RMS_RE_PEAK_DB)
    program.key("space")
    program.wait_for("Start", "push button")
    tone.stop()
    expect(not program.alerts(), "a device that nobody reads is missed")


ANALYZER = "Real-Time Analyzer"
HISTORY = "Level History"

# Third-octave bands alone, averaged over the session; lines as they are, not per octave.
BANDS = dict(viewMode=stored("Banded"), rtaTimeWeighting=stored("Infinite"),
             octaveNormalizedSpectrumDisplay="@ByteArray(false)",
             showPeakHold="@ByteArray(false)")

# Of a sine that lies a third of a line from the nearest one, as 500 and 1000 Hz among lines
# 48000/4096 Hz apart, a Hann window leaves sin(pi/3) / (pi/3) / (1 - 1/9).
NEAREST_LINE_DB = -0.63


def frequency_and_level(said):
    """What the analyzer says under the pointer, as "1.00 kHz  -23.0 dBFS"."""
    frequency, unit, level, _ = said.split()
    return float(frequency) * (1000 if unit == "kHz" else 1), float(level)


def across_of(display_width, frequency_hz):
    """Where a frequency stands: the axis is logarithmic from 20 Hz to 20 kHz."""
    return round(display_width * math.log10(frequency_hz / 20) / 3)


def strongest_near(program, frequency_hz):
    """What the analyzer says of the strongest line within some pixels of a frequency."""
    middle = across_of(program.extents(ANALYZER).width, frequency_hz)
    said = [program.point_into(ANALYZER, across) for across in range(middle - 5, middle + 6)]
    return max(map(frequency_and_level, said), key=lambda line: line[1])


def drawn_bands(desk, program, frequencies):
    """The levels that the analyzer's bars reach in a picture of the screen, 0 dBFS at the top and
    -140 at the foot. The bars are the one thing drawn in green."""
    place = program.extents(ANALYZER)
    pixel = desk.pixels()

    def top_of_bar(frequency):
        # A quarter of the way between centre and edge: the rules stand at round frequencies.
        x = place.x + across_of(place.width, frequency * 2 ** (-1 / 24))
        for y in range(place.y, place.y + place.height):
            red, green, blue = pixel(x, y)
            if green > red + 40 and green > blue + 40:
                return -140 * (y - place.y) / place.height
        raise AssertionError(f"there is no bar at {frequency:.0f} Hz")

    return [top_of_bar(frequency) for frequency in frequencies]


def seconds_and_level(said):
    """What the level history says under the pointer, as "1:05  (21:03:40)  -23.0 dBFS"."""
    clock = said.split()[0].split(":")
    level = re.search(r"(-?[0-9.]+) dBFS$", said)
    return (sum(int(part) * 60**power for power, part in enumerate(reversed(clock))),
            float(level.group(1)) if level else None)


@test
def pink_noise_is_flat_in_the_bands_and_adds_up_to_its_level(desk):
    samples = pink_noise(-26, 60)
    desk.write_settings(**BANDS)
    desk.plug_in("--file", desk.write_signal("pink", samples))
    program = metering(desk)
    time.sleep(25)  # of averaging: a band of 23 Hz is then within 0.2 dB (10 lg(e) / sqrt(B t))
    program.key("p")
    program.click("Expand Real-Time Analyzer")
    time.sleep(1)
    centres = [1000 * 10 ** (n / 10) for n in range(-16, 14)]
    bands = drawn_bands(desk, program, centres)
    middle = sum(bands[6:-1]) / len(bands[6:-1])  # from 100 Hz to 16 kHz
    for hz, level in zip(centres[6:-1], bands[6:-1]):
        expect(abs(level - middle) <= 1, f"{hz:.0f} Hz is at {level:.1f}, the others at {middle:.1f}")
    # 1.3 dB of the noise lie below 22.4 Hz and above 22.4 kHz, outside the bands. Lines read the
    # amplitude of a sine, so that power reads 10 lg 2 higher, and through a Hann window, whose
    # noise bandwidth is one and a half lines, 10 lg 1.5 more.
    total = 10 * math.log10(sum(10 ** (level / 10) for level in bands))
    expected = -26 - 1.3 + 10 * math.log10(2 * 1.5)
    expect(abs(total - expected) <= 1, f"the bands add up to {total:.1f} dBFS, not {expected:.1f}")


@test
def a_tone_stands_under_the_pointer_with_its_frequency_and_level(desk):
    desk.write_settings(**BANDS)
    desk.plug_in("--tone", "1000:-20")
    program = metering(desk)
    time.sleep(2)
    frequency, level = strongest_near(program, 1000)
    expect(990 <= frequency <= 1000, f"{frequency} Hz stand under the pointer")
    expect(abs(level - (-20 + NEAREST_LINE_DB)) <= TOLERANCE_DB, f"the tone reads {level}")
    expect(strongest_near(program, 200)[1] < -70, "the tone is at 200 Hz too")


@test
def a_rising_tone_raises_the_banner_with_its_note(desk):
    rising = rising_sine(1000, -55, -20, still_seconds=3, db_per_second=10, seconds=40)
    desk.plug_in("--file", desk.write_signal("rising", rising))
    program = metering(desk)
    # B5 is at 440 * 2^(14/12) = 987.77 Hz, 21 cents under the tone. A block that a busy machine loses
    # bends one look at the spectrum and not the next.
    note = re.compile(r"(1\.00kHz|999Hz|1000Hz) B5 \+(19|20|21|22|23)¢")
    wait_until(lambda: note.fullmatch(program.drawn(ANALYZER, "Ring-out") or ""), 30,
               "No banner says 1000 Hz, B5 +21¢")


@test
def a_level_step_stands_in_the_history_at_its_time(desk):
    desk.plug_in("--file", desk.write_signal("step", sine_1khz(-20, 12) + sine_1khz(-40, 60)))
    program = metering(desk)
    wait_until(lambda: (program.level("SPL A Fast") or 0) < -42, 30, "The level doesn't fall")
    time.sleep(6)
    program.key("p")
    width = program.extents(HISTORY).width
    said = [seconds_and_level(program.point_into(HISTORY, across))
            for across in range(width // 8, width * 7 // 8, 12)]
    said = [(seconds, level) for seconds, level in said if level is not None]
    before = max(seconds for seconds, level in said if abs(level - -23) <= 0.2)
    after = min(seconds for seconds, level in said if abs(level - -43) <= 0.2)
    expect(11 <= before <= after <= 13, f"the level falls from {before} to {after} s, not at 12")


@test
def two_channels_of_one_device_show_two_signals(desk):
    desk.plug_in("--tone", "1=500:-20", "--tone", "2=2000:-30", channels=2)
    channel = '[{\\"id\\":\\"11111111-2222-3333-4444-555555555555\\",' \
              '\\"name\\":\\"Stage\\",\\"channelIndex\\":1}]'
    desk.write_settings(extraChannels=f'"@ByteArray({channel})"', splWeighting=stored("Z"),
                        spectrogramChannelID="11111111-2222-3333-4444-555555555555",
                        splMeterChannelID="11111111-2222-3333-4444-555555555555", **BANDS)
    program = metering(desk)
    expect_level(program, "SPL Z Fast", -30 + SINE_RMS_RE_PEAK_DB)
    time.sleep(2)
    level = strongest_near(program, 500)[1]
    expect(abs(level - (-20 + NEAREST_LINE_DB)) <= TOLERANCE_DB, f"500 Hz read {level}")
    expect(strongest_near(program, 2000)[1] < -70, "the other channel's tone is in this one")


@test
def a_device_that_is_pulled_out_is_told_once_and_comes_back(desk):
    uses(desk, MIC)
    tone = desk.plug_in("--tone", "1000:-20")
    program = metering(desk)
    expect_level(program, "SPL A Fast", -20 + SINE_RMS_RE_PEAK_DB)
    tone.stop()
    alerts = program.wait_for_alert()
    time.sleep(2)  # a second one would come now
    expect(len(program.alerts()) == 1, f"the alerts are {program.alerts()}")
    expect("Tone Mic" in alerts[0], f"the alert says {alerts[0]!r}")
    program.dismiss_alert()
    program.wait_for("Start", "push button")
    desk.plug_in("--tone", "1000:-26")
    program.start()
    expect_level(program, "SPL A Fast", -26 + SINE_RMS_RE_PEAK_DB)


@test
def a_default_input_that_is_pulled_out_is_a_loss(desk):
    tone = desk.plug_in("--tone", "1000:-20")
    program = metering(desk)
    program.wait_for("Tone Mic (default)", "label")
    expect_level(program, "SPL A Fast", -20 + SINE_RMS_RE_PEAK_DB)
    desk.plug_in("--tone", "1000:-6", name="tarvane.other", description="Other Mic")
    tone.stop()
    alerts = program.wait_for_alert()
    expect("Tone Mic" in alerts[0], f"the alert says {alerts[0]!r}")
    time.sleep(2)  # the other one would be read by now
    expect(len(program.alerts()) == 1, f"the alerts are {program.alerts()}")
    program.dismiss_alert()
    program.wait_for("Start", "push button")
    expect_level(program, "MAX", -20 + SINE_RMS_RE_PEAK_DB)
    program.start()
    program.wait_for("Other Mic (default)", "label")
    expect_level(program, "SPL A Fast", -6 + SINE_RMS_RE_PEAK_DB)


@test
def a_lost_channel_shows_nothing_live_and_the_others_go_on(desk):
    desk.plug_in("--tone", "1000:-20")
    other = desk.plug_in("--tone", "1000:0", name="tarvane.other", description="Other Mic")
    channel = '[{\\"id\\":\\"11111111-2222-3333-4444-555555555555\\",' \
              '\\"name\\":\\"Stage\\",\\"deviceUID\\":\\"tarvane.other\\"}]'
    desk.write_settings(deviceUID=MIC, extraChannels=f'"@ByteArray({channel})"',
                        splMeterChannelID="11111111-2222-3333-4444-555555555555")
    program = metering(desk)
    expect_level(program, "SPL A Fast", SINE_RMS_RE_PEAK_DB)
    expect(program.reading("Input clipping") == "CLIP", "the clip isn't shown")
    other.stop()
    program.wait_for_alert()
    program.dismiss_alert()
    wait_until(lambda: program.level("SPL A Fast") is None, 5, "The lost channel shows a level")
    expect(not program.reading("Input clipping"), "the lost channel shows a clip")
    expect_level(program, "MAX", SINE_RMS_RE_PEAK_DB)
    program.wait_for("Stop", "push button")
    expect(strongest_near(program, 1000)[1] > -30, "the main input's spectrum has stopped")


# Stopped, it can't take what the server delivers; no level shows the hole.
@test
def lost_audio_is_marked_and_raises_no_level(desk):
    desk.plug_in("--tone", "1000:-20")
    desk.write_settings(metricMode=stored("Peak"))
    program = metering(desk)
    expect_level(program, "Peak C", -20)
    program.click("Reset Min/Max")  # the filters begin with a click of their own

    def lost():
        mark = program.find("Lost audio")  # a busy machine loses some by itself
        return float(program.reading("Lost audio").split(", ")[1].split()[0]) if mark else 0.0

    before = lost()
    os.kill(program.process.pid, signal.SIGSTOP)
    time.sleep(1.5)
    os.kill(program.process.pid, signal.SIGCONT)
    wait_until(lambda: lost() - before >= 1.0, 10, "The hole isn't shown")
    expect(lost() - before <= 3.0, f"{lost() - before} s were lost and not 1.5")
    expect_level(program, "Peak C", -20)
    expect_level(program, "MAX", -20)


NETWORK_INPUT = "Monitor World"


def metering_another_machine(desk):
    """The other machine, with a tone of -20 dBFS on its way here, and the program, metering it."""
    machine = OtherMachine(desk, NETWORK_INPUT)
    machine.play("--tone", "1000:-20")
    program = desk.launch()
    program.key("ctrl+comma")
    program.choose(NETWORK_INPUT, instead_of="Default Input")
    program.start()
    wait_for_level(program, "SPL A Fast", -20 + SINE_RMS_RE_PEAK_DB)
    return machine, program


# A network on a busy machine is late at times, and each time is a dip.
def wait_for_level(program, reading, expected):
    wait_until(lambda: abs((program.level(reading) or 0) - expected) <= TOLERANCE_DB, 30,
               f"{reading} doesn't come to {expected}")


@test
def an_input_of_another_machine_is_a_device_like_any_other(desk):
    machine, program = metering_another_machine(desk)
    program.wait_for(NETWORK_INPUT, "label")  # the toolbar names it
    program.key("space")
    program.wait_for("Start", "push button")
    program.start()
    wait_for_level(program, "SPL A Fast", -20 + SINE_RMS_RE_PEAK_DB)
    machine.switch_off()
    alerts = program.wait_for_alert(30)
    expect(NETWORK_INPUT in alerts[0], f"the alert says {alerts[0]!r}")


# PipeWire fills what a network loses with silence, and tells nobody.
@test
def what_the_network_loses_reads_as_silence_and_never_as_the_level_before(desk):
    machine, program = metering_another_machine(desk)
    machine.cable.pull_for(2.0)
    expect(machine.cable.lost > 0, "nothing was lost")
    wait_for_level(program, "SPL A Fast", -20 + SINE_RMS_RE_PEAK_DB)
    lowest = program.level("MIN")
    expect(lowest < -60, f"the hole reads {lowest}")


@test
def a_restart_of_the_server_is_told_once_and_metering_starts_again(desk):
    uses(desk, MIC)
    tone = desk.plug_in("--tone", "1000:-20")
    program = metering(desk)
    expect_level(program, "SPL A Fast", -20 + SINE_RMS_RE_PEAK_DB)
    desk.kill_audio()
    program.wait_for_alert()
    tone.stop()
    desk.serve_audio()
    desk.plug_in("--tone", "1000:-26")
    time.sleep(2)  # a second alert would come now
    expect(len(program.alerts()) == 1, f"the alerts are {program.alerts()}")
    program.dismiss_alert()
    program.wait_for("Start", "push button")
    program.start()
    expect_level(program, "SPL A Fast", -26 + SINE_RMS_RE_PEAK_DB)


@test
def an_alert_at_launch_lies_in_front_of_the_window(desk):
    program = desk.launch()
    program.wait_for_alert(20)
    program.dismiss_alert()
    time.sleep(1)
    expect(not program.alerts(), f"the alerts are {program.alerts()}")


an_alert_at_launch_lies_in_front_of_the_window.desk = {"serves_audio": False}


@test
def a_server_that_comes_after_the_program_is_found(desk):
    uses(desk, MIC)
    program = desk.launch()
    program.wait_for_alert(20)  # there are no devices
    program.dismiss_alert()
    program.key("space")
    program.wait_for_alert(20)  # nor a server
    program.dismiss_alert()
    program.wait_for("Start", "push button")
    desk.serve_audio()
    desk.plug_in("--tone", "1000:-20")
    program.wait_for("Tone Mic", "label")
    program.start()
    expect_level(program, "SPL A Fast", -20 + SINE_RMS_RE_PEAK_DB)


a_server_that_comes_after_the_program_is_found.desk = {"serves_audio": False}


@test
def settings_survive_a_restart(desk):
    desk.plug_in("--tone", "1000:-20")
    program = metering(desk)
    program.click("Z weighting")
    program.click("Slow time weighting")
    expect_level(program, "SPL Z Slow", -20 + SINE_RMS_RE_PEAK_DB)
    program.quit()
    program = metering(desk)
    expect_level(program, "SPL Z Slow", -20 + SINE_RMS_RE_PEAK_DB)


RTA_WINDOW = "Tarvane — Real-Time Analyzer"


def place_of(program, name, role="frame"):
    """Where a window is and how large."""
    place = program.extents(name, role)
    return place.x, place.y, place.width, place.height


@test
def a_popped_out_module_comes_back_to_where_it_was(desk):
    program = desk.launch()
    program.click("Layout", "push button")
    desk.xdotool("key", "Up", "Up", "Return")  # RTA in Its Own Window
    program.wait_for(RTA_WINDOW, "frame")
    window = desk.xdotool_output("search", "--onlyvisible", "--name", RTA_WINDOW).split()[0]
    desk.xdotool("windowsize", "--sync", window, "640", "360")
    desk.xdotool("windowmove", "--sync", window, "150", "120")
    wait_until(lambda: place_of(program, RTA_WINDOW)[2:] == (640, 360), 10, "it keeps its size")
    place = place_of(program, RTA_WINDOW)
    program.quit()

    program = desk.launch()
    program.wait_for(RTA_WINDOW, "frame")
    wait_until(lambda: place_of(program, RTA_WINDOW) == place, 10, "it is elsewhere")
    desk.xdotool("search", "--onlyvisible", "--name", RTA_WINDOW, "windowactivate", "--sync", "key",
                 "ctrl+w")
    wait_until(lambda: program.find(RTA_WINDOW, "frame") is None, 10, "it doesn't close")
    program.wait_for("Real-Time Analyzer", "label")  # in the main window again
    program.quit()

    program = desk.launch()
    program.wait_for("Real-Time Analyzer", "label")
    expect(program.find(RTA_WINDOW, "frame") is None, "a closed window came back")


@test
def without_the_main_window_metering_goes_on(desk):
    desk.plug_in("--tone", "1000:-20")
    program = metering(desk)
    program.click("Layout", "push button")
    desk.xdotool("key", "Up", "Up", "Up", "Return")  # SPL Meter in Its Own Window
    program.wait_for("Tarvane — SPL Meter", "frame")
    program.key("alt+F4")
    wait_until(lambda: program.find("Tarvane", "frame") is None, 10, "it doesn't close")
    expect_level(program, "SPL A Fast", -20 + SINE_RMS_RE_PEAK_DB)
    desk.xdotool("search", "--onlyvisible", "--name", "SPL Meter", "windowactivate", "--sync",
                 "key", "ctrl+0")
    program.wait_for("Stop", "push button")


@test
def a_second_launch_brings_the_closed_window_back(desk):
    desk.plug_in("--tone", "1000:-20")
    program = metering(desk)
    program.key("alt+F4")
    wait_until(lambda: program.find("Tarvane", "frame") is None, 10, "it doesn't close")
    expect(program.is_running(), "the program ended with its last window")
    again = desk.processes.start("again", [str(desk.program("tarvane"))], desk.env)
    expect(again.wait(20) == 0, "the second program stays")
    program.wait_for("Stop", "push button")  # metering all the time
    expect_level(program, "SPL A Fast", -20 + SINE_RMS_RE_PEAK_DB)


def launch_again(desk):
    """A second launch, which hands over to the first and goes."""
    again = desk.processes.start("again", [str(desk.program("tarvane"))], desk.env)
    expect(again.wait(20) == 0, "the second program stays")


def is_on_screen(desk, program):
    """Whether the main window is mapped, as the X server has it."""
    return desk.xdotool("search", "--all", "--onlyvisible", "--pid", str(program.process.pid),
                        "--name", "^Tarvane$")


@test
def a_second_launch_brings_a_minimised_window_back(desk):
    program = desk.launch()
    program.wait_for("Start", "push button")
    desk.xdotool("windowminimize", "--sync", program.window_id())
    wait_until(lambda: not is_on_screen(desk, program), 10, "it doesn't minimise")
    launch_again(desk)
    wait_until(lambda: is_on_screen(desk, program), 10, "it stays minimised")
    program.wait_for("Start", "push button")
    wait_until(lambda: desk.xdotool_output("getactivewindow").strip() == program.window_id(), 10,
               "it isn't the active window")


@test
def a_second_launch_brings_a_window_behind_another_to_the_front(desk):
    program = desk.launch()
    program.wait_for("Start", "push button")
    program.key("ctrl+comma")
    wait_until(lambda: desk.xdotool_output("getactivewindow").strip() != program.window_id(), 10,
               "Preferences doesn't come to the front")
    launch_again(desk)
    wait_until(lambda: desk.xdotool_output("getactivewindow").strip() == program.window_id(), 10,
               "the main window stays behind")


@test
def a_launch_beside_a_stuck_program_says_so(desk):
    program = desk.launch()
    program.wait_for("Start", "push button")
    program.process.send_signal(signal.SIGSTOP)
    try:
        def window_of(child):
            return desk.xdotool_output("search", "--all", "--onlyvisible", "--pid",
                                       str(child.pid), "--name", "^Tarvane$").split()

        def launch_and_press(*keys):
            child = desk.processes.start("beside", [str(desk.program("tarvane"))], desk.env)
            box = wait_until(lambda: window_of(child), 20, "the launch shows nothing")[0]
            desk.xdotool("windowactivate", "--sync", box)
            desk.xdotool("key", *keys)
            return child, box

        gives_up, _ = launch_and_press("Escape")
        expect(gives_up.wait(20) == 1, "the launch that was given up doesn't end")
        starts, box = launch_and_press("Tab", "space")
        wait_until(lambda: window_of(starts) not in ([], [box]), 20, "it doesn't start anyway")
        launch_again(desk)
    finally:
        program.process.send_signal(signal.SIGCONT)


def is_checked(program, name, role="check box"):
    return program.has_state(program.find(name, role), "CHECKED")


# On an account that has never seen the program, as it lies there with no settings file.
@test
def a_newcomer_reads_a_level_after_the_space_bar(desk):
    desk.plug_in("--tone", "1000:-20")
    expect(not desk.settings_file().exists(), "the account isn't fresh")
    program = desk.launch()
    program.wait_for("Press Space to start", "label")
    program.wait_for("Tone Mic (default)", "label")
    place = program.extents("Tarvane", "frame")
    width, height = desk.size
    expect(place.x >= 0 and place.y >= 0 and place.x + place.width <= width and
           place.y + place.height <= height, f"the window doesn't fit: {place.width}×{place.height}")
    program.key("space")
    expect_level(program, "SPL A Fast", -20 + SINE_RMS_RE_PEAK_DB)
    expect(not program.find("Press Space to start"), "the prompt stays")


@test
def a_newcomer_without_an_input_is_told_what_is_missing(desk):
    program = desk.launch()
    program.wait_for_alert(20)
    program.dismiss_alert()
    program.wait_for("No input device", "label")
    program.wait_for("Connect one, or choose System Output in Settings.", "label")
    expect(not program.find("Press Space to start"), "it can't start and says that it can")
    desk.serve_audio()
    desk.plug_in("--tone", "1000:-20")
    program.wait_for("Press Space to start", "label")


a_newcomer_without_an_input_is_told_what_is_missing.desk = {"serves_audio": False}


@test
def with_all_modules_popped_out_the_main_window_keeps_the_meter(desk):
    desk.plug_in("--tone", "1000:-20")
    desk.write_settings(**{f"{module}Placement": stored("Separate Window") for module in
                           ("splMeter", "rta", "spectrogram", "levelHistory")})
    program = desk.launch()
    program.wait_for(RTA_WINDOW, "frame")
    expect(program.find("Tarvane — SPL Meter", "frame") is None, "the main window is empty")
    program.start()
    # The history's window has a label of that name, too.
    wait_until(lambda: [level for level in program.levels("SPL A Fast")
                        if abs(level - (-20 + SINE_RMS_RE_PEAK_DB)) <= TOLERANCE_DB], 20,
               "the meter isn't there")
    program.click("Layout", "push button")
    program.press("All in Main Window", "menu item")
    wait_until(lambda: program.find(RTA_WINDOW, "frame") is None, 10, "it doesn't come back")


# Under Wayland a place on the screen is the compositor's to give: popovers, menus and windows are
# proved by the pointer, which meets them where the program says they are.
@test
def the_first_start_under_wayland_reads_a_level(desk):
    desk.plug_in("--tone", "1000:-20")
    program = desk.launch()
    program.wait_for("Press Space to start", "label")
    program.key("space")
    program.wait_for("Stop", "push button")
    expect_level(program, "SPL A Fast", -20 + SINE_RMS_RE_PEAK_DB)
    launch_again(desk)
    program.wait_for("Stop", "push button")  # metering all the time
    expect(program.is_running(), "the second launch ended the first")


the_first_start_under_wayland_reads_a_level.desk = {"wayland": True}


@test
def popovers_and_dividers_under_wayland_follow_the_pointer(desk):
    program = desk.launch()
    program.wait_for("Start", "push button")
    program.open("RTA options", "Octave-normalized display", "check box")
    before = is_checked(program, "Octave-normalized display")
    time.sleep(0.5)  # until the popover has the pointer
    program.click("Octave-normalized display", "check box")
    wait_until(lambda: is_checked(program, "Octave-normalized display") != before, 10,
               "the pointer misses the popover")
    desk.xdotool("key", "Escape")
    wait_until(lambda: not program.find("Octave-normalized display"), 10, "the popover stays")

    divider = program.extents("Divider under the SPL meter", "separator")
    x, y = divider.x + divider.width // 2, divider.y + divider.height // 2
    desk.xdotool("mousemove", str(x), str(y), "mousedown", "1")
    for down in (20, 50):
        desk.xdotool("mousemove", str(x), str(y + down))
    desk.xdotool("mouseup", "1")
    wait_until(lambda: program.extents("Divider under the SPL meter", "separator").y ==
               divider.y + 50, 10, "the divider doesn't follow the pointer")


popovers_and_dividers_under_wayland_follow_the_pointer.desk = {"wayland": True}


@test
def a_popped_out_module_comes_back_under_wayland(desk):
    program = desk.launch()
    program.wait_for("Start", "push button")
    program.open("Layout", "RTA in Its Own Window", "menu item")
    time.sleep(0.5)  # until the menu has the keys
    desk.xdotool("key", "Up", "Up", "Return")
    program.wait_for(RTA_WINDOW, "frame")
    desk.xdotool("key", "ctrl+q")
    wait_until(lambda: not program.is_running(), 10, "the program doesn't end")
    program = desk.launch()
    program.wait_for(RTA_WINDOW, "frame")


a_popped_out_module_comes_back_under_wayland.desk = {"wayland": True}


def radio(*names):
    return [("radio button", name) for name in names]


def boxes(*names):
    return [("check box", name) for name in names]


def items(*names):
    return [("menu item", name) for name in names]


def entries(*names):
    return [("list item", name) for name in names]


def submenus(*named):
    """Each a title with its choices."""
    return [control for title, *choices in named for control in items(title) + radio(*choices)]


CHANNELS = ("Main Input", "Stage", "Truck")
BANDS_OFFERED = [f"1/{share} Octave" for share in (1, 3, 6, 12, 24, 48)]
TARGET_CURVES = ("None", "Flat", "X-Curve (SMPTE ST202 / ISO 2969)")
SENSITIVITIES = ("Low", "Normal", "High")
LOUDNESS_TARGETS = ("EBU R128 (−23 LUFS)", "ATSC A/85 (−24 LKFS)", "Streaming (−14 LUFS)",
                    "Podcast (−16 LUFS)")
MODULES = ("SPL Meter", "Real-Time Analyzer", "Spectrogram", "Level History")
ARRANGEMENT = (("RTA & Spectrogram", "Stacked", "Side by Side"),
               ("Graph Order", "RTA First", "Spectrogram First"),
               ("Level History Position", "Above Graphs", "Below Graphs"))
RTA_OPTIONS = [
    *radio("Green", "Blue", "Pink", "Yellow", "Violet", "Cyan", "Orange", "White"),
    *radio("Bands", "Line", "Both"), ("push button", "Bands: 1/3 Octave"), *boxes("Peak hold"),
    *radio("Orange", "Red", "Yellow", "White", "Cyan", "Pink"),
    *boxes("Octave-normalized display"), ("push button", "Target curve: Flat"),
    ("slider", "Target curve level"), *boxes("Ring-Out"),
    ("push button", "Ring-Out sensitivity: Normal")]

# What opens in each window, by what the name of its opener begins with, and its controls in reading
# order. "RTA options > Bands: " is the menu of a button in a popover.
OPENED = {
    "Tarvane": {
        "File": items("Export Level History…", "Settings…", "Quit"),
        "View": [*boxes("Show Clock Instead of SPL Meter", "Show Level Bar in SPL Meter"),
                 *items("Full-Screen SPL Meter")],
        "Profiles": [*radio("Matinee", "Night"), *items('Save to "Night"', "Manage Profiles…")],
        "Window": items("Show Main Window", "Channel Windows", *CHANNELS),
        "Help": items("Tarvane Help", "What's New in Tarvane", "About Tarvane"),
        "Profile: Night": [*radio("Matinee", "Night"), *items("Manage Profiles…")],
        "Extra channels": items(*CHANNELS, "Channel Settings…"),
        "Layout": [
            *submenus(*((module, "Main Window", "Separate Window", "Hidden")
                        for module in MODULES), *ARRANGEMENT),
            *items("All in Main Window", "SPL Meter Only", "Level History Only",
                   "SPL Meter in Its Own Window", "RTA in Its Own Window",
                   "Spectrogram in Its Own Window")],
        "Channel: Main Input": radio(*CHANNELS),
        "Readout unit: dBFS": radio("dBFS", "LUFS"),
        "RTA channel: Main Input": radio(*CHANNELS),
        "Overlay other channels on this RTA": [*boxes("Stage", "Truck"), *items("Clear Overlays")],
        "Averaging: ": radio("Fast", "Slow", "Infinite", "None"),
        "RTA readout unit: dBFS": radio("dBFS", "LUFS"),
        "RTA options": RTA_OPTIONS,
        "RTA options > Bands: ": radio(*BANDS_OFFERED),
        "RTA options > Target curve: ": radio(*TARGET_CURVES),
        "RTA options > Ring-Out sensitivity: ": radio(*SENSITIVITIES),
        "Spectrogram channel: Main Input": radio(*CHANNELS),
        "Level history channel: Main Input": radio("Follow SPL Meter", *CHANNELS),
        "Overlay other channels' history":
            boxes("Stage", "Truck  (reads in LUFS, this history in dBFS)"),
        "Time range: Session": radio("Session", "Last 1 min", "Last 5 min", "Last 15 min"),
    },
    # As narrow as their modules get, with menus in the place of buttons.
    "Tarvane — Stage": {
        "Layout": [*boxes("SPL Meter", "Real-Time Analyzer", "Spectrogram", "Level History"),
                   *(("combo box", title) for title, *_ in ARRANGEMENT),
                   ("push button", "Reset to Main Window Layout")],
        **{f"Layout > {title}": entries("Same as Main Window", *choices)
           for title, *choices in ARRANGEMENT},
        "Metric: SPL": radio("SPL", "Peak", "Leq"),
        "Weighting: A": radio("A", "C", "Z"),
        "Time weighting: Fast": radio("Fast", "Slow", "Infinite", "None"),
        "Adjust Floor": [("slider", name) for name in ("Floor", "Ceiling", "Speed",
                                                       "Slice Height")],
    },
    "Tarvane — Truck": {
        "Loudness: ": radio("M", "S", "I", "LRA", "TP", "M Max", "S Max"),
        "Loudness target: EBU R128 (−23 LUFS)": radio(*LOUDNESS_TARGETS),
    },
}
# The same in each tab of the Settings.
OF_SETTINGS = {
    "Audio": {
        "Device": entries("Default Input", "Measurement Mic", "Test Interface 8ch", "Tone Mic",
                          "System Output (what the computer is playing)"),
        "Input": entries("Input 1", "Input 2"),
        "Source": entries("Microphone", "Digital feed"),
        "Readout": entries("dBFS", "LUFS"),
        "RTA view": entries("Banded", "Line", "Both"),
        "Band resolution": entries(*BANDS_OFFERED),
        "Target curve: ": radio(*TARGET_CURVES),
        "Sensitivity": entries(*SENSITIVITIES),
    },
    "Display": {},
    "Leq": {
        "Weighting": entries("A", "C", "Z"),
        "Integration time": entries("1 sec", "10 sec", "1 min", "15 min", "1 hour", "8 hours",
                                    "24 hours"),
    },
    "Loudness": {
        "Preset": entries(*LOUDNESS_TARGETS),
        "Headline value": entries("Momentary", "Short-Term", "Integrated"),
    },
    "Traffic Light": {},
    "Profiles": {"More for Night": items("Overwrite with Current Settings", "Export…", "Delete…")},
}
OPENERS = ("push button", "menu item", "combo box")


def opener_in(shown, name):
    """Of what is shown, by the beginning of its name."""
    for _, it in shown.walk():
        if it.role in OPENERS and it.called().startswith(name):
            return it
    raise AssertionError(f"nothing is called {name!r} in {shown.controls()}")


def open_under(opener):
    """What it opens, read once it is open."""
    spoken.press(opener.element)
    popup = wait_until(lambda: spoken.popup_of(opener.element), 10,
                       f"{opener.called()!r} opens nothing")
    return spoken.read(popup)


def close_under(desk, opener):
    """By Escape, which closes what was opened last and nothing else."""
    expect(spoken.popup_of(opener.element), f"what {opener.called()!r} opened is gone already")
    desk.xdotool("key", "Escape")
    wait_until(lambda: spoken.popup_of(opener.element) is None, 10,
               f"Escape doesn't close {opener.called()!r}")


def expect_faultless(where, shown):
    found = list(spoken.faults(shown))
    expect(not found, "\n".join((f"{where}:", *found)))


def expect_opened(desk, window, way, controls):
    openers, shown = [], window
    for name in way.split(" > "):
        openers.append(opener_in(shown, name))
        shown = open_under(openers[-1])
    where = f"{window.name} > {way}"
    expect(shown.controls() == controls, f"{where} has {shown.controls()}")
    expect_faultless(where, shown)
    for opener in reversed(openers):
        close_under(desk, opener)


def expect_all_opened(desk, window, opened):
    expect_faultless(window.name, window)
    for way, controls in opened.items():
        expect_opened(desk, window, way, controls)


def expect_dialog(desk, program, title, role="dialog"):
    """Faultless as it lies there; Escape closes it."""
    expect_faultless(title, spoken.read(program.wait_for(title, role)))
    desk.xdotool("key", "Escape")
    wait_until(lambda: program.find(title, role) is None, 10, f"Escape doesn't close {title!r}")


def read_window(program, title):
    return spoken.read(program.wait_for(title, "frame"))


def three_channels(desk):
    """The main input, a channel in dBFS and one in LUFS, of one device."""
    desk.plug_in("--tone", "1000:-20", channels=2)
    channels = ",".join(
        '{\\"id\\":\\"%s\\",\\"name\\":\\"%s\\",\\"channelIndex\\":1,\\"measuresLoudness\\":%s}'
        % channel for channel in (("11111111-2222-3333-4444-555555555555", "Stage", "false"),
                                  ("21111111-2222-3333-4444-555555555555", "Truck", "true")))
    desk.write_settings(extraChannels=f'"@ByteArray([{channels}])"', targetCurveName="Flat")


def save_profiles(desk, program, *names):
    program.key("ctrl+comma")
    program.press("Profiles", "page tab")
    for name in names:
        program.click("Profile name", "text")
        desk.xdotool("key", "ctrl+a")
        program.type_into("Profile name", name)
        program.press("Save", "push button")
        program.wait_for(f"More for {name}", "push button")


def resize(desk, title, width, height):
    window = desk.xdotool_output("search", "--onlyvisible", "--name", f"^{title}$").split()[0]
    desk.xdotool("windowsize", "--sync", window, str(width), str(height))
    desk.xdotool("windowactivate", "--sync", window)


@test
def a_screen_reader_reads_all_that_opens(desk):
    three_channels(desk)
    program = metering(desk)
    save_profiles(desk, program, "Matinee", "Night")
    for tab, opened in OF_SETTINGS.items():
        program.press(tab, "page tab")
        expect_all_opened(desk, read_window(program, "Settings"), opened)
    program.press("More for Night", "push button")
    program.press("Delete…", "menu item")
    expect_dialog(desk, program, "Profiles", "alert")
    program.press("Audio", "page tab")
    program.press("Load Cal File…", "push button")
    expect_dialog(desk, program, "Load Cal File")
    desk.xdotool("key", "Escape")
    program.bring_to_front()
    for title, opened in OPENED.items():
        if title != "Tarvane":
            program.press("Extra channels", "push button")
            program.press(title.removeprefix("Tarvane — "), "menu item")
            program.wait_for(title, "frame")
            resize(desk, title, 480, 800)
            time.sleep(0.5)  # until its modules have arranged themselves
        expect_all_opened(desk, read_window(program, title), opened)
    program.key("ctrl+shift+e")
    expect_dialog(desk, program, "Export Level History")


def open_tray(desk):
    return Tray(desk.env["DBUS_SESSION_BUS_ADDRESS"])


def expect_tray(tray, tool_tip, *labels):
    wait_until(lambda: tray.tool_tip() == tool_tip, 10,
               f"the tray says {tray.tool_tip()!r}, not {tool_tip!r}")
    wait_until(lambda: tray.labels() == [*labels, "Show Main Window", "Quit"], 10,
               f"the tray offers {tray.labels()}")


@test
def the_tray_shows_the_state_and_works_the_program(desk):
    tray = open_tray(desk)
    desk.plug_in("--tone", "1000:-20")
    program = desk.launch()
    tray.wait_for_icon()
    expect(tray.property("Status") == "Active" and tray.property("Id") == "Tarvane",
           "the icon is hidden, or another program's")
    expect_tray(tray, "Tarvane: not metering", "Start", "Pause")
    expect([item.is_enabled for item in tray.menu()] == [True, False, True, True],
           "what can't be paused can be chosen")
    pictures = {tray.picture()}
    tray.choose("Start")
    expect_tray(tray, "Tarvane: metering Tone Mic (default)", "Stop", "Pause")
    expect_level(program, "SPL A Fast", -20 + SINE_RMS_RE_PEAK_DB)
    pictures.add(tray.picture())
    tray.choose("Pause")
    expect_tray(tray, "Tarvane: paused", "Stop", "Resume")
    pictures.add(tray.picture())
    expect(len(pictures) == 3, "idle, running and paused look alike")
    tray.choose("Resume")
    expect_tray(tray, "Tarvane: metering Tone Mic (default)", "Stop", "Pause")
    for bring_back in (tray.activate, lambda: tray.choose("Show Main Window")):
        program.key("alt+F4")
        wait_until(lambda: program.find("Tarvane", "frame") is None, 10, "it doesn't close")
        bring_back()
        program.wait_for("Stop", "push button")
    tray.choose("Stop")
    expect_tray(tray, "Tarvane: not metering", "Start", "Pause")
    tray.choose("Quit")
    wait_until(lambda: not program.is_running(), 10, "the program doesn't end")


@test
def the_tray_tells_of_a_clip(desk):
    tray = open_tray(desk)
    desk.plug_in("--tone", "1000:0")
    metering(desk)
    tray.wait_for_icon()
    expect_tray(tray, "Tarvane: clipping, Main Input", "Stop", "Pause")


@test
def a_panel_that_comes_later_or_again_has_the_icon(desk):
    program = desk.launch()
    program.wait_for("Start", "push button")
    tray = open_tray(desk)
    tray.wait_for_icon()
    tray.close()
    tray = open_tray(desk)
    tray.wait_for_icon()
    expect_tray(tray, "Tarvane: not metering", "Start", "Pause")


@test
def the_signals_of_the_standards_read_right_at_96_khz(desk):
    for reading in Measurement(desk, 96000).readings():
        expect(reading.is_within(), str(reading))


the_signals_of_the_standards_read_right_at_96_khz.desk = {"rate": 96000}


@test
def settings_that_cannot_be_saved_are_told(desk):
    desk.settings_file().parent.mkdir(parents=True)
    os.mkfifo(desk.settings_file())
    desk.plug_in("--tone", "1000:-20")
    program = desk.launch()
    alerts = program.wait_for_alert(20)
    expect(f"couldn't save its settings to {desk.settings_file()}: it isn't a regular file"
           in alerts[0], f"the alert says {alerts[0]!r}")
    program.dismiss_alert()
    program.start()
    program.click("Z weighting")
    expect_level(program, "SPL Z Fast", -20 + SINE_RMS_RE_PEAK_DB)
    expect(not program.alerts(), "it is told again")
    desk.settings_file().unlink()
    wait_until(lambda: desk.settings_file().exists() and
               "splWeighting" in desk.settings_file().read_text(), 20, "it isn't tried again")
    program.quit()


def metering_z_weighted(desk):
    """A measurement under a setting that its user has just changed."""
    desk.plug_in("--tone", "1000:-20")
    program = metering(desk)
    program.click("Z weighting")
    expect_level(program, "SPL Z Fast", -20 + SINE_RMS_RE_PEAK_DB)
    return program


@test
def the_systems_end_keeps_settings_and_tells_of_the_measurement(desk):
    program = metering_z_weighted(desk)
    program.process.send_signal(signal.SIGTERM)
    expect(program.process.wait(20) == 0, "it doesn't end cleanly")
    program = desk.launch()
    program.wait_for(re.compile("The last measurement was cut short"), "label")
    program.start()
    expect_level(program, "SPL Z Fast", -20 + SINE_RMS_RE_PEAK_DB)
    program.quit()
    program = desk.launch()
    program.wait_for("Start", "push button")
    expect(not program.find(re.compile("cut short"), "label"), "it is told again")


def expect_cut_short(desk, weighting):
    """The next launch has the settings of the last, and tells once that its measurement was ended."""
    program = desk.launch()
    program.wait_for(re.compile("The last measurement was cut short"), "label")
    program.press("Start")
    expect_level(program, f"SPL {weighting} Fast", -20 + SINE_RMS_RE_PEAK_DB)
    program.press("Stop")
    program.wait_for("Start", "push button")


@test
def the_desktops_session_ends_it_cleanly(desk):
    session = Session()
    desk.env["SESSION_MANAGER"] = session.address
    program = metering_z_weighted(desk)
    session.end()
    expect(program.process.wait(20) == 0, "it doesn't end cleanly")
    expect(session.was_saved.is_set(), "it ends without a word")
    session.close()
    del desk.env["SESSION_MANAGER"]
    expect_cut_short(desk, "Z")


def lose_the_display(desk):
    program = metering_z_weighted(desk)
    desk.lose_display()
    program.process.wait(20)
    expect_cut_short(desk, "Z")


@test
def a_display_that_goes_costs_no_setting_and_is_told(desk):
    lose_the_display(desk)


@test
def a_compositor_that_goes_costs_no_setting_and_is_told(desk):
    lose_the_display(desk)


a_compositor_that_goes_costs_no_setting_and_is_told.desk = {"wayland": True}


@test
def f11_covers_the_screen_with_the_level(desk):
    desk.plug_in("--tone", "1000:-20")
    program = metering(desk)
    program.key("F11")
    stage = "Tarvane — Full-Screen SPL Meter"
    wait_until(lambda: place_of(program, stage, None) == (0, 0, *desk.size), 10,
               "it doesn't cover the screen")
    level = re.compile(r"^SPL A Fast  \(dBFS, uncalibrated\)$")
    wait_until(lambda: text_of(program.wait_for(level, "label")) == "-23.0", 10,
               "it doesn't show the level")
    desk.xdotool("key", "Escape")
    wait_until(lambda: not program.find(stage), 10, "it stays")
    program.wait_for("Stop", "push button")


@test
def a_covered_window_computes_nothing_and_is_of_now_when_it_is_seen_again(desk):
    uses(desk, SYSTEM_OUTPUT)
    tone = desk.play("--tone", "1000:-20")
    program = metering(desk)

    def loudest():
        return text_of(program.wait_for(ANALYZER, "chart")).partition(":")[0]

    wait_until(lambda: loudest() == "1k", 20, "the analyzer doesn't show the tone")
    program.key("F11")
    stage = "Tarvane — Full-Screen SPL Meter"
    wait_until(lambda: place_of(program, stage, None) == (0, 0, *desk.size), 10,
               "the main window isn't covered")
    tone.stop()
    desk.play("--tone", "500:-20")
    wait_for_level(program, "SPL A Fast", -20 + SINE_RMS_RE_PEAK_DB + a_weighting(500))
    expect(loudest() == "1k", f"the covered analyzer has gone on: {loudest()}")
    desk.xdotool("key", "Escape")
    wait_until(lambda: loudest() == "500", 20, "the analyzer doesn't go on")


@test
def a_terminal_is_answered_without_a_display(desk):
    def said(*arguments, **variables):
        env = {name: value for name, value in desk.env.items()
               if name not in ("DISPLAY", "QT_QPA_PLATFORM")} | variables
        ended = subprocess.run([desk.program("tarvane"), *arguments], env=env, timeout=60,
                               stdin=subprocess.DEVNULL, capture_output=True, text=True)
        return ended.returncode, ended.stdout, ended.stderr

    code, out, err = said("--version")
    expect(code == 0 and re.fullmatch(r"Tarvane \d+\.\d+\.\d+\n", out) and not err, out + err)
    code, out, err = said("--help")
    expect(code == 0 and out.startswith("Usage: tarvane") and not err, out + err)
    code, out, err = said("--frobnicate")
    expect(code == 2 and not out, f"an unknown option ends with {code}: {out}")
    expect(err == "tarvane: unknown option '--frobnicate'; see tarvane --help\n", err)
    code, out, err = said()
    expect(code == 1 and not out, f"without a display it ends with {code}: {out}")
    expect(err == "tarvane: no window can be opened: there is no display: neither DISPLAY nor "
           "WAYLAND_DISPLAY is set\n", err)
    code, out, err = said(DISPLAY=":64999")
    expect(code == 1 and err.startswith("tarvane: no window can be opened: ")
           and ":64999" in err and err.count("\n") == 1, err)


def run(programs, name):
    """Whether the test passed."""
    function = TESTS[name]
    began = time.monotonic()
    with Desk(programs, **getattr(function, "desk", {})) as desk:
        try:
            function(desk)
        except BaseException:
            traceback.print_exc()
            pictures = programs.parent / "system-tests"
            pictures.mkdir(exist_ok=True)
            desk.screenshot(pictures / f"{name}.png")
            print(f"Picture: {pictures / name}.png\n{desk.processes.log('tarvane')}")
            return False
        expect(not desk.has_crashed(), "the program crashed")
    print(f"{name} passed in {time.monotonic() - began:.1f} s")
    return True


def main():
    if sys.argv[1:] == ["--list"]:
        print("\n".join(TESTS))
        return 0
    programs, names = Path(sys.argv[1]).resolve(), sys.argv[2:] or list(TESTS)
    if len(names) == 1:
        return 0 if run(programs, names[0]) else 1
    # A process each: the accessibility library stays with the first bus that it meets.
    ended = [subprocess.run([__file__, programs, name]).returncode for name in names]
    return 1 if any(ended) else 0


if __name__ == "__main__":
    sys.exit(main())

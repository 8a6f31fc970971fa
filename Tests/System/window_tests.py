#!/usr/bin/python3
"""The real program in a real window, against a real audio server: signals of known level go in, and
what comes out is what the window says to a screen reader.

    window_tests.py --list                  the names of all tests
    window_tests.py PROGRAMS NAME…          runs these tests, with the programs of that build folder

A failed test leaves a picture of the screen in the folder system-tests beside the programs.
"""

import subprocess
import sys
import time
import traceback
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "Scripts"))
sys.dont_write_bytecode = True

from desk import Desk  # noqa: E402
from desk.processes import wait_until  # noqa: E402
from desk.tone import sine_1khz  # noqa: E402

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
    shown = program.settled_level(reading)
    assert abs(shown - expected) <= TOLERANCE_DB, f"{reading} shows {shown}, not {expected}"


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
    program.press("Peak", "check box")
    expect_level(program, "Peak C", -20)


@test
def peak_reads_the_peak(desk):
    desk.plug_in("--tone", "1000:-20")
    program = metering(desk)
    program.click("Peak", "check box")
    for weighting in "ACZ":
        program.click(f"{weighting} peak weighting")
        expect_level(program, f"Peak {weighting}", -20)


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
    expect_level(program, "PEAK dBFS", -60)
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
    program.click("Peak", "check box")
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
def a_server_that_comes_after_the_program_is_found(desk):
    uses(desk, MIC)
    program = desk.launch()
    program.key("space")
    program.wait_for_alert(20)
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

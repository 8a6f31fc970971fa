#!/usr/bin/python3
"""The signals of the standards from an audio server to the window: played into the machine's output,
metered as System Output, and read as a user reads them.

    end_to_end.py PROGRAMS [RATE…]    at these sample rates, 44100, 48000, 96000 and 192000 unless told

Nothing on the way converts the rate, so that what is measured is the program at that rate. Readings are shown
in tenths, which is half a tenth more than a standard's limits.
"""

import array
import math
import subprocess
import sys
import time
from dataclasses import dataclass
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "Scripts"))
sys.dont_write_bytecode = True

from desk import Desk  # noqa: E402
from desk.processes import wait_until  # noqa: E402

RATES = (44100, 48000, 96000, 192000)
SYSTEM_OUTPUT = "org.brenlow.tarvane.system-output"

# A sine's RMS re its peak.
SINE_RMS_DB = 10 * math.log10(0.5)
HALF_A_TENTH = 0.05


@dataclass(frozen=True)
class Reading:
    what: str
    goal: float
    lower: float  # limits about the goal
    upper: float
    shown: float

    def is_within(self):
        departure = self.shown - self.goal
        return self.lower - HALF_A_TENTH <= departure <= self.upper + HALF_A_TENTH

    def __str__(self):
        verdict = "within" if self.is_within() else "OUTSIDE"
        return (f"{self.what:<34} {self.shown:7.1f}   goal {self.goal:7.2f}   "
                f"{self.upper:+.1f} {self.lower:+.1f}   {verdict}")


def a_weighting(hz):
    """IEC 61672-1:2013, annex E."""
    def magnitude(f):
        f1, f2, f3, f4 = 20.598997, 107.65265, 737.86223, 12194.217
        return f**4 / ((f * f + f1 * f1) * (f * f + f4 * f4)
                       * math.hypot(f, f2) * math.hypot(f, f3))
    return 20 * math.log10(magnitude(hz) / magnitude(1000))


def stereo(samples):
    both = array.array("f", bytes(8 * len(samples)))
    both[0::2] = samples
    both[1::2] = samples
    return both


def bursts(rate, hz, dbfs, burst_seconds, period_seconds, count):
    """Sines that each begin at a zero crossing, with silence between them and ahead of the first."""
    amplitude = 10 ** (dbfs / 20)
    burst = array.array("f", (amplitude * math.sin(2 * math.pi * hz * n / rate)
                              for n in range(round(burst_seconds * rate))))
    silence = array.array("f", bytes(4 * (round(period_seconds * rate) - len(burst))))
    return stereo((silence + burst) * count)


def quarter_rate_tone(rate, amplitude, seconds):
    """A sine of a quarter of the rate whose peaks lie half-way between its samples, faded in and out,
    since an edge has a peak of its own."""
    value = amplitude * math.sqrt(0.5)
    tone = array.array("f", (value, value, -value, -value)) * round(seconds * rate / 4)
    fade = rate // 10
    for n in range(fade):
        tone[n] *= n / fade
        tone[-1 - n] *= n / fade
    return stereo(tone)


class Measurement:
    """One run of the program on a desk whose audio server has that rate."""

    def __init__(self, desk, rate):
        self._desk = desk
        self._rate = rate

    def readings(self):
        """One after the other, as they are read."""
        self._desk.write_settings(deviceUID=SYSTEM_OUTPUT, mainInputIsStereo="@ByteArray(true)")
        self._program = self._desk.launch()
        self._program.start()
        yield from self._levels()
        yield self._burst()
        self._show_loudness()
        yield from self._loudness()
        yield self._true_peak()

    def _tone(self, hz, dbfs):
        return self._desk.play("--rate", str(self._rate), "--tone", f"{hz:.10g}:{dbfs}")

    def _file(self, name, samples):
        file = self._desk.write_signal(name, samples)
        return self._desk.play("--rate", str(self._rate), "--file", file)

    def _levels(self):
        tone = self._tone(1000, -20)
        for weighting in "CZA":
            self._program.click(f"{weighting} weighting")
            shown = self._program.settled_level(f"SPL {weighting} Fast")
            # 5.5, table 3, at 1 kHz.
            yield Reading(f"1 kHz, {weighting}", -20 + SINE_RMS_DB, -0.7, 0.7, shown)
        tone.stop()
        # Fast follows the wave of a low tone by hundredths, which may flip the tenth for ever.
        self._program.click("Slow time weighting")
        for nominal, n, lower, upper in ((125, -9, -1.0, 1.0), (8000, 9, -2.5, 1.5)):
            hz = 1000 * 10 ** (n / 10)
            tone = self._tone(hz, -20)
            shown = self._program.settled_level("SPL A Slow")
            tone.stop()
            yield Reading(f"{nominal} Hz, A", -20 + SINE_RMS_DB + a_weighting(hz), lower, upper, shown)

    def _burst(self):
        self._program.click("Fast time weighting")
        self._program.click("Z weighting")
        signal = bursts(self._rate, 4000, -20, 0.2, 1.5, 3)
        wait_until(lambda: (self._program.level("SPL Z Fast") or -60) <= -60, 20,
                   "the level doesn't fall")
        player = self._file("bursts", signal)
        self._program.click("Reset Min/Max")
        time.sleep(5)  # until they are over
        shown = self._program.level("MAX")
        player.stop()
        # 5.9, table 4: 10 lg(1 - exp(-T/0.125 s)) under the steady level.
        goal = -20 + SINE_RMS_DB + 10 * math.log10(-math.expm1(-0.2 / 0.125))
        return Reading("200 ms of 4 kHz, largest Fast", goal, -0.5, 0.5, shown)

    def _show_loudness(self):
        self._program.click("Readout unit: dBFS", "push button")
        self._desk.xdotool("key", "Down", "Down", "Return")  # from dBFS to the entry under it
        self._program.wait_for("Readout unit: LUFS", "push button")

    def _loudness(self):
        player = self._tone(1000, -23)
        wait_until(lambda: (self._program.level("Momentary") or -60) > -24, 20, "there is no loudness")
        self._program.press("Reset Integration", "push button")
        for name in ("Momentary", "Short-Term", "Integrated"):
            # Tech 3341, case 1.
            yield Reading(f"EBU Tech 3341, 1: {name}", -23, -0.1, 0.1,
                          self._program.settled_level(name))
        player.stop()

    def _true_peak(self):
        """Tech 3341, case 16. A player that misses its turn on a busy machine puts a step into its own
        tone, which has a higher peak: then it is measured again. At 192 kHz the samples are read,
        which lie 3 dB under the peak."""
        goal = -6.0 if self._rate < 192000 else 20 * math.log10(0.5 * math.sqrt(0.5))
        reading = None
        for _ in range(8):
            wait_until(lambda: (self._program.level("Momentary") or -60) <= -50, 20,
                       "the loudness doesn't fall")
            self._program.press("Reset Integration", "push button")
            player = self._file("peak", quarter_rate_tone(self._rate, 0.5, 6))
            wait_until(lambda: self._program.level("True peak") is not None, 10, "there is no peak")
            shown = self._program.settled_level("True peak")
            player.stop()
            reading = Reading("EBU Tech 3341, 16: true peak", goal, -0.4, 0.2, shown)
            if reading.is_within():
                break
        return reading


def measure(programs, rate):
    """Whether all readings are within their limits."""
    print(f"{rate / 1000:g} kHz", flush=True)
    good = True
    with Desk(programs, rate=rate) as desk:
        for reading in Measurement(desk, rate).readings():
            print(f"    {reading}", flush=True)
            good = good and reading.is_within()
    return good


def main():
    programs = Path(sys.argv[1]).resolve()
    rates = [int(rate) for rate in sys.argv[2:]] or RATES
    if len(rates) == 1:
        return 0 if measure(programs, rates[0]) else 1
    # A process each: the accessibility library stays with the first bus that it meets.
    ended = [subprocess.run([__file__, programs, str(rate)]).returncode for rate in rates]
    return 1 if any(ended) else 0


if __name__ == "__main__":
    sys.exit(main())

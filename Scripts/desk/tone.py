"""Signals of known level, and the device or the player that brings them to the audio server."""

import array
import math
import random

from .failure import DeskFailure

RATE = 48000


def sine_1khz(dbfs, seconds):
    """A 1 kHz sine with its peaks at that level, as floats at 48 kHz."""
    amplitude = 10 ** (dbfs / 20)
    period = array.array("f", (amplitude * math.sin(2 * math.pi * i / 48) for i in range(48)))
    return period * round(1000 * seconds)


def rising_sine(hz, from_dbfs, to_dbfs, still_seconds, db_per_second, seconds):
    """A sine that stays at its first level for a while, rises to the second, and stays there."""
    return array.array("f", (
        10 ** (min(max(from_dbfs + db_per_second * (n / RATE - still_seconds), from_dbfs),
                   to_dbfs) / 20) * math.sin(2 * math.pi * hz * n / RATE)
        for n in range(round(seconds * RATE))))


def pink_noise(dbfs, seconds, seed=1):
    """Noise of that RMS level with equal energy in each octave, within 0.2 dB from 25 Hz to 16 kHz:
    white noise through poles a quarter of a decade apart from 5 Hz on, with zeros half-way
    between them, which fall by 3 dB per octave on the whole."""
    rng = random.Random(seed)
    count = math.floor(4 * math.log10(RATE / 2 / 5)) + 1
    poles = [math.exp(-2 * math.pi * 5 * 10 ** (n / 4) / RATE) for n in range(count)]
    zeros = [math.exp(-2 * math.pi * 5 * 10 ** (n / 4 + 1 / 8) / RATE) for n in range(count - 1)]
    samples = [rng.gauss(0, 1) for _ in range(round(seconds * RATE))]
    for pole, zero in zip(poles, [*zeros, 0.0]):
        last_in = last_out = 0.0
        for n, sample in enumerate(samples):
            last_out = sample - zero * last_in + pole * last_out
            last_in = sample
            samples[n] = last_out
    rms = math.sqrt(sum(sample * sample for sample in samples) / len(samples))
    gain = 10 ** (dbfs / 20) / rms
    return array.array("f", (gain * sample for sample in samples))


class ToneSource:
    """A running tarvane-tone-source."""

    def __init__(self, desk, name, options):
        self._processes = desk.processes
        self._process = desk.processes.start(
            name, [str(desk.program("tarvane-tone-source")), *options], desk.env, piped=True)
        if self._process.stdout.readline().strip() != "ready":
            raise DeskFailure(f"The test signal doesn't start: {desk.processes.log(name)}")

    def lines(self):
        """What it prints from now on, until it ends."""
        return iter(self._process.stdout.readline, "")

    def stop(self):
        """The end of the process is the device's being pulled out."""
        self._processes.stop(self._process)

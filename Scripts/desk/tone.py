"""Signals of known level, and the device or the player that brings them to the audio server."""

import array
import math

from .failure import DeskFailure

RATE = 48000


def sine_1khz(dbfs, seconds):
    """A 1 kHz sine with its peaks at that level, as floats at 48 kHz."""
    amplitude = 10 ** (dbfs / 20)
    period = array.array("f", (amplitude * math.sin(2 * math.pi * i / 48) for i in range(48)))
    return period * round(1000 * seconds)


class ToneSource:
    """A running tarvane-tone-source."""

    def __init__(self, desk, name, options):
        self._processes = desk.processes
        self._process = desk.processes.start(
            name, [str(desk.program("tarvane-tone-source")), *options], desk.env, piped=True)
        if self._process.stdout.readline().strip() != "ready":
            raise DeskFailure(f"The test signal doesn't start: {desk.processes.log(name)}")

    def stop(self):
        """The end of the process is the device's being pulled out."""
        self._processes.stop(self._process)

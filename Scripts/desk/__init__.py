"""A measuring desk of our own: display, session bus, audio server, the program, and hands and eyes
on its window. The system tests, the demonstration and the CPU measurement stand on it.

    with Desk("build/dev/bin") as desk:
        tone = desk.plug_in("--tone", "1000:-20")
        program = desk.launch()
        program.start()
        print(program.reading("SPL A Fast"))

Everything runs under folders that vanish with the desk, and every process ends with it.
"""

from .desk import Desk
from .failure import DeskFailure
from .program import Program

__all__ = ["Desk", "DeskFailure", "Program"]

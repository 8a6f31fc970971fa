"""The desk itself: folders, display, session bus, audio server, tone sources."""

import os
import re
import shutil
import signal
import subprocess
import tempfile
from pathlib import Path

from .failure import DeskFailure
from .processes import Processes, wait_until
from .program import Program
from .tone import ToneSource

ROOT = Path(__file__).resolve().parent.parent.parent
PRIVATE_AUDIO = ROOT / "Scripts/private-audio/private-audio"

# The sink that private-audio makes.
SPEAKERS = "tarvane.test.speakers"


def end_on_signal(number, _frame):
    raise SystemExit(128 + number)


class Desk:
    def __init__(self, build, size=(1400, 900), devices="standard", serves_audio=True, rate=48000,
                 wayland=False):
        """`build` is the build folder whose programs are used. `devices` is a set of
        private-audio, and `rate` the audio server's, in Hz. With `serves_audio` false the server is
        started later, by `serve_audio`. With `wayland` the display is a Wayland compositor's, which
        gives every window the whole screen."""
        self.build = Path(build)
        self.size = size
        self._devices = devices
        self._serves_audio = serves_audio
        self._rate = rate
        self._wayland = wayland
        # A key for a compositor that is itself a window was seen to go missing on a busy machine.
        self.missed_keys = 2 if wayland else 0
        self._audio_runs = False
        self._tones = 0
        self._program = None

    def __enter__(self):
        for number in (signal.SIGTERM, signal.SIGHUP):
            signal.signal(number, end_on_signal)
        self.folder = Path(tempfile.mkdtemp(prefix="tarvane-desk-"))
        try:
            self._open()
        except BaseException:
            self.__exit__()
            raise
        return self

    def _open(self):
        logs = self.folder / "logs"
        logs.mkdir()
        self.processes = Processes(logs)
        self.env = self._environment()
        self._open_display()
        self._start_bus()
        if self._serves_audio:
            self.serve_audio()

    def __exit__(self, *_):
        if hasattr(self, "processes"):
            self.processes.stop_all()
        shutil.rmtree(self.folder, ignore_errors=True)

    # The folders are those that private-audio makes, so that clients and server share one
    # runtime folder; the program's settings are beside the session manager's.
    def _environment(self):
        env = {name: os.environ[name] for name in ("PATH", "LD_LIBRARY_PATH", "ASAN_OPTIONS")
               if name in os.environ}
        self.audio = self.folder / "audio"
        for variable, name in (("XDG_RUNTIME_DIR", "run"), ("HOME", "home"),
                               ("XDG_CONFIG_HOME", "config"), ("XDG_STATE_HOME", "state"),
                               ("XDG_CACHE_HOME", "cache"), ("XDG_DATA_HOME", "data"),
                               ("TMPDIR", "tmp")):
            path = self.audio / name
            path.mkdir(parents=True, mode=0o700)
            env[variable] = str(path)
        env.update(LC_ALL="C.UTF-8", QT_QPA_PLATFORM="xcb", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
                   LIBGL_ALWAYS_SOFTWARE="1")
        return env

    def _open_display(self):
        self._start_display()
        if self._wayland:
            self._start_compositor()
        else:
            self._start_window_manager()

    def lose_display(self):
        """As a session ends that is no more than its display; then there is another one."""
        if self._wayland:
            self.processes.stop(self._compositor)
            self._start_compositor()
            return
        self.processes.stop(self.display)
        self._open_display()
        os.environ["DISPLAY"] = self.env["DISPLAY"]

    # Without -noreset the server starts over whenever its last client leaves, which ends a window
    # manager that is just coming.
    def _start_display(self):
        read, write = os.pipe()
        width, height = self.size
        self.display = self.processes.start(
            "display",
            ["Xvfb", "-displayfd", str(write), "-screen", "0", f"{width}x{height}x24",
             "-nolisten", "tcp", "-noreset"], self.env, pass_fds=(write,))
        os.close(write)
        with os.fdopen(read) as answer:
            number = answer.readline().strip()
        if not number:
            raise DeskFailure(f"Xvfb didn't start: {self.processes.log('display')}")
        self.env["DISPLAY"] = f":{number}"

    def _start_window_manager(self):
        self.processes.start("window-manager", ["openbox", "--sm-disable"], self.env)
        # The property that tells the current desktop comes with the window manager.
        wait_until(lambda: self.xdotool("get_desktop"), 10,
                   "The window manager doesn't start")

    # As a window of the X server, which brings it pointer and keyboard. A window that fills it has
    # its corner where the X server's is, so that places are the same to both.
    def _start_compositor(self):
        width, height = self.size
        name = "wayland-desk"
        self._compositor = self.processes.start(
            "compositor",
            ["weston", "--backend=x11-backend.so", "--use-pixman", f"--width={width}",
             f"--height={height}", "--shell=kiosk-shell.so", f"--socket={name}", "--idle-time=0"],
            self.env)
        wait_until((Path(self.env["XDG_RUNTIME_DIR"]) / name).exists, 10,
                   "The compositor doesn't start")
        wait_until(lambda: self.xdotool("search", "--onlyvisible", "--class", "weston",
                                        "windowmove", "0", "0", "windowfocus"), 10,
                   "The compositor shows no window")
        # It counts the pointer's ways from where it saw the pointer first, which its window's move
        # made another place: in the corner both agree.
        self.xdotool("mousemove", str(width - 1), str(height - 1), "mousemove", "0", "0")
        self.env.update(WAYLAND_DISPLAY=name, QT_QPA_PLATFORM="wayland")

    def _start_bus(self):
        bus = self.processes.start(
            "bus", ["dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address"],
            self.env, piped=True)
        address = bus.stdout.readline().strip()
        if not address:
            raise DeskFailure(f"The session bus didn't start: {self.processes.log('bus')}")
        self.env["DBUS_SESSION_BUS_ADDRESS"] = address
        # The accessibility library of this process goes by its own environment.
        os.environ.update({name: self.env[name] for name in
                           ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR")})

    # Audio.

    def serve_audio(self):
        """Starts the audio server, or brings it back after `kill_audio`."""
        if self._audio_runs:
            self._private_audio("resume")
        else:
            self._private_audio("start", "--rate", str(self._rate), "--devices", self._devices,
                                "--parent", str(os.getpid()))
            self._audio_runs = True

    def kill_audio(self):
        self._private_audio("kill")

    def _private_audio(self, command, *options):
        self.processes.run([str(PRIVATE_AUDIO), command, str(self.audio), *options], self.env)

    def plug_in(self, *signal, name="tarvane.tone", description="Tone Mic", channels=1):
        """An input device with that signal (the options of tarvane-tone-source); the default input
        until another one is plugged in later. Stopping it pulls it out."""
        self._tones += 1
        return self._tone("--name", name, "--description", description, "--channels",
                          str(channels), "--priority", str(3000 + self._tones), *signal)

    def audio_nodes(self):
        """What the audio server lists: its nodes with their properties."""
        return subprocess.run(["pw-cli", "ls", "Node"], env=self.env, stdin=subprocess.DEVNULL,
                              capture_output=True, text=True, timeout=20).stdout

    def play(self, *signal, into=SPEAKERS):
        """The signal on both channels of the output."""
        self._tones += 1
        return self._tone("--sink", into, "--channels", "2", *signal)

    def write_signal(self, name, samples):
        """A file for `plug_in("--file", …)`."""
        path = self.folder / f"{name}.raw"
        path.write_bytes(samples.tobytes())
        return str(path)

    def _tone(self, *options):
        return ToneSource(self, f"tone{self._tones}", options)

    # The program.

    def become_another_user(self):
        """Whose folders are empty; whoever sat here has left theirs behind."""
        for variable in ("HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME",
                         "XDG_DATA_HOME"):
            self.env[variable] += "-of-another"
            Path(self.env[variable]).mkdir()

    def settings_file(self):
        return Path(self.env["XDG_CONFIG_HOME"]) / "Tarvane/Tarvane.ini"

    def write_settings(self, **values):
        """Values as they stand in the file, by the keys' names without their prefix."""
        file = self.settings_file()
        file.parent.mkdir(parents=True, exist_ok=True)
        lines = [f"Tarvane.{key}={value}" for key, value in values.items()]
        file.write_text("[General]\n" + "\n".join(lines) + "\n")

    def program(self, name):
        path = self.build / name
        if not path.exists():
            raise DeskFailure(f"{path} is missing: build it first.")
        return path

    def launch(self):
        """The program, with its main window on the display."""
        self._program = Program(self)
        return self._program

    def has_crashed(self):
        """Whether the program launched last has ended by a signal or with an error."""
        return self._program is not None and self._program.process.poll() not in (None, 0)

    # Hands and eyes.

    def xdotool(self, *arguments):
        """Whether it did what it was told."""
        return self._run_xdotool(arguments).returncode == 0

    def xdotool_output(self, *arguments):
        return self._run_xdotool(arguments).stdout

    def _run_xdotool(self, arguments):
        try:
            return subprocess.run(["xdotool", *arguments], env=self.env, stdin=subprocess.DEVNULL,
                                  capture_output=True, text=True, timeout=20)
        except subprocess.TimeoutExpired as error:
            raise DeskFailure(f"xdotool {' '.join(arguments)} doesn't return.") from error

    def pixels(self):
        """The screen as it is now: a function that gives the red, green and blue at x, y."""
        path = self.folder / "screen.ppm"
        subprocess.run(["import", "-silent", "-window", "root", "-depth", "8", f"ppm:{path}"],
                       env=self.env, stdin=subprocess.DEVNULL, check=True, timeout=60)
        content = path.read_bytes()
        header = re.match(rb"P6\s+(\d+)\s+\d+\s+255\s", content)
        start, width = header.end(), int(header.group(1))

        def pixel(x, y):
            at = start + 3 * (y * width + x)
            return tuple(content[at:at + 3])

        return pixel

    def screenshot(self, path, window="root"):
        subprocess.run(["import", "-silent", "-window", window, str(path)], env=self.env,
                       stdin=subprocess.DEVNULL, check=True, timeout=60)

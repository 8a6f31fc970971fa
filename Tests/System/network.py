"""Another machine's audio over the network, by PipeWire's own modules at either end (RTP, announced
by SAP as AES67 devices do), and the cable between them, all on the loopback address."""

import socket
import threading
import time

from desk.processes import wait_until

SENDER = "tarvane.network.sender"

_CONFIG = """
context.properties = {{ log.level = 2 }}
context.spa-libs = {{
    audio.convert.* = audioconvert/libspa-audioconvert
    support.* = support/libspa-support
}}
context.modules = [
    {{ name = libpipewire-module-rt args = {{ nice.level = -11 }} flags = [ ifexists nofail ] }}
    {{ name = libpipewire-module-protocol-native }}
    {{ name = libpipewire-module-client-node }}
    {{ name = libpipewire-module-adapter }}
    {{ name = {module} args = {{ {arguments} }} }}
]
"""


class Cable:
    """Takes the packets and the announcements of one machine to the other, until it is pulled."""

    def __init__(self):
        self._audio, self._announcements = self._socket(), self._socket()
        self.audio_in, self.announced_in = self._port(self._audio), self._port(self._announcements)
        with self._socket() as audio, self._socket() as announcements:
            self.audio_out, self.announced_out = self._port(audio), self._port(announcements)
        self._is_pulled = False
        self.lost = 0
        for carry in (self._carry_audio, self._carry_announcements):
            threading.Thread(target=carry, daemon=True).start()

    def pull_for(self, seconds):
        self._is_pulled = True
        time.sleep(seconds)
        self._is_pulled = False

    def _carry_audio(self):
        while True:
            packet = self._audio.recv(65536)
            if self._is_pulled:
                self.lost += 1
            else:
                self._audio.sendto(packet, ("127.0.0.1", self.audio_out))

    def _carry_announcements(self):
        """An announcement says at which port the audio arrives."""
        while True:
            packet = self._announcements.recv(65536)
            packet = packet.replace(b"m=audio %d " % self.audio_in, b"m=audio %d " % self.audio_out)
            self._announcements.sendto(packet, ("127.0.0.1", self.announced_out))

    @staticmethod
    def _socket():
        end = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        end.bind(("127.0.0.1", 0))
        return end

    @staticmethod
    def _port(end):
        return end.getsockname()[1]


class OtherMachine:
    """Has an output, whatever is played into which arrives here as an input of that name."""

    def __init__(self, desk, name):
        self._desk = desk
        self.cable = Cable()
        self._load("receiver", "libpipewire-module-rtp-source",
                   f"local.ifname = lo sap.ip = 127.0.0.1 sap.port = {self.cable.announced_out} "
                   "stream.props = { media.class = Audio/Source }")
        self._sender = self._load(
            "sender", "libpipewire-module-rtp-sink",
            "local.ifname = lo source.ip = 127.0.0.1 destination.ip = 127.0.0.1 "
            f"destination.port = {self.cable.audio_in} sap.ip = 127.0.0.1 "
            f"sap.port = {self.cable.announced_in} sap.interval.sec = 1 "
            f'audio.format = S24BE audio.rate = 48000 audio.channels = 2 sess.name = "{name}" '
            f"stream.props = {{ media.class = Audio/Sink node.name = {SENDER} }}")
        wait_until(lambda: f'node.name = "{name}"' in desk.audio_nodes(), 30,
                   f"{name} isn't announced")

    def play(self, *signal):
        return self._desk.play(*signal, into=SENDER)

    def switch_off(self):
        """Ends its announcement, too."""
        self._desk.processes.stop(self._sender)

    def _load(self, name, module, arguments):
        config = self._desk.folder / f"{name}.conf"
        config.write_text(_CONFIG.format(module=module, arguments=arguments))
        return self._desk.processes.start(name, ["pipewire", "-c", str(config)], self._desk.env)

"""What goes over the wire for each transfer of a switch, counted between the agent and a lab cloud.

    herd_wire.py [--build DIR]

A relay stands between the two and asks Linux what its connections carried: bytes of TLS or HTTP, and
packets of at most 1448 bytes, as Ethernet bears them, with 52 bytes of IP and TCP before each. The
switch is the default one, of 28 ports."""
import argparse
import pathlib
import socket
import struct
import tempfile
import threading

import places
from workbench import Lab, MAC, Switch, wait_until

SEGMENT, HEADERS = 1448, 52
TCP_INFO, COUNTERS_AT = 11, 120  # bytes acked and received, 64 bits; segments out and in, 32 bits
TLS_HANDSHAKE = b"\x16"


class Relay:
    """A port that carries connections to another one. `seen` has what each began with and carried:
    bytes and packets from the peer, bytes and packets to it."""

    def __init__(self, port):
        self.target = port
        self.seen = []
        self.listener = socket.socket()
        self.listener.setsockopt(socket.IPPROTO_TCP, socket.TCP_MAXSEG, SEGMENT)
        self.listener.bind(("127.0.0.1", 0))
        self.listener.listen(16)
        self.port = self.listener.getsockname()[1]
        threading.Thread(target=self._accept, daemon=True).start()

    def _accept(self):
        while True:
            peer, _ = self.listener.accept()
            threading.Thread(target=self._carry, args=(peer,), daemon=True).start()

    def _carry(self, peer):
        with peer, socket.create_connection(("127.0.0.1", self.target)) as target:
            first = peer.recv(1, socket.MSG_PEEK)
            back = threading.Thread(target=pump, args=(target, peer), daemon=True)
            back.start()
            pump(peer, target)
            back.join()
            acked, received, out, into = struct.unpack_from(
                "=QQII", peer.getsockopt(socket.IPPROTO_TCP, TCP_INFO, 192), COUNTERS_AT)
        self.seen.append((first == TLS_HANDSHAKE, received, into, acked, out))


def pump(source, target):
    try:
        while piece := source.recv(65536):
            target.sendall(piece)
        target.shutdown(socket.SHUT_WR)
    except OSError:
        pass  # one of the two has gone


def row(name, seen):
    _, received, into, acked, out = seen
    return (f"| {name} | {received + HEADERS * into:,} in {into} packets | "
            f"{acked + HEADERS * out:,} in {out} packets |")


def measure(build, folder):
    """Rows of a table: a check-in, the time, a long-poll."""
    lab = Lab(places.program("lab_cloud", build), folder / "cloud", options=("--poll-seconds", "0.5"))
    checkin, fallback, keeper = (Relay(port) for port in (
        lab.ports["https"][0], lab.ports["https"][1], lab.ports["keeper"][0]))
    hosts = {"checkin_host": f"localhost:{checkin.port}",
             "fallback_host": f"localhost:{fallback.port}",
             "connkeeper_host": f"localhost:{keeper.port}"}
    url = f"https://{hosts['checkin_host']}/cloud-switch/{MAC}/checkin"
    switch = Switch(places.program("vx_cloud_sim", build), folder / "switch", lab, 100, {"cloud": hosts},
                    options=("--fault", f"transfer:{url}#1=60"), traced=False)
    try:
        switch.start()
        wait_until("every transfer", lambda: checkin.seen and keeper.seen and
                   any(not tls for tls, *_ in fallback.seen), 60)
    finally:
        switch.stop()
        lab.stop()
    yield "| transfer | from the switch, bytes | to the switch, bytes |"
    yield "|---|---|---|"
    yield row("check-in, with its TLS handshake", checkin.seen[0])
    yield row("time", next(seen for seen in fallback.seen if not seen[0]))
    yield row("long-poll", keeper.seen[0])


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", type=pathlib.Path, default=places.BUILD)
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory(prefix="vx_herd_") as folder:
        print("\n".join(measure(arguments.build, pathlib.Path(folder))))


if __name__ == "__main__":
    main()

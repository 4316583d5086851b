#!/usr/bin/env python3
"""What `./run` starts: the lab cloud, one simulated switch, and somebody who tells what happens.

    run.py [--build DIR] [--state DIR] [--once]"""
import argparse
import pathlib
import re
import shutil
import signal
import sys
import threading
import time

import places
import story
from workbench import Failed, Lab, MAC, Switch

# What of the switch's trace is worth telling: what changes it, not what is read from it.
WORTH_TELLING = re.compile(
    r"_set\(|_add\(|_del\(|_create\(|_destroy\(|_save\(|_reset|reboot|restart|system\(|"
    r"^transfer|clock_settime|_kill|_clr|_bind|_unbind|_download|_write\(|_sel\(")


def say(text):
    print(text, flush=True)


def port_line(port):
    """A port as one line: its link, VLANs, power and devices."""
    words = [f"port {port['id']:>6}", "up  " if port["status"] == 1 else "down",
             f"pvid {port['pvid']}"]
    if port["untagged_vlans"] or port["tagged_vlans"]:
        words.append(f"VLANs {port['untagged_vlans'] or '-'} tagged {port['tagged_vlans'] or '-'}")
    if port.get("poe", {}).get("power_draw"):
        words.append(f"{port['poe']['power_draw']:.1f} W")
    if port["connected_device_mac_list"]:
        words.append(f"{len(port['connected_device_mac_list'])} devices")
    return "  ".join(words)


class Ports:
    """Tells the ports of the latest report: all of them at first, then those that changed."""

    def __init__(self, lab):
        self.lab = lab
        self.told = {}
        self.reports = 0

    def tell(self):
        reports = self.lab.ask("GET", f"/switches/{MAC}")["reports"]
        if reports == self.reports:
            return
        self.reports = reports
        for port in self.lab.report()["system"].get("ports", []):
            line = port_line(port)
            if self.told.get(port["id"]) != line:
                self.told[port["id"]] = line
                say(f"report | {line}")


def follow(file, prefix, worth_telling, ports):
    """Tells new lines of a growing file, and of the ports, until it is interrupted."""
    position = 0
    while True:
        ports.tell()
        if file.exists():
            with open(file, errors="replace") as trace:
                trace.seek(position)
                for line in trace:
                    if worth_telling.search(line):
                        say(f"{prefix}{line.rstrip()}")
                position = trace.tell()
        time.sleep(0.2)


def start(arguments, state, listener, speed):
    lab = Lab(places.program("lab_cloud", arguments.build), state / "cloud", listener)
    switch = Switch(places.program("vx_cloud_sim", arguments.build), state / "switch", lab, speed,
                    scenario={})
    return lab, switch


def once(arguments):
    state = arguments.state / "once"
    shutil.rmtree(state, ignore_errors=True)
    lab, switch = start(arguments, state, None, 60)
    try:
        switch.start()
        ok = story.play(lab, switch, say)
    finally:
        switch.stop()
        lab.stop()
    say("All of it happened." if ok else f"Not all of it happened; see {state}")
    return 0 if ok else 1


def forever(arguments):
    state = arguments.state / "live"
    shutil.rmtree(state, ignore_errors=True)
    address_told = threading.Event()

    def tell_cloud(line):
        address_told.wait()
        say(f"cloud  | {line}")

    lab, switch = start(arguments, state, tell_cloud, 10)
    admin = f"http://127.0.0.1:{lab.ports['admin']}"
    say(f"The page of the lab cloud: {admin}/")
    address_told.set()
    say("It is a client of the admin interface at the same address; try")
    say(f"  curl {admin}/switches/{MAC}/report")
    say(f"  curl -d '{{\"system\":{{\"jumbo_frames\":{{\"size\":9000}}}}}}' "
        f"{admin}/switches/{MAC}/settings")
    say(f"  curl -d '{{\"action\":\"checkin\"}}' {admin}/switches/{MAC}/actions")
    say("The switch lives ten times as fast as you. Ctrl-C ends both.")
    try:
        switch.start()
        follow(switch.root / "trace.log", "switch | ", WORTH_TELLING, Ports(lab))
    finally:
        switch.stop()
        lab.stop()


def main():
    parser = argparse.ArgumentParser(
        description="Starts a lab cloud and a simulated switch that checks in to it, and tells what "
                    "happens until Ctrl-C.")
    parser.add_argument("--once", action="store_true",
                        help="play a story instead; exit with 0 if all of it happened")
    parser.add_argument("--state", type=pathlib.Path, default=places.STATE, metavar="DIR",
                        help="where both keep their files [%(default)s]")
    parser.add_argument("--build", type=pathlib.Path, default=places.BUILD, metavar="DIR",
                        help="a build folder to take the programs from [%(default)s]")
    parser.add_argument("--version", action="version", version=f"%(prog)s {places.VERSION}")
    arguments = parser.parse_args()
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(0))
    try:
        return once(arguments) if arguments.once else forever(arguments)
    except Failed as failure:
        say(f"FAILED: {failure}")
        return 1
    except KeyboardInterrupt:
        say("")
        return 0


sys.exit(main())

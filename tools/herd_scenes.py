"""What a cloud goes through with many switches, and what it can do about it: tables, plots.

    herd_scenes.py [--plots DIR]"""
import argparse
import itertools
import pathlib
import typing

from herd import (CERTIFICATE, CHECKIN, FALLBACK, INTERVAL, KEEP_ALIVE, KEEP_ALIVE_SECONDS, LISTEN,
                  NO_CONNECT, NO_HOST, OK, TIME, Cloud, Herd, Outage)
from line_chart import line_chart

SIZES = (1000, 10000, 100000, 1000000)
STEP = 10  # seconds over which a rate is taken
CALM = 300  # seconds before something happens
EVERYTHING = (CHECKIN, FALLBACK, TIME, LISTEN)
MONTH = 30 * 86400
LAST_IS_UP = 90  # seconds after the power came back


# --- What happens. Each is given the herd and arranges it.

def settle(herd):
    for _ in range(herd.count):
        herd.settle()


def power_comes_back(herd):
    """Switches of several makes start their agents 60 to 90 seconds later."""
    for _ in range(herd.count):
        herd.power_on(herd.dice.uniform(60, LAST_IS_UP))


def power_comes_back_and_intervals_differ(herd, rounds):
    """The cloud gives each switch an interval of its own, to some of them in each of so many
    rounds of check-ins."""
    power_comes_back(herd)
    for member in herd.members:
        herd.at(herd.dice.randrange(rounds) * INTERVAL,
                lambda member=member: member.settings.append(
                    {"interval": herd.dice.randint(240, 360)}))


def be_away(herd, seconds, result=NO_CONNECT, kinds=EVERYTHING):
    settle(herd)
    herd.cloud.outages.append(Outage(CALM, CALM + seconds, kinds, result))
    if LISTEN in kinds:
        herd.at(CALM, lambda: end_polls(herd, FAILED_POLL))


FAILED_POLL = "failed"


def end_polls(herd, result):
    for member in herd.members:
        herd.end_poll(member, result)


def keeper_restarts(herd):
    settle(herd)
    herd.at(CALM, lambda: end_polls(herd, FAILED_POLL))


def keeper_hands_over(herd):
    """Each long-poll gets an empty answer at a moment of its own, and begins anew elsewhere."""
    settle(herd)
    for member in herd.members:
        herd.at(CALM + herd.dice.random() * 600,
                lambda member=member: herd.end_poll(member, OK))


def settings_for_all(herd):
    settle(herd)
    herd.at(CALM, lambda: queue_settings(herd))


def queue_settings(herd):
    for member in herd.members:
        member.settings.append({"lldp": {}})


def settings_pushed(herd, seconds):
    """And a push to each, so that it comes for them, over so many seconds."""
    settle(herd)
    for member in herd.members:
        herd.at(CALM + herd.dice.random() * seconds,
                lambda member=member: (member.settings.append({"lldp": {}}),
                                       herd.push(member, "checkin")))


class Scene(typing.NamedTuple):
    name: str  # of the plot's file
    title: str
    seconds: int
    ways: dict  # what is called what, and how it is arranged
    sample: int = 1500


SCENES = (
    Scene("power", "A city's power comes back", 3600, {
        "as it comes": power_comes_back,
        "each gets an interval of 240 to 360 s at once":
            lambda herd: power_comes_back_and_intervals_differ(herd, 1),
        "a fifth of them a round does": lambda herd: power_comes_back_and_intervals_differ(herd, 5),
    }),
    Scene("minute", "The cloud is away for a minute", 1500, {
        "refuses connections": lambda herd: be_away(herd, 60)}),
    Scene("hour", "The cloud is away for an hour", 5400, {
        "refuses connections": lambda herd: be_away(herd, 3600),
        "its names are not found": lambda herd: be_away(herd, 3600, NO_HOST),
        "the check-in hosts alone, answering 503":
            lambda herd: be_away(herd, 3600, FAILED_POLL, (CHECKIN, FALLBACK))}, 500),
    Scene("day", "The cloud is away for a day", 88200, {
        "refuses connections": lambda herd: be_away(herd, 86400)}, 40),
    Scene("certificate", "A certificate expires, for an hour", 5400, {
        "at both hosts": lambda herd: be_away(herd, 3600, CERTIFICATE, (CHECKIN, FALLBACK)),
        "at the check-in host": lambda herd: be_away(herd, 3600, CERTIFICATE, (CHECKIN,))}, 500),
    Scene("keeper", "A keeper host restarts with every long-poll", 1200, {
        "all of them are cut": keeper_restarts,
        "each is answered empty, over ten minutes": keeper_hands_over}),
    Scene("settings", "Settings go to everybody at once", 1500, {
        "with the next check-in": settings_for_all,
        "pushed at once": lambda herd: settings_pushed(herd, 1),
        "pushed over ten minutes": lambda herd: settings_pushed(herd, 600)}),
)


def play(scene, arrange, size, capacity=None):
    herd = Herd(Cloud(capacity=capacity), size, scene.sample)
    arrange(herd)
    herd.run(scene.seconds)
    return herd


# --- What is told of it.

def busiest(herd, what, scene):
    """The highest rate that a step of the scene has, the first calm left out."""
    return max(herd.rates(what, STEP, scene.seconds)[CALM // STEP:] if scene.name != "power"
               else herd.rates(what, STEP, scene.seconds))


def left_over(herd, scene):
    """The highest rate of check-ins in the scene's last interval."""
    return max(herd.rates("check-ins", STEP, scene.seconds)[-INTERVAL // STEP:])


def number(value):
    return f"{value:,.0f}" if value >= 10 else f"{value:.1f}"


def usual_rows():
    yield ("| switches | check-ins, handshakes a second | connections a second | MB a second "
           "| long-polls held |")
    yield "|---|---|---|---|---|"
    for size in SIZES:
        herd = Herd(Cloud(), size, 2000)
        settle(herd)
        herd.run(3000)
        alive = size / KEEP_ALIVE_SECONDS * sum(KEEP_ALIVE) / 1e6
        yield (f"| {size:,} | {number(herd.total('check-ins') / 3000)} | "
               f"{number(herd.total('connections') / 3000)} | "
               f"{herd.total('bytes') / 3000 / 1e6 + alive:.2f} | {size:,} |")


def busiest_rows(size, played):
    yield (f"| {size:,} switches | check-ins a second | handshakes a second | connections a second "
           "| MB a second | check-ins a second, in the end |")
    yield "|---|---|---|---|---|---|"
    for scene, way, herd in played:
        cells = [number(busiest(herd, what, scene))
                 for what in ("check-ins", "handshakes", "connections")]
        cells.append(number(busiest(herd, "bytes", scene) / 1e6))
        cells.append(number(left_over(herd, scene)))
        yield f"| {scene.title}: {way} | {' | '.join(cells)} |"


def size_rows(played):
    """The smallest herd is simulated whole, the others are the same sample."""
    sizes = " | ".join(f"{size:,}" for size in SIZES)
    yield f"| connections a second in the busiest {STEP} s, of switches: | {sizes} |"
    yield "|---|" + "---|" * len(SIZES)
    for scene, way, herd in played:
        small = play(scene, scene.ways[way], SIZES[0])
        cells = [busiest(small, "connections", scene)]
        cells += [busiest(herd, "connections", scene) * size / SIZES[-1] for size in SIZES[1:]]
        yield f"| {scene.title}: {way} | {' | '.join(map(number, cells))} |"


def capacity_rows(size):
    """A city comes back to a cloud that takes only so much: how long until it has everybody."""
    yield ("| capacity, check-ins a second | of what is usual | after the last is up, all are in after "
           "| transfers a switch |")
    yield "|---|---|---|---|"
    usual = size / INTERVAL
    scene = Scene("power", "", 1800, {}, 1000)
    for factor in (1.1, 1.5, 2, 4, 8):
        herd = play(scene, power_comes_back, size, factor * usual)
        so_far = itertools.accumulate(herd.seconds["check-ins"][second]
                                      for second in range(scene.seconds))
        done = next(second for second, count in enumerate(so_far) if count >= herd.count)
        yield (f"| {number(factor * usual)} | {factor} times | {done - LAST_IS_UP} s | "
               f"{herd.total('handshakes') / size:.1f} |")


def month_rows():
    """One switch over a month, with settings and a push a day."""
    herd = Herd(Cloud(), 20)
    settle(herd)
    for day in range(30):
        for member in herd.members:
            herd.at(day * 86400 + herd.dice.random() * 80000,
                    lambda member=member: member.settings.append({"lldp": {}}))
            herd.at(day * 86400 + herd.dice.random() * 80000,
                    lambda member=member: herd.push(member, "port_reset"))
    herd.run(MONTH)
    alive = MONTH / KEEP_ALIVE_SECONDS * sum(KEEP_ALIVE)
    each = {what: herd.total(what) / 20 for what in ("check-ins", "connections", "bytes")}
    yield "| one switch, a month | |"
    yield "|---|---|"
    yield f"| check-ins, each with a TLS handshake | {number(each['check-ins'])} |"
    yield f"| long-polls | {number(each['connections'] - each['check-ins'])} |"
    yield "| connections held all the time | 1 |"
    yield f"| MB of check-ins and long-polls | {number(each['bytes'] / 1e6)} |"
    yield f"| MB of keep-alives | {number(alive / 1e6)} |"


def plot(folder, scene, played):
    unit = 60 if scene.seconds < 20000 else 3600
    step = STEP if scene.seconds < 20000 else 300
    lines = [(way, [(at * step / unit, rate) for at, rate in
                    enumerate(herd.rates("connections", step, scene.seconds))])
             for other, way, herd in played if other is scene]
    (folder / f"herd-{scene.name}.svg").write_text(line_chart(
        f"{scene.title}: connections a second, 1,000,000 switches",
        "minutes" if unit == 60 else "hours", lines))


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--plots", type=pathlib.Path, help="also draw each scene into this folder")
    arguments = parser.parse_args()
    played = [(scene, way, play(scene, arrange, SIZES[-1]))
              for scene in SCENES for way, arrange in scene.ways.items()]
    for rows in (usual_rows(), busiest_rows(SIZES[-1], played), size_rows(played),
                 capacity_rows(SIZES[-1]), month_rows()):
        print("\n".join(rows) + "\n", flush=True)
    if arguments.plots:
        arguments.plots.mkdir(parents=True, exist_ok=True)
        for scene in SCENES:
            plot(arguments.plots, scene, played)


if __name__ == "__main__":
    main()

"""Many switches on paper: an event simulation of the agent's timing, and of what a cloud sees of it.

`Agent` is the agent as far as time goes: when it sleeps, what it transfers, what it does next when a
transfer came to this or that. `Herd` lets many of them run against a `Cloud`, as events on one clock,
and counts. A herd of a million is a sample of it, of which each switch counts for many; switches
know nothing of each other, and what couples them, the cloud's capacity, is scaled with the sample."""
import collections
import heapq
import itertools
import random
import typing

# What a transfer came to, as the agent tells them apart.
OK, NO_HOST, NO_CONNECT, FAILED, REJECTED, CERTIFICATE = (
    "ok", "no host", "no connection", "failed", "rejected", "bad certificate")

# Where it went.
CHECKIN, FALLBACK, TIME, LISTEN = "check-in", "fallback", "time", "listen"

# The agent's own time, in seconds.
SERVICES_COME_UP, KEEPER_COMES_UP = 30, 2
PAUSE = 10  # without a connection, and between two attempts, and after a failed long-poll
INTERVAL = 300
WEIGHTS, HIGHEST_WEIGHT = {NO_HOST: 1, NO_CONNECT: 2}, 10
FALLBACK_ATTEMPTS = TIME_ATTEMPTS = 2
TIME_LIMITS = {CHECKIN: 120, FALLBACK: 120, TIME: 20, LISTEN: 1800}


class Outcome(typing.NamedTuple):
    """What became of a transfer, and what the reply asked for: settings, or an action."""
    result: str
    reply: typing.Optional[dict] = None


class Sleep(typing.NamedTuple):
    seconds: float


class Transfer(typing.NamedTuple):
    kind: str


START_KEEPER = object()


class Agent:
    """The two threads of one agent. Each yields what it does next and is sent what came of it: an
    Outcome for a Transfer, nothing for a Sleep."""

    def __init__(self, interval=INTERVAL):
        self.interval = interval
        self.established = self.retry = self.setting_from_cloud = False

    def main(self):
        yield Sleep(SERVICES_COME_UP)
        yield START_KEEPER
        yield Sleep(KEEPER_COMES_UP)
        yield from self.turns()

    def settled(self, left):
        """In place of main(): an agent that has long been running sleeps for so long yet."""
        self.established = True
        yield START_KEEPER
        yield Sleep(left)
        yield from self.turns()

    def turns(self):
        while True:
            yield from self.check_in()
            if self.setting_from_cloud:
                continue
            if self.established:
                yield Sleep(self.interval)
            elif self.retry:
                self.retry = False
            else:
                yield Sleep(PAUSE)

    def keeper(self):
        while True:
            outcome = yield Transfer(LISTEN)
            if outcome.reply:
                yield from self.obey(outcome.reply)
            if outcome.result != OK:
                yield Sleep(PAUSE)

    def obey(self, message):
        if message["action"] == "checkin":
            yield from self.check_in()
        else:
            self.setting_from_cloud = True
        if self.setting_from_cloud:
            yield from self.check_in()

    def check_in(self):
        self.setting_from_cloud = False
        outcome = yield from self.send(CHECKIN)
        if outcome.result in WEIGHTS:
            outcome = yield from self.try_again(outcome)
        if outcome.result == FAILED:
            outcome = yield from self.fall_back()
        elif outcome.result == OK:
            self.established = True
        if outcome.reply:
            self.apply(outcome.reply)

    def try_again(self, outcome):
        weight = 0
        while weight < HIGHEST_WEIGHT:
            weight += WEIGHTS[outcome.result]
            yield Sleep(PAUSE)
            outcome = yield from self.send(CHECKIN)
            if outcome.result not in WEIGHTS:
                return outcome
        return Outcome(FAILED)

    def fall_back(self):
        for _ in range(FALLBACK_ATTEMPTS):
            outcome = yield from self.send(FALLBACK)
            if outcome.result == OK:
                self.established = True
                break
        return outcome

    def send(self, kind):
        outcome = yield Transfer(kind)
        if outcome.result != CERTIFICATE:
            return outcome
        for _ in range(TIME_ATTEMPTS):
            if (yield Transfer(TIME)).result == OK:
                break
        return Outcome(FAILED)

    def apply(self, settings):
        self.setting_from_cloud = True
        self.interval = settings.get("interval", self.interval)


# What goes over the wire for one transfer of each kind, bytes with all headers: from the switch, to
# it. `herd_wire.py` measures them.
class Bytes(typing.NamedTuple):
    sent: int
    received: int


WIRE = {CHECKIN: Bytes(50756, 1421), FALLBACK: Bytes(50756, 1421), TIME: Bytes(319, 330),
        LISTEN: Bytes(450, 300)}
REFUSED = Bytes(60, 40)  # a SYN, and its refusal
KEEP_ALIVE, KEEP_ALIVE_SECONDS = Bytes(52, 52), 60


class Outage(typing.NamedTuple):
    """From one moment to another, these kinds of transfer come to this."""
    begin: float
    end: float
    kinds: tuple
    result: str


class Cloud:
    """Answers in `latency` seconds, at most `capacity` check-ins a second, the others in their turn,
    and long-polls without an action after `poll_seconds`."""

    def __init__(self, latency=0.05, capacity=None, poll_seconds=1500):
        self.latency, self.capacity, self.poll_seconds = latency, capacity, poll_seconds
        self.outages = []
        self.free_at = 0.0

    def answer(self, kind, member, now):
        """When it ends, and how."""
        for outage in self.outages:
            if outage.begin <= now < outage.end and kind in outage.kinds:
                return now + self.latency, Outcome(outage.result)
        if kind == LISTEN:
            return self.hold(member, now)
        if kind == TIME:
            return now + self.latency, Outcome(OK)
        return self.take_report(kind, member, now)

    def hold(self, member, now):
        if member.actions:
            return now + self.latency, Outcome(OK, member.actions.pop(0))
        return now + member.take_rest(self.poll_seconds), Outcome(OK)

    def take_report(self, kind, member, now):
        end = self.take_turn(now) + self.latency
        if end - now > TIME_LIMITS[kind]:
            return now + TIME_LIMITS[kind], Outcome(FAILED)
        return end, Outcome(OK, member.settings.pop(0) if member.settings else None)

    def take_turn(self, now):
        """One that would end after its switch has given up is not begun."""
        if not self.capacity:
            return now
        begin = max(now, self.free_at)
        if begin - now <= TIME_LIMITS[CHECKIN]:
            self.free_at = begin + 1 / self.capacity
        return begin


class Member:
    """A switch of the herd: its agent, and what waits for it in the cloud."""

    def __init__(self, agent):
        self.agent = agent
        self.settings, self.actions = [], []
        self.keeper = None
        self.rest = None  # of a long-poll that began before the simulation did

    def take_rest(self, seconds):
        rest, self.rest = self.rest, None
        return seconds if rest is None else rest


class Thread:
    """One of an agent's, waiting for something; `turn` tells a wait from earlier ones."""

    def __init__(self, member, steps):
        self.member, self.steps = member, steps
        self.turn = 0
        self.doing = None


class Herd:
    """Switches against a cloud. `count` of them are simulated and stand for `size`."""

    def __init__(self, cloud, size, sample=None, seed=1):
        self.cloud = cloud
        self.count = min(size, sample or size)
        self.weight = size / self.count
        self.dice = random.Random(seed)
        self.now = 0.0
        self.events = []
        self.order = itertools.count()
        self.seconds = {}  # by what is counted: how often in which second
        self.members = []
        if cloud.capacity:
            cloud.capacity /= self.weight

    # --- Who is in it.

    def power_on(self, at):
        """A switch whose agent starts at a moment."""
        member = self._add()
        self._go(Thread(member, member.agent.main()), at, None)

    def settle(self, interval=INTERVAL):
        """A switch that has long been on, somewhere in its interval and in its long-poll."""
        member = self._add(interval)
        member.rest = self.dice.random() * self.cloud.poll_seconds
        self._go(Thread(member, member.agent.settled(self.dice.random() * interval)), 0.0, None)

    def _add(self, interval=INTERVAL):
        self.members.append(Member(Agent(interval)))
        return self.members[-1]

    # --- What happens to it.

    def at(self, moment, act):
        heapq.heappush(self.events, (moment, next(self.order), None, 0, act))

    def push(self, member, action):
        member.actions.append({"action": action})
        if member.keeper and member.keeper.doing == Transfer(LISTEN):
            self._go(member.keeper, *self.cloud.hold(member, self.now))

    def end_poll(self, member, result):
        """The keeper host ends a long-poll, with an empty answer or by going away."""
        if member.keeper and member.keeper.doing == Transfer(LISTEN):
            self._go(member.keeper, self.now, Outcome(result))

    def run(self, until):
        while self.events and self.events[0][0] <= until:
            self.now, _, thread, turn, value = heapq.heappop(self.events)
            if not thread:
                value()
            elif turn == thread.turn:
                self._step(thread, value)
        self.now = until

    def _step(self, thread, outcome):
        if isinstance(thread.doing, Transfer):
            self._count_end(thread.doing.kind, outcome)
        thread.doing = thread.steps.send(outcome)
        if thread.doing is START_KEEPER:
            thread.member.keeper = Thread(thread.member, thread.member.agent.keeper())
            self._go(thread.member.keeper, self.now, None)
            self._go(thread, self.now, None)
        elif isinstance(thread.doing, Sleep):
            self._go(thread, self.now + thread.doing.seconds, None)
        else:
            self._transfer(thread)

    def _transfer(self, thread):
        kind = thread.doing.kind
        begun_before = kind == LISTEN and thread.member.rest is not None
        end, outcome = self.cloud.answer(kind, thread.member, self.now)
        if not begun_before:
            self._count_begin(kind, outcome)
        self._go(thread, end, outcome)

    def _count_begin(self, kind, outcome):
        reached = outcome.result not in (NO_CONNECT, NO_HOST)
        self.tally("connections", outcome.result != NO_HOST)
        self.tally("handshakes", reached and kind in (CHECKIN, FALLBACK))
        bytes_ = WIRE[kind] if reached else REFUSED
        self.tally("bytes", sum(bytes_) if outcome.result != NO_HOST else 0)

    def _count_end(self, kind, outcome):
        if kind in (CHECKIN, FALLBACK):
            self.tally("check-ins", outcome.result == OK)
        elif kind == LISTEN:
            self.tally(LISTEN, outcome.result == OK)

    def _go(self, thread, moment, value):
        thread.turn += 1
        heapq.heappush(self.events, (moment, next(self.order), thread, thread.turn, value))

    # --- What it came to.

    def tally(self, what, amount):
        if amount:
            seconds = self.seconds.setdefault(what, collections.Counter())
            seconds[int(self.now)] += amount

    def total(self, what):
        return self.weight * sum(self.seconds.get(what, {}).values())

    def rates(self, what, step, until):
        """A second, on the average of each `step` seconds."""
        steps = [0.0] * (int(until) // step)
        for second, amount in self.seconds.get(what, {}).items():
            if second // step < len(steps):
                steps[second // step] += amount * self.weight / step
        return steps

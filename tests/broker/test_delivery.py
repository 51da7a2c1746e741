"""That no card is lost, whenever agent and broker are killed; that they come in order, and once for who counts.

Cards are laid on simulated readers, and each lies until the agent has it on the disk or the server has it, as a card
lies until its owner hears a beep. Meanwhile agents and broker are killed at moments that a seed decides. What was laid
is known from here; what arrived, from mosquitto_sub.

usage: test_delivery.py [--cards N] [--kills N] [--agents N] [--devices N] [--seed N]
"""
import argparse
import contextlib
import dataclasses
import random
import shutil
import sqlite3
import time
from typing import Dict, Iterator, List, Set, Tuple

from agent import Agent, Simulator
from broker import Broker
from clients import Message, Subscriber
from stage import Stage

_SETTINGS = """[broker]
url = "{url}"
[topics]
site = "site"
host = "{host}"
[devices]
usb = ["reader"]
interval = 20
[spool]
file = "{spool}"
"""
# How many cards are laid at most before a broker that was killed comes back.
_LONGEST_ABSENCE = 60
_FIRST_CARD = 0x01000000
_FIRST_SERIAL = 400123456
_SECONDS_OF_CHANCE = 0.05


@dataclasses.dataclass
class Reader:
    """What has lain on it, and whether the last of these still does."""

    number: int
    laid: List[str] = dataclasses.field(default_factory=list)
    lies: bool = False


class Desk:
    """An agent and its readers."""

    def __init__(self, broker: Broker, name: str, devices: int) -> None:
        self.name = name
        self.readers = [Reader(number + 1) for number in range(devices)]
        self._folder = broker.stage.folder
        self._spool = self._folder / f"{name}.db"
        words = ["--device", "reader"] * devices
        self._simulator = Simulator(broker.stage, *words, name=f"{name}-devices")
        settings = _SETTINGS.format(url=broker.url, host=name, spool=self._spool)
        self.agent = Agent(broker.stage, settings, self._simulator, name=f"{name}-agent")

    def cards_on_disk(self) -> Set[str]:
        """Of a copy made while the agent stands still: it lets nobody else into its file."""
        copy = self._folder / f"{self.name}-copy.db"
        self.agent.program.pause()
        for end in ("", "-wal"):
            source, its_copy = (path.with_name(path.name + end) for path in (self._spool, copy))
            its_copy.unlink(missing_ok=True)
            if source.exists():
                shutil.copyfile(source, its_copy)
        self.agent.program.resume()
        with contextlib.closing(sqlite3.connect(copy)) as database:
            tables = {row[0] for row in database.execute("SELECT name FROM sqlite_master")}
            rows = database.execute("SELECT json_extract(payload, '$.id') FROM events") if "events" in tables else ()
            return {str(row[0]) for row in rows}

    def move_cards(self, safe: Set[str], cards: Iterator[str], chance: random.Random) -> None:
        """Where a card is safe, it is exchanged or taken; where none lies, the next one is laid."""
        lines = []
        for reader in self.readers:
            if reader.lies and reader.laid[-1] not in safe:
                continue
            card = None if reader.lies and chance.random() < 0.5 else next(cards, None)
            if card is not None:
                lines.append(f"#{reader.number} card {bytes.fromhex(card)[::-1].hex()}:{4 * len(card)}")
                reader.laid.append(card)
            elif reader.lies:
                lines.append(f"#{reader.number} take")
            reader.lies = card is not None
        if lines:
            self._simulator.do(*lines)


class Site:  # pylint: disable=too-many-instance-attributes
    """Desks, a broker, and who listens to it."""

    def __init__(self, stage: Stage, words: argparse.Namespace) -> None:
        self.stage = stage
        self._chance = random.Random(words.seed)
        self._broker = Broker(stage)
        self._broker_runs = True
        self.subscriber = Subscriber(self._broker, "tavlyn/site/+/+/card", "tavlyn/site/+/+/gone", quality=0)
        self.desks = [Desk(self._broker, f"desk-{number + 1}", words.devices) for number in range(words.agents)]
        self._cards = (f"{_FIRST_CARD + number:08X}" for number in range(words.cards))
        self._arrived: Set[str] = set()

    def arrived(self) -> Set[str]:
        """The cards that the server has."""
        self._arrived.update(str(message.json()["id"]) for message in self.subscriber.new_messages())
        return self._arrived

    def move_cards(self) -> int:
        """At every desk; how many cards are safe."""
        waiting = 0
        for desk in self.desks:
            lying = {reader.laid[-1] for reader in desk.readers if reader.lies}
            # What the server has need not be looked for on the disk.
            safe = self.arrived() if lying <= self.arrived() else self.arrived() | desk.cards_on_disk()
            desk.move_cards(safe, self._cards, self._chance)
            waiting += sum(reader.lies for reader in desk.readers)
        return sum(len(reader.laid) for desk in self.desks for reader in desk.readers) - waiting

    def kill_agent(self) -> None:
        """At any moment."""
        agent = self._chance.choice(self.desks).agent
        time.sleep(self._chance.random() * _SECONDS_OF_CHANCE)
        agent.kill()
        agent.start()

    def kill_broker(self) -> None:
        """At any moment; what it has acknowledged has been sent to the subscriber."""
        time.sleep(self._chance.random() * _SECONDS_OF_CHANCE)
        self._broker.kill()
        self._broker_runs = False

    def return_broker(self) -> None:
        """The subscriber is there before an agent sends anything: the broker might lose what came in between."""
        if self._broker_runs:
            return
        connections = self.subscriber.connections
        for desk in self.desks:
            desk.agent.program.pause()
        self._broker.start()
        self.subscriber.await_connection(connections + 1)
        for desk in self.desks:
            desk.agent.program.resume()
        self._broker_runs = True


def _plan(cards: int, kills: int, chance: random.Random) -> List[Tuple[int, str]]:
    """After how many cards what is done."""
    plan: List[Tuple[int, str]] = []
    back = 0
    for moment in sorted(chance.randrange(cards) for _ in range(kills)):
        if moment >= back and chance.random() < 0.5:
            back = moment + chance.randrange(_LONGEST_ABSENCE)
            plan += [(moment, "kill broker"), (back, "return broker")]
        else:
            plan.append((moment, "kill agent"))
    return sorted(plan, key=lambda step: step[0])


def lay_cards(site: Site, plan: List[Tuple[int, str]], cards: int) -> None:
    """Until all are safe."""
    steps = {"kill agent": site.kill_agent, "kill broker": site.kill_broker, "return broker": site.return_broker}
    left = list(plan)
    safe = 0

    def more() -> bool:
        nonlocal safe
        before, safe = safe, site.move_cards()
        while left and left[0][0] <= safe:
            steps[left.pop(0)[1]]()
        return safe > before

    while safe < cards:
        site.stage.wait(f"card {safe + 1}", more)
    site.return_broker()


def judge(reader: Reader, messages: List[Message]) -> List[str]:
    """What is wrong with what has come of a reader."""
    first: Dict[int, Message] = {}
    wrong = []
    for message in messages:
        sequence = int(message.json()["sequence"])
        if sequence not in first:
            if first and sequence < max(first):
                wrong.append(f"{sequence} came after {max(first)}")
            first[sequence] = message
        elif first[sequence].payload != message.payload:
            wrong.append(f"two events have the number {sequence}")
    if set(first) != set(range(1, len(first) + 1)):
        wrong.append(f"numbers are missing: {sorted(set(range(1, max(first, default=0))) - set(first))}")
    cards: List[str] = []
    for message in first.values():
        card = str(message.json()["id"])
        # An agent that begins while a card lies tells of it again, under a new number.
        if message.topic.endswith("/card") and (not cards or cards[-1] != card):
            cards.append(card)
    if cards != reader.laid:
        wrong.append(f"laid {reader.laid}, came {cards}")
    return wrong


def judge_all(site: Site) -> Tuple[int, List[str]]:
    """How many events have come, each counted once, and what is wrong with them."""
    by_reader: Dict[Tuple[str, str], List[Message]] = {}
    for message in site.subscriber.messages():
        _, _, host, serial, _ = message.topic.split("/")
        by_reader.setdefault((host, serial), []).append(message)
    wrong = []
    known = {}
    for desk in site.desks:
        known.update({(desk.name, f"{_FIRST_SERIAL + reader.number - 1:010}"): reader for reader in desk.readers})
    for place, reader in known.items():
        wrong += [f"{'/'.join(place)}: {text}" for text in judge(reader, by_reader.get(place, []))]
    for place in set(by_reader) - set(known):
        payloads = [message.payload for message in by_reader[place]]
        wrong.append(f"{'/'.join(place)} is no reader: {len(payloads)} events, the first is {payloads[0]}")
    numbers = {(place, one.json()["sequence"]) for place, messages in by_reader.items() for one in messages}
    return len(numbers), wrong


def main() -> int:
    """0 if everything has come."""
    parser = argparse.ArgumentParser()
    for name, number in (("cards", 40), ("kills", 4), ("agents", 2), ("devices", 3), ("seed", 1)):
        parser.add_argument(f"--{name}", type=int, default=number)
    words = parser.parse_args()
    plan = _plan(words.cards, words.kills, random.Random(words.seed))
    with Stage() as stage:
        site = Site(stage, words)
        lay_cards(site, plan, words.cards)
        wanted = {card for desk in site.desks for reader in desk.readers for card in reader.laid}
        stage.wait("all cards", lambda: wanted <= site.arrived())
        for desk in site.desks:
            desk.agent.stop()
        events, wrong = judge_all(site)
        kills = {what: sum(step[1] == what for step in plan) for what in ("kill agent", "kill broker")}
        print(f"{len(wanted)} cards on {words.devices} readers of each of {words.agents} agents, seed {words.seed}; "
              f"killed: agents {kills['kill agent']} times, the broker {kills['kill broker']} times. {events} events "
              f"came, {len(site.subscriber.messages()) - events} came again; {len(wrong)} mistakes", *wrong, sep="\n")
        return 1 if wrong else 0


if __name__ == "__main__":
    raise SystemExit(main())

"""tavlynctl fleet: what it shows of devices and makes them do; the agents are played by the clients of these tests."""
import json
import pathlib
import re
import signal
import unittest
from typing import Callable, List, Tuple

from agent import Agent, Simulator
from broker import Authority, Broker, Rules
from clients import Client, Message, Payload, Subscriber, publish
from stage import Process, Stage

_INFO: Payload = {
    "schema": 1, "product": "card reader", "part": "RDR-80581AKU", "firmware": "1.23", "luid": 7, "configurations": 2,
    "link": "usb", "agent": "1",
}
_PAGE = pathlib.Path(__file__).resolve().parents[2] / "man/tavlynctl-fleet.1"
_AGENT = """[broker]
url = "{url}"
[topics]
site = "lobby"
host = "desk"
[commands]
allow = ["beep", "load-config"]
[spool]
file = "{folder}/spool.db"
"""
_FILE = "the text of a configuration\n"


class Site:
    """Agents that have told the broker of their devices, and carry out commands."""

    def __init__(self, broker: Broker, devices: Tuple[str, ...], client: Client = Client()) -> None:
        self._broker = broker
        self._client = client
        self._commands = Subscriber(broker, "tavlyn/+/+/+/command", client=client)
        self._carried_out = 0
        for place in devices:
            self.tell(f"{place}/info", _INFO)
            self.say(place, "online")
            self.say(f"{place.rsplit('/', 1)[0]}/agent", "online")

    def tell(self, topic: str, payload: Payload) -> None:
        """Something that the broker keeps."""
        publish(self._broker, f"tavlyn/{topic}", payload, retained=True, client=self._client)

    def say(self, place: str, state: str) -> None:
        """The state of a device or an agent."""
        self.tell(f"{place}/state", {"schema": 1, "state": state})

    def commands(self) -> List[Message]:
        """All that have come."""
        return self._commands.messages()

    def reply(self, reply: Callable[[Payload], Payload], number: int = 1) -> None:
        """Carries out the next commands."""
        wanted = self._carried_out + number
        commands = self._commands.wait_topic("command", wanted)[self._carried_out:]
        self._carried_out = wanted
        for message in commands:
            command = message.json()
            answer = {"schema": 1, "request": command["request"], **reply(command)}
            publish(self._broker, message.topic.replace("/command", "/reply"), answer, client=self._client)


def _well(_: Payload) -> Payload:
    return {"ok": True, "result": {}}


def _badly(_: Payload) -> Payload:
    return {"ok": False, "error": {"code": "not-allowed", "text": "beep is not allowed here"}}


class Fleet(unittest.TestCase):
    """As its users type it."""

    def setUp(self) -> None:
        self.stage = Stage()
        self.addCleanup(self.stage.__exit__, None, None, None)
        self._runs = 0

    def start(self, broker: Broker, command: str, *words: str) -> Process:
        """In the background."""
        self._runs += 1
        line = ["tavlynctl", "fleet", *command.split(), "--broker", broker.url, *words]
        return self.stage.begin(f"tavlynctl-{self._runs}", line)

    def ended(self, process: Process) -> Tuple[int, str, str]:
        """Its exit status, and what it printed."""
        status = self.stage.wait("its end", lambda: None if process.is_running() else (process.status(),))[0]
        return status, process.printed.read_text(encoding="utf-8"), process.log.read_text(encoding="utf-8")

    def run_fleet(self, broker: Broker, command: str, *words: str) -> Tuple[int, str, str]:
        """To its end."""
        return self.ended(self.start(broker, command, *words))

    def await_watch(self, process: Process) -> None:
        """What comes from now on is shown."""
        self.stage.wait("the watch", lambda: "watching" in process.log.read_text(encoding="utf-8"), process)

    def test_lists_devices_with_their_states(self) -> None:
        """A device is offline when its agent is, and --to chooses."""
        broker = Broker(self.stage)
        site = Site(broker, ("lobby/desk/1", "lobby/desk/2", "lobby/door/3", "cellar/door/4"))
        site.say("lobby/desk/2", "lost")
        site.say("lobby/door/agent", "offline")
        status, printed, _ = self.run_fleet(broker, "list", "--to", "lobby/+/+", "--json")
        self.assertEqual(status, 0)
        rows = json.loads(printed)["devices"]
        states = {row["device"]: row["state"] for row in rows}
        self.assertEqual(states, {"1": "online", "2": "lost", "3": "offline"})
        self.assertEqual(rows[0]["firmware"], "1.23")
        status, printed, _ = self.run_fleet(broker, "list", "--to", "cellar/+/+")
        self.assertRegex(printed, "site +host +device +state +product")
        self.assertRegex(printed, "cellar +door +4 +online +card reader")
        status, _, log = self.run_fleet(broker, "list", "--to", "roof/+/+")
        self.assertEqual((status, "roof/+/+" in log), (2, True))

    def test_shows_events(self) -> None:
        """Those that come, not what was kept."""
        broker = Broker(self.stage)
        Site(broker, ("lobby/desk/1",))
        watch = self.start(broker, "watch", "--count", "2")
        self.await_watch(watch)
        publish(broker, "tavlyn/lobby/desk/1/card", {"schema": 1, "sequence": 1, "bits": 26, "id": "03030201"})
        publish(broker, "tavlyn/lobby/desk/1/state", {"schema": 1, "state": "lost"})
        status, printed, _ = self.ended(watch)
        self.assertEqual(status, 0)
        self.assertEqual(printed.splitlines(), ["lobby/desk/1 card 26 bits 03030201", "lobby/desk/1 lost"])

    def test_believes_topics_and_not_messages(self) -> None:
        """An agent that says it is another one, and messages that are no objects or endless ones."""
        broker = Broker(self.stage)
        Site(broker, ("lobby/desk/1",))
        watch = self.start(broker, "watch", "--count", "1", "--json")
        mark = self.start(broker, "watch", "--count", "1")
        self.await_watch(mark)
        hostile = ("[" * 100000, '{"a":' * 100000, "\0", '"card"', "{")
        said: Payload = {"schema": 1, "bits": 8, "site": "forged", "host": "forged", "device": "forged"}
        while watch.is_running():
            for payload in hostile:
                publish(broker, "tavlyn/lobby/desk/1/card", payload)
            publish(broker, "tavlyn/lobby/desk/1/card", said)
        status, printed, _ = self.ended(watch)
        event = json.loads(printed)
        self.assertEqual((status, event["bits"]), (0, 8))
        self.assertEqual([event[key] for key in ("site", "host", "device")], ["lobby", "desk", "1"])
        self.assertEqual(self.ended(mark)[1], "lobby/desk/1 card 8 bits\n")

    def test_beeps_and_tells_who_did_not(self) -> None:
        """Each device has its row; the worst decides the exit status."""
        broker = Broker(self.stage)
        site = Site(broker, ("lobby/desk/1", "lobby/desk/2"))
        beep = self.start(broker, "beep", "2", "--json")
        site.reply(lambda command: _badly(command) if command["count"] == 2 else _well(command), 2)
        status, printed, log = self.ended(beep)
        self.assertEqual(status, 4)
        self.assertEqual([row["result"] for row in json.loads(printed)["devices"]], ["failed", "failed"])
        self.assertIn("2 of 2 devices failed", log)
        site.say("lobby/desk/2", "lost")
        beep = self.start(broker, "beep")
        site.reply(_well)
        status, printed, _ = self.ended(beep)
        self.assertEqual(status, 2)
        self.assertRegex(printed, "1 +ok")
        self.assertRegex(printed, "2 +lost")

    def test_rolls_a_file_out_and_goes_on_after_an_interruption(self) -> None:
        """What was done is not done again; what was asked and not answered is asked under the same name."""
        broker = Broker(self.stage)
        site = Site(broker, ("lobby/desk/1", "lobby/desk/2", "lobby/desk/3"))
        file = self.stage.file("desk.hwg", _FILE)
        words = ("config load", "--at-once=1", "--yes", "--resume", str(self.stage.folder / "state"), file)
        first = self.start(broker, *words)
        site.reply(_well)
        self.stage.wait("the second command", lambda: len(site.commands()) == 2, first)
        first.kill()
        second = self.start(broker, *words)
        self.stage.wait("the second command again", lambda: len(site.commands()) == 3, second)
        self.assertEqual(second.end(signal.SIGINT), -signal.SIGINT)
        self.assertIn("0 of 2 devices are done, 1 have been asked and may still do it", second.log.read_text())
        third = self.start(broker, *words)
        for _ in ("the second once more", "the second twice more", "the second again", "the third"):
            site.reply(_well)
        status, printed, log = self.ended(third)
        self.assertEqual(status, 0, log)
        self.assertRegex(printed, "1 +done before")
        self.assertEqual(printed.count(" ok\n"), 2)
        requests = [message.json()["request"] for message in site.commands()]
        self.assertEqual([message.json()["file"] for message in site.commands()], [_FILE] * 5)
        self.assertEqual((len(set(requests)), set(requests[1:4])), (3, {requests[1]}))
        self.stage.file("desk.hwg", _FILE * 2)
        status, _, log = self.run_fleet(broker, *words)
        self.assertEqual((status, "another rollout" in log), (6, True))
        (self.stage.folder / "desk.hwg").write_bytes(b"caf\xe9\n")
        status, _, log = self.run_fleet(broker, *words)
        self.assertEqual((status, "is not UTF-8" in log), (6, True))

    def test_runs_the_examples_of_its_page(self) -> None:
        """With this broker in place of theirs."""
        broker = Broker(self.stage)
        site = Site(broker, ("lobby/desk-4/1",))
        self.stage.file("desk.hwg", _FILE)
        examples = re.findall(r"^tavlynctl fleet (.*)$", _PAGE.read_text(encoding="utf-8"), re.MULTILINE)
        self.assertEqual(len(examples), 4)
        for line in examples:
            words = re.sub(r" --broker \S+", "", line).replace("desk.hwg", f"{self.stage.folder}/desk.hwg")
            run = self.start(broker, words.replace("--resume rollout", f"--resume {self.stage.folder}/rollout"))
            if "watch" in line:
                self.await_watch(run)
                for state in ("lost", "online"):
                    site.say("lobby/desk-4/1", state)
            elif "list" not in line:
                site.reply(_well)
            self.assertEqual(self.ended(run)[0], 0, line)

    def test_wants_a_broker_that_can_be_trusted(self) -> None:
        """Its certificate is checked, passwords are sent, and nothing goes plain to another machine."""
        broker = Broker(self.stage, Rules({"server": "secret"}, authority=Authority(self.stage)))
        assert broker.rules.authority is not None
        server = Client("server")
        Site(broker, ("lobby/desk/1",), server)
        words = ("--user", "server", "--password-file", self.stage.file("password", "secret\n"))
        ours = ("--ca", broker.rules.authority.root)
        self.assertEqual(self.run_fleet(broker, "list", *words, *ours)[0], 0)
        self.assertEqual(self.run_fleet(broker, "list", *words)[0], 2)
        self.assertEqual(self.run_fleet(broker, "list", *ours)[0], 3)
        broker.host = "10.0.0.1"
        broker.rules.authority = None
        status, _, log = self.run_fleet(broker, "list")
        self.assertEqual((status, "--plain" in log), (1, True))

    def test_speaks_to_real_agents(self) -> None:
        """What an agent says of a device is listed; the device beeps and takes a configuration."""
        broker = Broker(self.stage)
        devices = Simulator(self.stage, "--device", "plus:3,serial=0400000001,luid=7")
        saved = str(self.stage.folder / "desk.hwg")
        save = self.stage.begin("save", ["tavlynctl", "config", "save", saved], devices.variables)
        self.assertEqual(self.ended(save)[0], 0)
        settings = _AGENT.format(url=broker.url, folder=self.stage.folder)
        subscriber = Subscriber(broker, "tavlyn/lobby/desk/+/state")
        Agent(self.stage, settings, devices)
        subscriber.wait("the reader", lambda message: "0400000001" in message.topic and "online" in message.payload)
        status, printed, _ = self.run_fleet(broker, "list", "--json")
        self.assertEqual(status, 0)
        row = json.loads(printed)["devices"][0]
        told = {key: row[key] for key in ("device", "state", "luid", "configurations")}
        self.assertEqual(told, {"device": "0400000001", "state": "online", "luid": 7, "configurations": 3})
        for words in (["beep"], ["config load", "--dry-run", saved], ["config load", "--yes", saved]):
            status, printed, log = self.run_fleet(broker, *words)
            self.assertEqual(status, 0, printed + log)
            self.assertRegex(printed, " ok( +1)?\n")


if __name__ == "__main__":
    unittest.main()

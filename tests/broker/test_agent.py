"""What tavlynd publishes, and what it does when it is asked."""
import hashlib
import hmac
import os
import signal
import socket
import unittest
from typing import Any, Dict, List

from agent import Agent, Simulator
from broker import Authority, Broker, Rules
from clients import Client, Message, Subscriber, publish
from stage import Stage

_READER = "0400123456"
_AT = f"tavlyn/lobby/desk/{_READER}"
_SITE_KEY = "0123456789abcdef0123456789abcdef"
_CARD, _ID = "0123456789ABCDEF", "EFCDAB8967452301"
_SWIPE = ";4000001234567899=3012?"
_CARDS = 6
_SECONDS_FOR_A_DATAGRAM = 60


def _settings(stage: Stage, its: Broker, **more: str) -> str:
    """More lines for sections."""
    sections = {
        "broker": f'url = "{its.url}"\n',
        "topics": 'site = "lobby"\nhost = "desk"\n',
        "devices": "interval = 20\n",
        "spool": f'file = "{stage.folder}/spool.db"\n',
    }
    for name, lines in more.items():
        sections[name] = sections.get(name, "") + lines + "\n"
    return "".join(f"[{name}]\n{lines}" for name, lines in sections.items())


def _hash_of(text: str) -> str:
    return hmac.new(_SITE_KEY.encode(), text.encode(), hashlib.sha256).hexdigest()


def _is_done(message: Message) -> bool:
    return '"ok":true' in message.payload


class TheAgent(unittest.TestCase):
    """With simulated devices and a real broker, which each test begins as it needs them."""

    # pylint: disable=attribute-defined-outside-init

    def setUp(self) -> None:
        self.stage = Stage()
        self.addCleanup(self.stage.__exit__, None, None, None)
        self.replies = 0

    def begin(self, *devices: str, **settings: str) -> None:
        """One reader, if no devices are given."""
        self.broker = Broker(self.stage)
        self.devices = Simulator(self.stage, *[word for device in devices for word in ("--device", device)])
        self.server = Subscriber(self.broker, "tavlyn/#")
        self.agent = Agent(self.stage, _settings(self.stage, self.broker, **settings), self.devices)

    def await_state(self, topic: str, state: str, number: int = 1) -> List[Message]:
        """The agent takes commands before it says that it is online."""
        return self.server.wait(
            f"{topic} {state}", lambda one: one.topic == f"{topic}/state" and one.json()["state"] == state, number
        )

    def ask(self, command: Dict[str, Any], device: str = _READER) -> Dict[str, Any]:
        """A command, and the reply to it."""
        self.replies += 1
        publish(self.broker, f"tavlyn/lobby/desk/{device}/command", command)
        return self.server.wait_topic(f"{device}/reply", self.replies)[-1].json()

    def await_spooled(self, event: str, sequence: int) -> None:
        """The agent has this event of this number on the disk."""
        wanted = f'"event":"{event}","sequence":{sequence},'.encode()
        files = self.stage.folder.glob
        self.stage.wait("the event", lambda: any(wanted in file.read_bytes() for file in files("spool.db*")))

    def refusal(self, command: Dict[str, Any], device: str = _READER) -> str:
        """The code of the error."""
        reply = self.ask(command, device)
        self.assertFalse(reply["ok"])
        return str(reply["error"]["code"])

    def test_publishes_what_happens(self) -> None:
        """Events of every kind, each device with numbers of its own, and what each device is."""
        self.begin("plus:2", "magstripe", "sonar")
        self.await_state("tavlyn/lobby/desk/agent", "online")
        # Magnetic-stripe readers and sensors have no serial number.
        for device in (_READER, "hidraw-sim2", "hidraw-sim3"):
            self.await_state(f"tavlyn/lobby/desk/{device}", "online")
        info = self.server.wait_topic(f"{_READER}/info")[0].json()
        self.assertEqual((info["product"], info["luid"], info["configurations"]), ("card reader", 1, 2))
        self.devices.do("#1 card 01020303:26")
        card = self.server.wait_topic(f"{_READER}/card")[0]
        self.assertEqual((card.quality, card.retained), (1, False))
        event = card.json()
        self.assertRegex(event.pop("time"), r"^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z$")
        expected = {"schema": 1, "event": "card", "sequence": 1, "serial": _READER, "bits": 26, "id": "03030201"}
        self.assertEqual(event, expected)
        self.devices.do("#1 take", "#2 swipe ;4000001234567899=3012?", "#3 range 20")
        self.assertEqual(self.server.wait_topic(f"{_READER}/gone")[0].json()["sequence"], 2)
        swipe = self.server.wait_topic("hidraw-sim2/swipe")[0].json()
        self.assertEqual(swipe["sequence"], 1)
        self.assertIn("4000001234567899=3012", str(swipe["tracks"]))
        self.assertTrue(self.server.wait_topic("hidraw-sim3/presence")[0].json()["present"])

    def test_says_who_is_there(self) -> None:
        """To whoever asks later: devices that come and go, and an agent that is killed or ends."""
        self.begin()
        self.await_state(_AT, "online")
        self.devices.do("unplug")
        self.await_state(_AT, "lost")
        self.devices.do("plug reader,serial=0400123456")
        self.await_state(_AT, "online", 2)
        self.agent.kill()
        self.await_state("tavlyn/lobby/desk/agent", "offline")
        late = Subscriber(self.broker, "tavlyn/#")
        kept = {message.topic: message.json() for message in late.wait("what is kept", lambda _: True, 4)}
        self.assertEqual(kept["tavlyn/lobby/desk/agent/state"]["state"], "offline")
        self.assertEqual(kept[f"{_AT}/info"]["serial"], _READER)
        self.devices.do("unplug")
        self.agent.start()
        self.await_state(_AT, "lost", 2)
        self.assertEqual(self.agent.stop(), 0)
        self.await_state("tavlyn/lobby/desk/agent", "offline", 2)

    def test_loses_nothing(self) -> None:
        """While the broker is away, and the agent is killed and comes back without it."""
        self.begin()
        self.await_state(_AT, "online")
        self.broker.kill()
        log = self.agent.program.log
        for number in range(1, _CARDS + 1):
            self.devices.do(f"card {number:02X}:8")
            self.await_spooled("card", 2 * number - 1)
            self.devices.do("take")
            self.await_spooled("gone", 2 * number)
            if number == _CARDS // 2:
                self.agent.kill()
                self.agent.start()
                self.stage.wait("the reader", lambda: log.read_text().count("is there") == 2)
        self.broker.start()
        events = [
            message.json()
            for message in self.server.wait("all events", lambda one: "sequence" in one.payload, 2 * _CARDS)
        ]
        self.assertEqual([event["sequence"] for event in events], list(range(1, 2 * _CARDS + 1)))
        cards = [event["id"] for event in events if event["event"] == "card"]
        self.assertEqual(cards, [f"{number:02X}" for number in range(1, _CARDS + 1)])

    def test_looks_up_a_name_beside_its_work(self) -> None:
        """What happens meanwhile is kept, and published once the broker is found."""
        self.broker = Broker(self.stage)
        self.server = Subscriber(self.broker, "tavlyn/#")
        devices = Simulator(self.stage)
        library = os.environ["TAVLYN_SLOW_NAMES_LIBRARY"]
        # A sanitizer wants to be loaded first.
        devices.variables.update(
            LD_PRELOAD=library, TAVLYN_SLOW_NAMES=str(self.stage.folder), ASAN_OPTIONS="verify_asan_link_order=0"
        )
        settings = _settings(self.stage, self.broker, broker="plain = true")
        agent = Agent(self.stage, settings.replace(self.broker.host, "broker.test"), devices)
        self.stage.wait("the look-up", (self.stage.folder / "asked").exists, agent.program)
        devices.do("card 0A:8")
        self.await_spooled("card", 1)
        agent.stop()
        agent.start()
        self.await_spooled("card", 2)  # the one that lies there
        self.assertEqual([one.payload for one in self.server.messages()], [])
        self.stage.file("answer", self.broker.host)
        self.assertEqual(self.server.wait_topic("/card")[0].json()["id"], "0A")

    def test_has_readers_on_every_link(self) -> None:
        """Two of them in another dialect; a line that is cut, and heals."""
        port = self.stage.free_port()
        adapter = f"{self.stage.address}:{port}"
        kinds = ("reader@com3,serial=A1", "reader@com4:ascii,serial=B2", f"reader@{adapter},serial=C3")
        self.begin(*kinds, devices=f'usb = []\nserial = ["com3", "com4:ascii"]\nethernet = ["{adapter}"]')
        for number, name in enumerate(("A1", "B2", "C3"), 1):
            topics = f"tavlyn/lobby/desk/{name}"
            self.await_state(topics, "online")
            self.devices.do(f"#{number} card 0{number}020304:26")
            self.assertEqual(self.server.wait_topic(f"{name}/card")[0].json()["id"], f"0403020{number}")
            self.devices.do(f"#{number} cut 1")
            self.await_state(topics, "lost")
            self.server.wait_topic(f"{name}/gone")
            self.devices.do(f"#{number} heal")
            self.await_state(topics, "online", 2)
            self.server.wait_topic(f"{name}/card", 2)

    def test_does_what_is_allowed(self) -> None:
        """And says what becomes of everything else."""
        self.begin(commands='allow = ["beep", "read-card", "load-config"]\nlargest-file = 1')
        self.await_state(_AT, "online")
        reply = self.ask({"schema": 1, "request": "a", "do": "beep", "count": 2})
        self.assertIsInstance(reply["took"], int)
        expected = {"schema": 1, "request": "a", "ok": True, "result": {"beeps": 2, "long": False}}
        self.assertEqual(reply, {**expected, "took": reply["took"]})
        # What was done is not done again; the reply is.
        self.assertEqual(self.ask({"request": "a", "do": "beep", "count": 3}), reply)
        self.assertEqual(self.refusal({"request": "b", "do": "relay", "on": True}), "not-allowed")
        wrong: List[Dict[str, Any]] = [{"do": "explode"}, {"do": 7}, {}]
        for do in wrong:
            refused = self.ask({"request": "c", **do})["error"]
            self.assertEqual(refused["code"], "bad-request")
            self.assertIn('"beep", "led", "relay"', refused["text"])
        self.assertEqual(self.refusal({"request": "d", "do": "beep", "count": 99}), "bad-request")
        self.assertEqual(self.refusal({"request": "", "do": "beep"}), "bad-request")
        self.assertEqual(self.refusal({"request": "x" * 65, "do": "beep"}), "bad-request")
        self.assertEqual(self.refusal({"request": "e", "do": "load-config", "file": "x" * 1025}), "too-large")
        self.assertEqual(self.refusal({"request": "f", "do": "load-config", "file": "x" * 9999}), "too-large")
        self.assertEqual(self.refusal({"request": "g", "do": "load-config", "file": "nonsense\n"}), "bad-request")
        self.replies = 0
        self.assertEqual(self.refusal({"request": "h", "do": "beep"}, "0400999999"), "unknown-device")
        self.replies = 0
        self.assertEqual(self.refusal({"request": "i", "do": "beep"}, "agent"), "bad-request")

    def test_survives_what_anybody_sends(self) -> None:
        """Payloads that are no commands, and commands that a broker has kept for whoever comes."""
        self.begin()
        self.await_state(_AT, "online")
        for payload in ("{", "[" * 3000, '{"request":"a"', '"beep"', '{"request":{},"do":[]}', "\0", "\u00ff"):
            publish(self.broker, f"{_AT}/command", payload)
        publish(self.broker, f"{_AT}/command", {"request": "old", "do": "beep"}, retained=True)
        # It came while the agent was there: not one that was kept.
        self.server.wait("the first reply", _is_done)
        self.agent.stop()
        self.agent.start()
        self.await_state(_AT, "online", 2)
        publish(self.broker, f"{_AT}/command", {"request": "new", "do": "beep"})
        answers = self.server.wait("the second reply", _is_done, 2)
        self.assertEqual([answer.json()["request"] for answer in answers], ["old", "new"])
        self.assertFalse(any("unknown-device" in message.payload for message in self.server.messages()))

    def test_takes_only_so_many(self) -> None:
        """Commands a minute."""
        self.begin(commands="rate = 2")
        self.await_state(_AT, "online")
        for number in range(3):
            publish(self.broker, f"{_AT}/command", {"request": str(number), "do": "beep"})
        self.server.wait("a refusal", lambda one: '"code":"busy"' in one.payload)

    def test_hides_ids(self) -> None:
        """Whoever has no key sees that the same card comes again, to any agent with it, and nothing else."""
        publishing = f'ids = "hashed"\nsite-key = "{_SITE_KEY}"'
        self.begin("reader", "magstripe", publish=publishing, commands='allow = ["read-card"]')
        door = _settings(self.stage, self.broker, publish=publishing)
        door = door.replace('"desk"', '"door"').replace("spool.db", "door.db")
        readers = Simulator(self.stage, name="door-devices")
        Agent(self.stage, door, readers, "door")
        for place in (_AT, _AT.replace("desk", "door"), "tavlyn/lobby/desk/hidraw-sim2"):
            self.await_state(place, "online")
        self.devices.do(f"#1 card {_CARD}:64", f"#2 swipe {_SWIPE}")
        readers.do(f"card {_CARD}:64")
        hashed = _hash_of(f"64:{_ID}")
        for event in self.server.wait_topic("card", 2):
            self.assertEqual((event.json()["bits"], event.json()["hash"]), (64, hashed))
        self.assertEqual(self.ask({"request": "a", "do": "read-card"})["result"]["hash"], hashed)
        swipe = self.server.wait_topic("swipe")[0].json()
        self.assertEqual(swipe["hash"], _hash_of(f"2:{_SWIPE}5"))
        self.broker.kill()
        self.devices.do("#1 take", f"#2 swipe {_SWIPE}")
        self.await_spooled("swipe", 2)
        self.await_spooled("gone", 2)
        self.devices.do(f"#1 card {_CARD}:64")
        self.await_spooled("card", 3)
        files = [file for end in (".db", "-wal", ".log") for file in self.stage.folder.glob(f"*{end}")]
        kept = {file.name: file.read_bytes() for file in files}
        self.assertLessEqual({"spool.db-wal", "door.db-wal", "broker.db"}, set(kept))
        kept["traffic"] = "".join(message.payload for message in self.server.messages()).encode()
        self.assertIn(hashed.encode(), kept["spool.db-wal"])
        for name, content in kept.items():
            for secret in (_CARD, _ID, "400000123456789"):
                for form in (secret.upper().encode(), secret.lower().encode(), bytes.fromhex(f"{secret:0>16}")):
                    self.assertNotIn(form, content, name)

    def test_reads_its_settings_again(self) -> None:
        """If they are right; otherwise it goes on with those it has."""
        self.begin()
        self.await_state(_AT, "online")
        self.stage.file("agent.toml", _settings(self.stage, self.broker, commands='allow = ["bep"]'))
        self.agent.program.send(signal.SIGHUP)
        log = self.agent.program.log
        self.stage.wait("the mistake", lambda: "stay as they were" in log.read_text())
        self.assertIn("allow must be", log.read_text())
        self.assertTrue(self.ask({"request": "a", "do": "beep"})["ok"])
        other = _settings(self.stage, self.broker, commands="allow = []").replace("lobby", "hall")
        self.stage.file("agent.toml", other)
        self.agent.program.send(signal.SIGHUP)
        self.await_state("tavlyn/lobby/desk/agent", "offline")
        self.await_state(f"tavlyn/hall/desk/{_READER}", "online")
        publish(self.broker, f"tavlyn/hall/desk/{_READER}/command", {"request": "b", "do": "beep"})
        self.server.wait("a refusal", lambda one: "not-allowed" in one.payload)

    def test_is_a_service(self) -> None:
        """The service manager hears how it is, again and again; the journal gets priorities."""
        self.broker = Broker(self.stage)
        devices = Simulator(self.stage)
        with socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM) as manager:
            manager.bind(f"{self.stage.folder}/notify")
            manager.settimeout(_SECONDS_FOR_A_DATAGRAM)
            devices.variables.update(
                NOTIFY_SOCKET=f"{self.stage.folder}/notify", WATCHDOG_USEC="1000000", JOURNAL_STREAM="8:1"
            )
            agent = Agent(self.stage, _settings(self.stage, self.broker), devices)
            self.assertIn(b"READY=1\n", manager.recv(1000))
            for _ in range(3):
                self.assertEqual(manager.recv(1000), b"WATCHDOG=1\n")
            agent.program.send(signal.SIGHUP)
            said = b""
            while b"READY=1\n" not in said:
                said += manager.recv(1000)
            self.assertRegex(said, rb"(?s)RELOADING=1\nMONOTONIC_USEC=\d+\n.*READY=1\n")
            self.assertEqual(agent.stop(), 0)
            while b"STOPPING=1\n" not in said:
                said += manager.recv(1000)
        self.assertRegex(agent.program.log.read_text(), r"(?m)^<5>the settings are read again$")

    def test_trusts_one_authority(self) -> None:
        """It shows its certificate, and talks to no broker that another authority vouches for."""
        authority = Authority(self.stage)
        own = authority.certificate("agent")
        rules = Rules({"server": "a", "lobby/desk": "b"}, "", authority, True)
        self.broker = Broker(self.stage, rules)
        self.server = Subscriber(self.broker, "tavlyn/#", client=Client("server", own))
        password = self.stage.file("password", "b\n")
        keys = f'certificate = "{own.certificate}"\ncertificate-key = "{own.key}"\ntls = "1.3"\n'
        keys += f'user = "lobby/desk"\npassword-file = "{password}"\n'
        settings = _settings(self.stage, self.broker, broker=f'{keys}ca = "{authority.root}"')
        agent = Agent(self.stage, settings)
        self.await_state("tavlyn/lobby/desk/agent", "online")
        log = agent.program.log
        self.broker.kill()
        self.broker.start()
        self.stage.wait("a second connection", lambda: log.read_text().count("connected to") == 2)
        # The files of the certificates may have changed.
        agent.program.send(signal.SIGHUP)
        self.stage.wait("a third connection", lambda: log.read_text().count("connected to") == 3)
        strange = settings.replace(authority.root, own.certificate).replace("spool.db", "other.db")
        stranger = Agent(self.stage, strange, name="stranger")
        self.stage.wait("the refusal", lambda: "no connection to" in stranger.program.log.read_text())


if __name__ == "__main__":
    unittest.main()

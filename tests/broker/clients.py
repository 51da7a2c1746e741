"""The other side: programs that know nothing of tavlynd and see what a server of the site would see."""
import dataclasses
import json
import subprocess
from typing import Any, Callable, Dict, List, Optional, Union

from broker import Broker, Certificate

_SUBSCRIBED = "Subscribed (mid: "

Payload = Dict[str, Any]


@dataclasses.dataclass(frozen=True)
class Message:
    """As it came: `retained` if it was kept by the broker from before the subscription."""

    topic: str
    payload: str
    quality: int
    retained: bool

    def json(self) -> Payload:
        """An object, or the test fails."""
        read = json.loads(self.payload)
        assert isinstance(read, dict), self
        return read


@dataclasses.dataclass(frozen=True)
class Client:
    """As whom a program connects."""

    user: str = ""
    certificate: Optional[Certificate] = None


_ANYONE = Client()


def login(broker: Broker, client: Client = _ANYONE) -> List[str]:
    """How mosquitto_sub and mosquitto_pub are told where to go, and as whom."""
    words = ["-h", broker.host, "-p", str(broker.port)]
    if client.user:
        words += ["-u", client.user, "-P", broker.rules.users[client.user]]
    if broker.rules.authority:
        words += ["--cafile", broker.rules.authority.root]
    if client.certificate:
        words += ["--cert", client.certificate.certificate, "--key", client.certificate.key]
    return words


class Subscriber:
    """Is subscribed when it has been made, and again by itself after a restart of the broker.

    With quality 1 the broker keeps what comes while it is away. With quality 0 it gets all that a broker has sent until
    that was killed: an acknowledgement that cannot be delivered would end the connection before the rest was read.
    """

    def __init__(self, broker: Broker, *topics: str, client: Client = _ANYONE, quality: int = 1) -> None:
        self._stage = broker.stage
        self._messages: List[Message] = []
        self._connections = 0
        self._taken = 0
        self._rest = b""
        name = self._stage.fresh_name("subscriber")
        words = ["stdbuf", "-oL", "mosquitto_sub", "-d", "-i", name, "-q", str(quality), *(["-c"] if quality else [])]
        words += ["-F", "\\t%r\\t%q\\t%t\\t%p"]
        words += [word for topic in topics for word in ("-t", topic)]
        self._process = self._stage.begin(name, words + login(broker, client))
        # pylint: disable=consider-using-with
        self._output = open(self._process.printed, "rb")
        self.await_connection(1)

    def __del__(self) -> None:
        self._output.close()

    def messages(self) -> List[Message]:
        """Everything so far, in the order of arrival."""
        self._read()
        return self._messages

    def new_messages(self) -> List[Message]:
        """Those that no earlier call has returned."""
        self._read()
        new = self._messages[self._taken:]
        self._taken = len(self._messages)
        return new

    def await_connection(self, number: int) -> None:
        """It has been subscribed this many times: once more with each broker that it has met."""
        self._stage.wait(f"subscription {number}", lambda: self._read() >= number, self._process)

    @property
    def connections(self) -> int:
        """How often it has been subscribed."""
        return self._read()

    def wait(self, what: str, wanted: Callable[[Message], bool], number: int = 1) -> List[Message]:
        """The messages that are wanted, once there are so many."""
        seen = 0
        chosen: List[Message] = []

        def look() -> List[Message]:
            nonlocal seen
            self._read()
            chosen.extend(message for message in self._messages[seen:] if wanted(message))
            seen = len(self._messages)
            return chosen if len(chosen) >= number else []

        return self._stage.wait(what, look, self._process)

    def wait_topic(self, end: str, number: int = 1) -> List[Message]:
        """Those whose topic has this end."""
        return self.wait(f"{number} of {end}", lambda message: message.topic.endswith(end), number)

    def _read(self) -> int:
        *lines, self._rest = (self._rest + self._output.read()).split(b"\n")
        for line in lines:
            text = line.decode("utf-8", errors="surrogateescape")
            if text.startswith("\t"):
                retained, quality, topic, payload = text[1:].split("\t", 3)
                self._messages.append(Message(topic, payload, int(quality), retained == "1"))
            elif text.startswith(_SUBSCRIBED):
                self._connections += 1
        return self._connections


def publish(
    broker: Broker, topic: str, payload: Union[str, Payload], retained: bool = False, client: Client = _ANYONE
) -> None:
    """Returns after the broker has acknowledged it."""
    text = payload if isinstance(payload, str) else json.dumps(payload)
    words = ["mosquitto_pub", "-q", "1", "-t", topic, "-s", *(["-r"] if retained else [])]
    words += login(broker, client)
    ended = subprocess.run(words, input=text, text=True, capture_output=True, check=False)
    assert ended.returncode == 0, f"{ended.stderr}{broker.stage.told()}"

"""What agent and fleet say of a broker that they do not get through to: what is wrong, and what to do."""
import subprocess
import unittest
from typing import Dict, List, Optional

from agent import Agent
from broker import Authority, Broker, Certificate, Rules
from stage import Stage

_ELSEWHERE = "10.0.0.1"


class Tls(unittest.TestCase):
    """Both programs in each case: their messages differ in nothing but what their users write."""

    def setUp(self) -> None:
        self.stage = Stage()
        self.addCleanup(self.stage.__exit__, None, None, None)
        self.authority = Authority(self.stage)
        self.root = self.authority.root

    def broker(
        self, shown: Optional[Certificate] = None, client_certificates: bool = False, newest_tls: str = ""
    ) -> str:
        """The URL of a new one."""
        rules = Rules({}, "", self.authority, client_certificates, shown, newest_tls)
        return Broker(self.stage, rules, self.stage.fresh_name("broker")).url

    def agent_says(self, url: str, wanted: str, **keys: str) -> None:
        """In its log, or it refuses its settings."""
        lines = "".join(f'{name.replace("_", "-")} = "{value}"\n' for name, value in keys.items())
        name = self.stage.fresh_name("agent")
        settings = f'[broker]\nurl = "{url}"\n{lines}[spool]\nfile = "{self.stage.folder}/{name}.db"\n'
        log = Agent(self.stage, settings, name=name).program.log
        self.stage.wait(f"{name}: {wanted}", lambda: wanted in log.read_text(encoding="utf-8"))

    def fleet_says(self, url: str, status: int, wanted: str, **options: str) -> None:
        """And how it ends."""
        words = [word for name, value in options.items() for word in (f"--{name.replace('_', '-')}", value)]
        line = ["tavlynctl", "fleet", "list", "--broker", url, *words]
        ended = subprocess.run(line, capture_output=True, text=True, check=False)
        self.assertEqual((ended.returncode, wanted in ended.stderr), (status, True), ended.stderr)

    def both_say(self, url: str, wanted: str, **ca: str) -> None:
        """The same."""
        self.agent_says(url, wanted, **ca)
        self.fleet_says(url, 2, wanted, **ca)

    def test_a_broker_that_is_trusted(self) -> None:
        """The agent connects, and the fleet hears that there are no devices."""
        url = self.broker()
        self.agent_says(url, "connected to", ca=self.root)
        self.fleet_says(url, 2, "the broker knows no device", ca=self.root)

    def test_another_authority(self) -> None:
        """One that vouches for somebody else, and those of the system."""
        url = self.broker()
        wanted = "its certificate is not trusted here; "
        other = Authority(self.stage, "other").root
        trusted: List[Dict[str, str]] = [{"ca": other}, {}]
        for words in trusted:
            self.agent_says(url, wanted + "ca must", **words)
            self.fleet_says(url, 2, wanted + "--ca must", **words)

    def test_another_name(self) -> None:
        """The certificate is good, but of another broker."""
        url = self.broker(self.authority.certificate("other", "DNS:other.example"))
        self.both_say(url, f"its certificate is not for {self.stage.address}", ca=self.root)

    def test_an_expired_certificate(self) -> None:
        """The only thing that is wrong with it."""
        url = self.broker(self.authority.certificate("old", f"IP:{self.stage.address}", expired=True))
        self.both_say(url, "its certificate has expired; the broker needs a new one", ca=self.root)

    def test_a_broker_that_wants_certificates(self) -> None:
        """None, that of a stranger, and the right one."""
        url = self.broker(client_certificates=True)
        self.agent_says(url, "set certificate and certificate-key", ca=self.root)
        self.fleet_says(url, 2, "set --certificate and --key", ca=self.root)
        strange = Authority(self.stage, "other").certificate("stranger")
        own = self.authority.certificate("own")
        for shown, agent, fleet in (
            (strange, "certificate and certificate-key", "--certificate and --key"),
            (own, "connected to", "the broker knows no device"),
        ):
            files: Dict[str, str] = {"certificate": shown.certificate}
            self.agent_says(url, agent, ca=self.root, certificate_key=shown.key, **files)
            self.fleet_says(url, 2, fleet, ca=self.root, key=shown.key, **files)
        mixed = {"ca": self.root, "certificate": own.certificate}
        self.agent_says(url, "the key is that of another certificate", certificate_key=strange.key, **mixed)
        self.fleet_says(url, 2, "the key is that of another certificate", key=strange.key, **mixed)

    def test_a_broker_with_older_tls(self) -> None:
        """An agent may want 1.3; 1.2 is enough for the fleet."""
        url = self.broker(newest_tls="TLSv1.2")
        self.agent_says(url, "no version of TLS that tls allows", ca=self.root, tls="1.3")
        self.agent_says(url, "connected to", ca=self.root)
        self.fleet_says(url, 2, "the broker knows no device", ca=self.root)

    def test_a_port_without_tls_and_one_with(self) -> None:
        """The wrong URL for either."""
        plain = Broker(self.stage, name="plain").url
        self.both_say(plain.replace("mqtt:", "mqtts:"), "nothing there speaks TLS; does the broker run", ca=self.root)
        self.both_say(self.broker().replace("mqtts:", "mqtt:"), "write mqtts://")

    def test_a_broker_that_is_not_there(self) -> None:
        """Which is seen at once, with TLS as without."""
        place = f"{self.stage.address}:{self.stage.free_port()}"
        self.both_say(f"mqtt://{place}", "nothing listens there; does the broker run")
        self.both_say(f"mqtts://{place}", "nothing there speaks TLS; does the broker run", ca=self.root)

    def test_nothing_goes_plain_to_another_machine(self) -> None:
        """Unless its user says so."""
        self.agent_says(f"mqtt://{_ELSEWHERE}", "write mqtts://, or plain = true")
        self.fleet_says(f"mqtt://{_ELSEWHERE}", 1, "--plain allows this")
        self.agent_says("mqtt://localhost", "mqtt:// is without TLS", ca=self.root)
        self.fleet_says("mqtt://localhost", 1, "mqtt:// is without TLS", ca=self.root)

    def test_files_that_cannot_be_used(self) -> None:
        """Missing, no certificate, for everybody to read."""
        url = self.broker()
        missing = f"{self.stage.folder}/missing.pem"
        self.agent_says(url, f"ca {missing}: No such file", ca=missing)
        self.fleet_says(url, 6, f"there is no file {missing}", ca=missing)
        text = self.stage.file("text", "no certificate\n")
        self.agent_says(url, "ca names a file that has no certificate", ca=text)
        self.fleet_says(url, 2, "--ca names a file that has no certificate", ca=text)
        (self.stage.folder / "text").chmod(0o644)
        files: List[Dict[str, str]] = [{"certificate": self.root, "certificate_key": text}, {"password_file": text}]
        for keys in files:
            self.agent_says(url, f"others may read it; chmod o-rwx {text}", user="a", **keys)
        self.fleet_says(url, 6, f"chmod o-rwx {text}", ca=self.root, user="a", password_file=text)

    def test_a_wrong_password(self) -> None:
        """The broker does not say more than that."""
        broker = Broker(self.stage, Rules({"server": "a"}, authority=self.authority), "closed")
        password = self.stage.file("password", "b\n")
        words = {"ca": self.root, "user": "server", "password_file": password}
        self.agent_says(broker.url, "no such user with this password; see user, password", **words)
        self.fleet_says(broker.url, 3, "no such user with this password; see --user", **words)


if __name__ == "__main__":
    unittest.main()

"""A Mosquitto with users, topic rights and certificates of its own, which may be killed and comes back as it was."""
import dataclasses
import getpass
import socket
import subprocess
from typing import Dict, List, Optional

from stage import Stage

# Nothing is dropped because there is too much of it, and nothing waits: subscribers are sent a message before its
# publisher has the acknowledgement. It must not give up the rights of the user who made its folder.
_SETTINGS = """user {user}
persistence true
persistence_location {folder}/
persistence_file {name}.db
autosave_on_changes true
autosave_interval 1
max_inflight_messages 0
set_tcp_nodelay true
max_queued_messages 0
max_queued_bytes 0
log_dest stderr
log_type all
"""

# Certificates that are good at any time, or never, whatever this machine thinks the time is.
_FOREVER = "99991231235959Z"
_LONG_AGO = "19700102000000Z"
_AUTHORITY = """[ca]
default_ca = ours
[ours]
database = {folder}/index.txt
new_certs_dir = {folder}
rand_serial = yes
default_md = sha256
default_startdate = 19700101000000Z
default_enddate = {until}
policy = anything
unique_subject = no
copy_extensions = copy
[anything]
commonName = supplied
[req]
prompt = no
distinguished_name = name
[name]
commonName = {name}
[root]
basicConstraints = critical, CA:TRUE
[leaf]
basicConstraints = critical, CA:FALSE
subjectAltName = {addresses}
"""


_LIMITS = """openssl_conf = all
[all]
ssl_conf = ssl
[ssl]
system_default = limits
[limits]
MaxProtocol = {newest}
"""


@dataclasses.dataclass(frozen=True)
class Certificate:
    """Files: the certificate, and its key."""

    certificate: str
    key: str


class Authority:
    """Makes certificates; who trusts it has `root`."""

    def __init__(self, stage: Stage, name: str = "authority") -> None:
        self._stage = stage
        self._name = name
        stage.file("index.txt", "")
        self._own = self._make(name, "root", [], _FOREVER)
        self.root = self._own.certificate

    def certificate(self, name: str, *addresses: str, expired: bool = False) -> Certificate:
        """For a program of this name, or one at these addresses, such as IP:127.0.0.1 or DNS:localhost."""
        return self._make(name, "leaf", list(addresses) or [f"DNS:{name}"], _LONG_AGO if expired else _FOREVER)

    def _make(self, name: str, kind: str, addresses: List[str], until: str) -> Certificate:
        folder = self._stage.folder
        made = Certificate(f"{folder}/{name}.crt", f"{folder}/{name}.key")
        request = f"{folder}/{name}.csr"
        settings = self._stage.file(
            f"{name}.cnf",
            _AUTHORITY.format(folder=folder, name=name, addresses=",".join(addresses) or "DNS:none", until=until),
        )
        curve = ["-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes", "-keyout", made.key]
        _openssl("req", "-new", "-config", settings, *curve, "-out", request)
        signer = ["-selfsign", "-keyfile", made.key]
        if kind == "leaf":
            signer = ["-cert", self._own.certificate, "-keyfile", self._own.key]
        files = ["-in", request, "-out", made.certificate]
        _openssl("ca", "-batch", "-notext", "-config", settings, "-extensions", kind, *signer, *files)
        return made


def _openssl(*words: str) -> None:
    ended = subprocess.run(["openssl", *words], capture_output=True, text=True, check=False)
    assert ended.returncode == 0, ended.stderr


@dataclasses.dataclass
class Rules:
    """Who may do what: users with their passwords (none: everybody is let in), Mosquitto's own lines of topic rights,
    and the authority that it shows a certificate of, which its clients need as well if `client_certificates`.

    A broker may show another certificate than that of its address, and speak no version of TLS above `newest_tls`."""

    users: Dict[str, str] = dataclasses.field(default_factory=dict)
    rights: str = ""
    authority: Optional[Authority] = None
    client_certificates: bool = False
    shown: Optional[Certificate] = None
    newest_tls: str = ""


class Broker:
    """Is there when it has been made, and after start()."""

    def __init__(self, stage: Stage, rules: Optional[Rules] = None, name: str = "broker") -> None:
        self.stage = stage
        self.rules = rules or Rules()
        self.host = stage.address
        self.port = stage.free_port()
        variables = {}
        if self.rules.newest_tls:
            limits = stage.file(f"{name}.limits", _LIMITS.format(newest=self.rules.newest_tls))
            variables["OPENSSL_CONF"] = limits
        self._process = stage.begin(name, ["mosquitto", "-c", self._settings(name)], variables)
        self._await()

    @property
    def url(self) -> str:
        """As an agent is told it."""
        return f"{'mqtts' if self.rules.authority else 'mqtt'}://{self.host}:{self.port}"

    @property
    def process(self) -> int:
        """Its process ID."""
        return self._process.process

    def start(self) -> None:
        """After a stop or a kill; with everything that it has on the disk."""
        self._process.start()
        self._await()

    def stop(self) -> None:
        """It takes leave of its clients."""
        self._process.end()

    def kill(self) -> None:
        """The connections end without a word.

        It may have acknowledged a message that it has not stored; but the subscribers that were there have it.
        """
        self._process.kill()

    def _settings(self, name: str) -> str:
        stage, rules = self.stage, self.rules
        lines = _SETTINGS.format(user=getpass.getuser(), folder=stage.folder, name=name)
        lines += f"listener {self.port} {self.host}\n"
        if rules.authority:
            own = rules.shown or rules.authority.certificate(name, f"IP:{self.host}")
            lines += f"cafile {rules.authority.root}\ncertfile {own.certificate}\nkeyfile {own.key}\n"
            lines += f"require_certificate {'true' if rules.client_certificates else 'false'}\n"
        lines += f"allow_anonymous {'false' if rules.users else 'true'}\n"
        if rules.users:
            users = stage.file(f"{name}.users", "".join(f"{user}:{word}\n" for user, word in rules.users.items()))
            subprocess.run(["mosquitto_passwd", "-U", users], check=True)
            lines += f"password_file {users}\n"
        if rules.rights:
            lines += f"acl_file {stage.file(f'{name}.acl', rules.rights)}\n"
        return stage.file(f"{name}.conf", lines)

    def _answers(self) -> bool:
        try:
            socket.create_connection((self.host, self.port)).close()
            return True
        except ConnectionRefusedError:
            return False

    def _await(self) -> None:
        self.stage.wait("the broker", self._answers, self._process)

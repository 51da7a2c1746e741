"""The fixture in whole runs of pytest: what it leaves behind, and what it says."""
import contextlib
import ctypes
import os
import pathlib
import subprocess
import sys
import tempfile
import textwrap
from typing import Iterator, List

import pytest

pytest_plugins = ["pytester"]

PR_SET_CHILD_SUBREAPER = 36
USES = """
import ctypes, os, signal
import pytest
from tavlynapi import calls

def devices():
    calls.USBConnect(ctypes.c_uint32())
    return calls.GetDevCnt()

"""
# Each step waits for the others.
AT_ONCE = """
def step():
    print("waits", flush=True)
    input()

@pytest.mark.tavlyn(devices=["reader"] * COUNT)
def test(desk):
    step()
    assert devices() == COUNT
    step()
"""
RUN = [sys.executable, "-m", "pytest", "-p", "tavlynapi.testing", "-p", "no:cacheprovider"]


@pytest.fixture(name="heir")
def becomes_heir() -> Iterator[None]:
    """Processes that lose their parent become children of this one."""
    libc = ctypes.CDLL(None)
    assert libc.prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0) == 0
    yield
    libc.prctl(PR_SET_CHILD_SUBREAPER, 0, 0, 0, 0)


def run(pytester: pytest.Pytester, test: str) -> pytest.RunResult:
    """A run of its own."""
    pytester.makepyfile(USES + textwrap.dedent(test))
    return pytester.run(*RUN)


@pytest.mark.usefixtures("heir")
@pytest.mark.parametrize("last", ["assert False", "raise KeyboardInterrupt"])
def test_nothing_is_left_of_a_run_that_ends(pytester: pytest.Pytester, last: str) -> None:
    run(pytester, f"""
    def test(desk):
        assert devices() == 1
        {last}
    """)
    with pytest.raises(ChildProcessError):
        os.waitpid(-1, os.WNOHANG)


@pytest.mark.usefixtures("heir")
def test_the_simulator_ends_with_a_run_that_is_killed(
    pytester: pytest.Pytester, monkeypatch: pytest.MonkeyPatch
) -> None:
    with tempfile.TemporaryDirectory() as folder:  # nobody else removes that of the socket
        monkeypatch.setenv("TMPDIR", folder)
        run(pytester, """
        def test(desk):
            assert devices() == 1
            os.kill(os.getpid(), signal.SIGKILL)
        """)
    # It is still there, or has just ended.
    os.waitpid(-1, 0)
    with pytest.raises(ChildProcessError):
        while True:
            os.waitpid(-1, 0)


def test_runs_at_once_have_a_desk_each(pytester: pytest.Pytester) -> None:
    with contextlib.ExitStack() as ends:
        runs: List[subprocess.Popen[str]] = []
        for count in (1, 2, 3):
            file = pytester.makepyfile(**{f"test_{count}": USES + AT_ONCE.replace("COUNT", str(count))})
            pipes = subprocess.Popen([*RUN, "-s", file], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
            runs.append(ends.enter_context(pipes))
        for _ in ("desks", "devices"):
            for one in runs:
                assert one.stdout and any("waits" in line for line in one.stdout)
            for one in runs:
                assert one.stdin
                one.stdin.write("\n")
                one.stdin.flush()
        assert [one.communicate() and one.returncode for one in runs] == [0, 0, 0]


def test_a_missing_simulator_is_named(pytester: pytest.Pytester, monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setenv("PATH", "/nonexistent")
    ran = run(pytester, "def test(desk): pass")
    ran.stdout.fnmatch_lines(["tavlynsim is not installed: it is in the package tavlyn-simulator*"])
    ran.assert_outcomes(errors=1)


def test_a_device_that_does_not_exist_is_named(pytester: pytest.Pytester) -> None:
    ran = run(pytester, """
    @pytest.mark.tavlyn(devices=["plus:99"])
    def test(desk): pass
    """)
    ran.stdout.fnmatch_lines(["tavlynsim: plus:99: no such kind of device*"])
    ran.assert_outcomes(errors=1)


SCENARIO = """tavlyn-scenario 1
device desk reader
begin exchange
expect by 5 desk relay on
"""


@pytest.mark.parametrize("on", [True, False])
def test_a_scenario_that_is_not_met_fails_the_test(pytester: pytest.Pytester, on: bool) -> None:
    pytester.makefile(".scenario", relay=SCENARIO)
    ran = run(pytester, f"""
    import tavlynapi

    @pytest.mark.tavlyn(scenario="relay.scenario")
    def test(desk):
        with tavlynapi.connect() as reader:
            reader.relay({on})
    """)
    ran.assert_outcomes(passed=int(on), failed=int(not on))
    if not on:
        ran.stdout.fnmatch_lines(["*relay.scenario:4: expect by 5 desk relay on: *the relay is off*"])


def test_what_a_test_finds_comes_before_its_scenario(pytester: pytest.Pytester) -> None:
    pytester.makefile(".scenario", relay=SCENARIO)
    ran = run(pytester, """
    @pytest.mark.tavlyn(scenario="relay.scenario")
    def test(desk):
        assert devices() == 2
    """)
    ran.assert_outcomes(failed=1)
    ran.stdout.fnmatch_lines(["*assert 1 == 2*"])


@pytest.mark.parametrize(
    "words,said", [("device='reader'", "tavlyn(device=)"), ("['reader']", "tavlyn(an argument without a name)")]
)
def test_an_argument_that_does_not_exist_is_named(pytester: pytest.Pytester, words: str, said: str) -> None:
    ran = run(pytester, f"""
    @pytest.mark.tavlyn({words})
    def test(desk): pass
    """)
    ran.stdout.fnmatch_lines([said + ": there is no such argument; there are devices, cards, *"])


def test_a_library_that_was_used_before_is_refused(pytester: pytest.Pytester) -> None:
    ran = run(pytester, "calls.GetDevCnt()\ndef test(desk): pass")
    ran.stdout.fnmatch_lines(["*was loaded before the first desk, and sees the system's devices*"])
    ran.assert_outcomes(errors=1)


def test_devices_of_another_simulator_are_left_alone(
    pytester: pytest.Pytester, monkeypatch: pytest.MonkeyPatch
) -> None:
    monkeypatch.setenv("TAVLYNSIM_SOCKET", "/nonexistent")
    run(pytester, "def test(desk): pass").stdout.fnmatch_lines(["*sees the devices of another desk*"])


def test_an_old_pytest_loads_it() -> None:
    program = "import pytest; del pytest.Config, pytest.FixtureRequest; import tavlynapi.testing"
    subprocess.run([sys.executable, "-c", program], check=True)


def test_without_pytest(tmp_path: pathlib.Path) -> None:
    program = tmp_path / "program.py"
    program.write_text(
        "import sys\n"
        "sys.modules['pytest'] = None\n"
        "from tavlynapi import simulator\n"
        "with simulator.desk(devices=['sonar']) as desk:\n"
        "    print(desk.do('list'))\n"
    )
    done = subprocess.run([sys.executable, program], check=True, stdout=subprocess.PIPE, text=True)
    assert "sonar" in done.stdout

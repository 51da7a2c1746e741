"""Builds a mutant and runs the tests: a copy of the tree, built once, and a folder of programs for each worker."""
import os
import pathlib
import re
import resource
import shlex
import shutil
import signal
import subprocess

# The tests, cheap ones first: those that the library's code is compiled into, and those that load the library.
BUILT_OF_IT = ("unit_tests", "toy_tests", "protocol_page", "host_tests", "fault_tests")
LOADING_IT = ("boundary_tests", "line_tests", "allocation_tests", "load_tests", "memory_tests", "wire_tests")
PROGRAMS = BUILT_OF_IT + LOADING_IT
LIBRARY = "tavlynapi"
ARGUMENTS = {"protocol_page": ["{tree}/docs/protocol.md"]}

CPU_SECONDS = 20
WALL_SECONDS = 400  # for what waits for ever
MEMORY = 4 << 30
FILE_SIZE = 64 << 20

FAILED = re.compile(r"^\[  FAILED  \] ([^\s,]+)", re.M)
BEGUN = re.compile(r"^\[ RUN      \] (\S+)", re.M)
DURATION = re.compile(r"^\[       OK \] (\S+) \((\d+) ms\)", re.M)


def limit():
    resource.setrlimit(resource.RLIMIT_CPU, (CPU_SECONDS, CPU_SECONDS + 2))
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
    resource.setrlimit(resource.RLIMIT_FSIZE, (FILE_SIZE, FILE_SIZE))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def run(command, cwd, env=None):
    """The exit status and what was printed; None for the status when the time was up."""
    process = subprocess.Popen(command, cwd=cwd, env=env, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                               stderr=subprocess.STDOUT, preexec_fn=limit, start_new_session=True)
    try:
        output = process.communicate(timeout=WALL_SECONDS)[0]
        status = None if process.returncode == -signal.SIGXCPU else process.returncode
    except subprocess.TimeoutExpired:
        status, output = None, b""
    try:
        os.killpg(process.pid, signal.SIGKILL)  # whatever the tests have started
    except ProcessLookupError:
        pass
    process.wait()
    return status, output.decode(errors="replace")


class Step:
    """A command of the build: what it writes, and its words."""

    def __init__(self, command):
        self.words = shlex.split(command.removeprefix(": && ").removesuffix(" && :"))
        self.output = self.words[self.words.index("-o") + 1] if "-o" in self.words else None
        self.compiles = "-c" in self.words


class Program:
    def __init__(self, base, name):
        steps = [Step(line) for line in ninja(base, "-t", "commands", name).splitlines()]
        self.compiles = {step.output: step for step in steps if step.compiles}
        links = [step for step in steps if step.output and not step.compiles and "-o" in step.words]
        wanted = f"lib{name}.so" if name == LIBRARY else name
        self.link = next(step for step in links if pathlib.PurePath(step.output).name.startswith(wanted))
        own = set(self.link.words) | self.archived(steps)
        self.compiles = {output: step for output, step in self.compiles.items() if output in own}
        self.name = name

    def archived(self, steps):
        """The objects in the archives that are linked."""
        for_archives = [step.words for step in steps if "qc" in step.words]
        return {word for words in for_archives for word in words[words.index("qc") + 2:]
                if words[words.index("qc") + 1] in self.link.words}


def ninja(folder, *arguments):
    return subprocess.run(["ninja", *arguments], cwd=folder, capture_output=True, text=True, check=True).stdout


def dependencies(base):
    """Object -> the files that it is compiled from."""
    found, current = {}, None
    for line in ninja(base, "-t", "deps").splitlines():
        if line.startswith("    "):
            current.add(os.path.normpath(os.path.join(base, line.strip())))
        elif ": #deps" in line:
            current = found.setdefault(line.partition(":")[0], set())
    return found


class Workshop:
    def __init__(self, root, folder):
        self.root, self.folder, self.tree, self.base = root, folder, folder / "tree", folder / "b"

    def copy_tree(self):
        listed = subprocess.run(["git", "ls-files", "-co", "--exclude-standard", "-z"], cwd=self.root,
                                capture_output=True, text=True, check=True).stdout.split("\0")
        files = {name for name in listed if name and (self.root / name).is_file()}
        for name in files:
            source, copy = self.root / name, self.tree / name
            if not copy.is_file() or copy.read_bytes() != source.read_bytes():
                copy.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(source, copy)
        for path in self.tree.rglob("*"):
            if path.is_file() and path.relative_to(self.tree).as_posix() not in files:
                path.unlink()

    def build(self):
        self.copy_tree()
        flags = {"CMAKE_BUILD_TYPE": "Release", "TAVLYN_TESTS": "ON", "TAVLYN_TOOLS": "OFF",
                 "CMAKE_EXE_LINKER_FLAGS": "-fuse-ld=lld",
                 "CMAKE_SHARED_LINKER_FLAGS": "-fuse-ld=lld", "CMAKE_MODULE_LINKER_FLAGS": "-fuse-ld=lld"}
        for command in (["cmake", "-S", self.tree, "-B", self.base, "-G", "Ninja", *(f"-D{k}={v}" for k, v in flags.items())],
                        ["cmake", "--build", self.base, "--target", *PROGRAMS]):
            done = subprocess.run(command, capture_output=True, text=True)
            if done.returncode != 0:
                raise SystemExit(done.stdout[-4000:] + done.stderr)
        self.deps = dependencies(self.base)
        self.library = Program(self.base, LIBRARY)
        self.programs = [Program(self.base, name) for name in PROGRAMS]
        self.suites, self.slow, self.killers = self.find_suites(), [], {}

    def sources(self):
        """The files of src/ that what is tested is compiled from."""
        made = {output for program in (self.library, *self.programs) for output in program.compiles}
        src = str(self.tree / "src") + "/"
        return sorted({os.path.relpath(path, self.tree) for output in made for path in self.deps[output]
                       if path.startswith(src)})

    def find_suites(self):
        """Suite of the unit tests -> the folder that it is in."""
        return {suite: path.parent.relative_to(self.tree / "tests").as_posix()
                for path in (self.tree / "tests").rglob("*.cpp")
                for suite in re.findall(r"^TEST(?:_F|_P)?\((\w+),", path.read_text(encoding="utf-8"), re.M)}


class Worker:
    """Its programs are copies whose paths, which have the same length, lead to its own folder."""

    def __init__(self, shop, number):
        self.shop, self.folder = shop, shop.folder / str(number)
        assert len(self.folder.name) == len(shop.base.name)
        shutil.rmtree(self.folder, ignore_errors=True)
        for path in shop.base.rglob("*"):
            if path.parent.name == "bin" or path.suffix == ".so" or ".so." in path.name:
                self.copy(path)
        self.overlay, self.scratch = self.folder / "overlay", self.folder / "scratch"
        self.durations, self.left = {}, set()

    def copy(self, path):
        target = self.folder / path.relative_to(self.shop.base)
        target.parent.mkdir(parents=True, exist_ok=True)
        if path.is_symlink():
            target.symlink_to(os.readlink(path))
        else:
            target.write_bytes(path.read_bytes().replace(bytes(self.shop.base), bytes(self.folder)))
            target.chmod(0o755)

    def own(self, word):
        """An argument that names what the program loads: it is in the worker's folder."""
        return word.replace(str(self.shop.base), str(self.folder)) if word.startswith(("-D", "-Wl,-rpath")) else word

    def try_out(self, name, text):
        """What becomes of a file with other contents: a word, and the test that failed."""
        shutil.rmtree(self.overlay, ignore_errors=True)
        self.changed = self.overlay / name
        self.changed.parent.mkdir(parents=True)
        self.changed.write_text(text, encoding="utf-8")
        self.name, self.objects, self.library_is_new = name, {}, False
        original = str(self.shop.tree / name)
        self.affected = {output for output, files in self.shop.deps.items() if original in files}
        for program in self.shop.programs:
            word, by = self.run_program(program)
            if word != "survived":
                return word, by
        return "survived", ""

    def compile(self, program, wanted):
        for output in wanted:
            if output in self.objects:
                continue
            target = self.folder / "objects" / output
            target.parent.mkdir(parents=True, exist_ok=True)
            words = [str(target) if word == output else self.own(word) for word in program.compiles[output].words]
            if pathlib.PurePath(words[0]).name == "ccache":  # it would never find one
                words.pop(0)
            first = next(at for at, word in enumerate(words) if word.startswith("-"))
            words[first:first] = [f"-I{self.overlay}", f"-I{self.overlay}/src"]
            source = pathlib.Path(words[-1])
            if self.name.endswith(".cpp"):
                together = target.with_suffix(".cxx")
                text = source.read_text(encoding="utf-8") if source.suffix == ".cxx" else f'#include "{source}"\n'
                together.write_text(text.replace(str(self.shop.tree / self.name), str(self.changed)), encoding="utf-8")
                words[-1] = str(together)
            words += ["-O0", "-w"]  # the compiler would take longer than the tests
            if run(words, self.shop.base)[0] != 0:
                return False
            self.objects[output] = str(target)
        return True

    def relink(self, program, tests_in=()):
        """Compiles what the file is part of and links the program again. Tests are compiled again only where asked for:
        most would come out the same."""
        wanted = [output for output in program.compiles if output in self.affected
                  and (not is_unit_test(output) or any(output.endswith(f"tests_{folder}_cxx.cxx.o") for folder in tests_in))]
        if not self.compile(program, wanted):
            return False
        used = {output: self.objects[output] for output in program.compiles if output in self.objects}
        words = [used.get(word, self.own(word)) for word in program.link.words]
        words[words.index(program.link.output)] = str(self.folder / program.link.output)
        # What comes first is what inline functions and members of archives are taken from.
        ahead = list(used.values())
        first = next(at for at, word in enumerate(words) if word.endswith(".o"))
        words[first:] = ahead + [word for word in words[first:] if word not in ahead]
        return run(words, self.shop.base)[0] == 0

    def run_program(self, program):
        built = not self.affected.isdisjoint(program.compiles)
        loaded = program.name in LOADING_IT and not self.affected.isdisjoint(self.shop.library.compiles)
        if not built and not loaded:
            return "survived", ""
        if loaded and not self.library_is_new and not self.relink(self.shop.library):
            return "not compiled", ""
        self.library_is_new |= loaded
        # One that is not built of the file may still be what an earlier mutant has left.
        if (built or program.name in self.left) and not self.relink(program):
            return "not compiled", ""
        self.left = self.left | {program.name} if built else self.left - {program.name}
        if program.name != "unit_tests":
            return self.run_tests(program, "*")
        room = os.path.dirname(self.name).removeprefix("src/")
        for pattern in self.patterns(room):
            word, by = self.run_unit_tests(program, pattern)
            if word != "survived":
                return word, by
        return "survived", ""

    def patterns(self, room):
        """Filters for one run of the unit tests after the other, the most promising first."""
        near = [suite for suite, folder in self.shop.suites.items() if folder == room]
        suites = ":".join(f"{suite}.*:*/{suite}.*" for suite in near)
        slow = ":".join(self.shop.slow)
        # What has killed another mutant of the file may well kill this one.
        killers = ":".join(f"*{suite}.*" for suite in sorted(self.shop.killers.get(self.name, ())))
        # The slow tests tell nothing about other folders than theirs.
        slow_near = ":".join(test for test in self.shop.slow if suite_of(test) in near)
        return [*([f"{killers}-{slow}"] if killers else []), *([f"{suites}-{slow}"] if near else []),
                f"-{suites}:{slow}", *([slow_near] if slow_near else [])]

    def run_unit_tests(self, program, pattern):
        """A test that was compiled with the file as it was counts only if it also fails with the changed one."""
        stale = {output for output in self.affected & program.compiles.keys() if is_unit_test(output)}
        renewed = set()
        while True:
            word, by = self.run_tests(program, pattern)
            folder = self.shop.suites.get(suite_of(by), "support").replace("/", "_")
            if word != "killed" or not stale or folder in renewed:
                return word, by
            renewed |= {folder, "support"}
            if not self.relink(program, renewed):
                return "not compiled", ""

    def run_tests(self, program, pattern):
        shutil.rmtree(self.scratch, ignore_errors=True)
        self.scratch.mkdir()
        arguments = [word.format(tree=self.shop.tree) for word in ARGUMENTS.get(
            program.name, ["--gtest_fail_fast", "--gtest_brief=0", f"--gtest_filter={pattern}"])]
        env = {**os.environ, "TMPDIR": str(self.scratch), "GTEST_FILTER": "*"}
        status, output = run([str(self.folder / "bin" / program.name), *arguments], self.scratch, env)
        if status == 0:
            if program.name == "unit_tests":  # others have a clock of their own
                self.durations.update((test, int(time)) for test, time in DURATION.findall(output))
            return "survived", ""
        # After a crash it is the last one that began.
        failed = FAILED.findall(output)[:1] or BEGUN.findall(output)[-1:] or [program.name]
        return ("timed out" if status is None else "killed"), failed[0]


def suite_of(test):
    """Without the prefix of an instance."""
    return test.partition(".")[0].rpartition("/")[2]


def is_unit_test(output):
    return "unit_tests.dir" in output

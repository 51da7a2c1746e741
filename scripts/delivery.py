"""What the packages for other languages are made of: the library of a build, and archives that are always the same."""
import os
import pathlib
import subprocess
import sys
import time
import zipfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
WINDOWS = {0x8664: "x64", 0x014C: "x86"}
EARLIEST = (1980, 1, 1, 0, 0, 0)  # that a zip can tell


def installed(build, folder):
    """(library, the name that programs load, the folder that tells what is linked into it) of a build, as delivered."""
    if not (build / "cmake_install.cmake").exists():
        sys.exit(f"{build} is not a build folder: scripts/build makes one")
    subprocess.run(["cmake", "--install", build, "--component", "library", "--strip", "--prefix", folder], check=True,
                   stdout=subprocess.DEVNULL)
    (bill,) = folder.rglob("sbom.cdx.json")
    dll = folder / "bin" / "tavlynapi.dll"
    if dll.exists():
        return dll, dll.name, bill.parent
    (library,) = folder.rglob("libtavlynapi.so.7")
    return library.resolve(), library.name, bill.parent


def windows_processor(library):
    """x64 or x86."""
    header = library.read_bytes()[:4096]
    start = int.from_bytes(header[0x3C:0x40], "little")
    return WINDOWS[int.from_bytes(header[start + 4:start + 6], "little")]


def date():
    """The time of the last commit, or SOURCE_DATE_EPOCH."""
    epoch = os.environ.get("SOURCE_DATE_EPOCH") or subprocess.run(
        ["git", "log", "-1", "--format=%ct"], cwd=ROOT, stdout=subprocess.PIPE, text=True, check=True).stdout
    return time.gmtime(int(epoch))[:6]


def write(path, files, when):
    """A zip of these files, in this order."""
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as archive:
        for name, content in files.items():
            entry = zipfile.ZipInfo(name, max(when, EARLIEST))
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.create_system = 3
            entry.external_attr = 0o100644 << 16
            archive.writestr(entry, content)

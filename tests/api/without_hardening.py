#!/usr/bin/env python3
"""Fails unless check-hardening finds what is missing in a small library built without each of the flags in turn.

usage: without_hardening.py CHECK OBJDUMP COMPILER [COMPILER ARGUMENT…]
"""
import pathlib
import subprocess
import sys
import tempfile

CHECK, OBJDUMP, *COMPILER = sys.argv[1:]

SOURCE = r"""
#include <string.h>
__attribute__((visibility("default"))) void Filled(char* to, const char* from, unsigned long count);
void Filled(char* to, const char* from, unsigned long count) {
  char room[9000];
  memcpy(room, from, count);
  memcpy(to, room, count);
}
#ifdef WEAK
__attribute__((weak)) void Missing(void);
void CallMissing(void);
void CallMissing(void) { Missing(); }
#endif
#ifdef ADDRESS_IN_TEXT
__asm__(".text\n.quad Filled\n");
#endif
#ifdef WRITABLE_CODE
__asm__(".section .both,\"awx\"\nnop\n.text\n");
#endif
#ifdef PROGRAM
int main(void) { return 0; }
#endif
"""

ELF = ("-O2 -fPIC -shared -fstack-protector-strong -fstack-clash-protection -fcf-protection -U_FORTIFY_SOURCE "
       "-D_FORTIFY_SOURCE=2 -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack -Wl,-z,shstk").split()
# The flags that are added, which may take others back, and what is then found; WITHOUT names one to leave out.
WITHOUT = "without "
WITHOUT_ELF = [
    ([WITHOUT + "-shared", WITHOUT + "-fPIC", "-no-pie", "-fno-pie", "-DPROGRAM"], "cannot be moved"),
    (["-DADDRESS_IN_TEXT", "-Wl,-z,notext"], "text relocations"),
    (["-Wl,-z,norelro"], "no PT_GNU_RELRO"),
    (["-Wl,-z,lazy"], "not bound at once"),
    (["-Wl,-z,execstack"], "no GNU_STACK that is read and written"),
    (["-DWRITABLE_CODE"], "a segment is RWE"),
    (["-Wl,-rpath,/nowhere", "-Wl,--disable-new-dtags"], "an old kind of run path"),
    (["-Wl,-rpath,."], 'run path "."'),
    (["-fno-stack-protector"], "no stack protector"),
    (["-U_FORTIFY_SOURCE"], "no checked copies"),
    (["-fcf-protection=none"], "Filled may not be branched to"),
    ([WITHOUT + "-Wl,-z,shstk"], "not marked for shadow stacks"),
    (["-fno-stack-clash-protection"], "the stack is not probed"),
    (["-Wl,--no-as-needed", "-lresolv"], "loads libresolv.so.2"),
    (["-DWEAK"], "Missing may be missing"),
    (["-Wl,-soname,other.so"], "is called other.so"),
]

PE = "-O2 -shared -Wl,--dynamicbase -Wl,--nxcompat -Wl,--high-entropy-va".split()
WITHOUT_PE = [
    (["-Wl,--disable-dynamicbase"], "no --dynamicbase"),
    (["-Wl,--disable-nxcompat"], "no --nxcompat"),
    (["-Wl,--disable-high-entropy-va"], "no --high-entropy-va"),
    ([WITHOUT + "-shared", "-DPROGRAM", "-Wl,--disable-dynamicbase", "-Wl,--disable-reloc-section"], "cannot be moved"),
    (["-DWRITABLE_CODE"], ".both is writable code"),
    (["-Wl,--no-as-needed", "-Wl,-u,MessageBoxA", "-luser32"], "imports"),
]


def found_in(folder, name, flags):
    source = folder / "small.c"
    source.write_text(SOURCE)
    built = folder / name
    left_out = [flag.removeprefix(WITHOUT) for flag in flags if flag.startswith(WITHOUT)]
    kept = [flag for flag in flags if not flag.startswith(WITHOUT) and flag not in left_out]
    subprocess.run([*COMPILER, "-w", str(source), "-o", str(built), *kept], check=True, stderr=subprocess.STDOUT)
    check = subprocess.run([CHECK, "files", "--fortified", "--objdump", OBJDUMP, str(built)],
                           stdout=subprocess.PIPE, text=True)
    return {line.removeprefix(f"{built}: ") for line in check.stdout.splitlines()}


def main():
    windows = any("mingw" in word for word in COMPILER)
    name, flags, cases = ("small.dll", PE, WITHOUT_PE) if windows else ("small.so", ELF, WITHOUT_ELF)
    problems = []
    with tempfile.TemporaryDirectory() as folder:
        good = found_in(pathlib.Path(folder), name, flags)
        for extra, wanted in cases:
            found = found_in(pathlib.Path(folder), name, flags + extra) - good
            if not any(line.startswith(wanted) for line in found):
                problems.append(f"with {' '.join(extra)}: {wanted!r} is not among {sorted(found)}")
        if not windows and good != {"1 files, nothing found"}:
            problems.append(f"with everything: {sorted(good)}")
    print("\n".join(problems) or f"{len(cases)} ways to build were found out")
    return 1 if problems else 0


sys.exit(main())

#!/usr/bin/python3
"""Checks that programs and libraries are built as a site may expect them.

usage: check_binaries.py [--objdump PROGRAM] [--folder FOLDER...] FILE...

Windows: random place in memory (with high entropy for 64 bits), no execution of data, no time stamp, no symbols but in
the file beside it; only libraries of the system are needed; a component exports its five functions under their own
names, and its type library and registration are those of its width. Elsewhere: a place of its own choosing, tables
that are read-only from the start, no execution of the stack, checked copies. Both: no folder of the building machine, which
are the sources' and each FOLDER.
Prints what is wrong, ends with 1 where something is.
"""
import argparse
import re
import subprocess
import sys
from pathlib import Path

SYSTEM_LIBRARIES = {"advapi32.dll", "kernel32.dll", "msvcrt.dll", "odbc32.dll", "ole32.dll", "oleaut32.dll", "shell32.dll", "shlwapi.dll",
                    "user32.dll"}
COMPONENT_EXPORTS = {"DllGetClassObject", "DllCanUnloadNow", "DllRegisterServer", "DllUnregisterServer", "DllInstall"}
ROOT = Path(__file__).resolve().parent.parent


def output_of(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True, env={"LC_ALL": "C", "PATH": "/usr/bin:/bin"}).stdout


def windows_faults(file, content, objdump):
    text = output_of(objdump, "-x", str(file))
    is_wide = "pei-x86-64" in text
    for flag in ["DYNAMIC_BASE", "NX_COMPAT", *(["HIGH_ENTROPY_VA"] if is_wide else [])]:
        if not re.search(rf"^\s+{flag}$", text, re.M):
            yield f"lacks {flag}"
    if ".reloc" not in text:
        yield "can't be moved in memory: it has no relocations"
    if not re.search(r"^Time/Date\s+Thu Jan  1 00:00:00 1970", text, re.M):
        yield "has a time stamp"
    if "no symbols" not in text:
        yield "isn't stripped"
    foreign = {name.lower() for name in re.findall(r"DLL Name: (\S+)", text)} - SYSTEM_LIBRARIES
    if foreign:
        yield "needs libraries that aren't the system's: " + ", ".join(sorted(foreign))
    if file.suffix.lower() == ".dll":
        yield from component_faults(text, content, is_wide)


def component_faults(text, content, is_wide):
    names = re.search(r"\[Ordinal/Name Pointer\] Table\n(.*?)\n\n", text, re.S)
    exports = set(re.findall(r"^\s*\[\s*\d+\]\s+(\S+)$", names[1], re.M)) if names else set()
    if exports != COMPONENT_EXPORTS:
        yield "exports " + ", ".join(sorted(exports))
    library = content.find(b"MSFT\x02\x00\x01\x00")
    if library < 0 or content[library + 20] & 0xF != (3 if is_wide else 1):
        yield "has no type library of its width"
    width, other = ("win64", "win32") if is_wide else ("win32", "win64")
    if width.encode("utf-16-le") not in content or other.encode("utf-16-le") in content:
        yield f"doesn't register its type library as {width}"


def native_faults(file):
    text = output_of("readelf", "-hldW", str(file)) + output_of("readelf", "--dyn-syms", "-W", str(file))
    wanted = {"a place of its own choosing": r"Type:\s+DYN", "GNU_RELRO": r"GNU_RELRO", "BIND_NOW": r"FLAGS_1.*\bNOW\b",
              "a stack without execution": r"GNU_STACK.* RW  ?0x", "checked copies": r"__\w+_chk@"}
    if file.suffix != ".so":
        wanted["the mark of a movable program"] = r"FLAGS_1.*\bPIE\b"
    for what, pattern in wanted.items():
        if not re.search(pattern, text):
            yield f"lacks {what}"
    if re.search(r"\((RPATH|RUNPATH)\)", text):
        yield "looks for libraries in folders of its own"


def folder_faults(file, options):
    content = file.read_bytes()
    for folder in {ROOT, *options.folder}:
        if str(folder).encode() in content:
            yield f"names the folder {folder}"


def faults_of(file, options):
    content = file.read_bytes()
    yield from windows_faults(file, content, options.objdump) if content.startswith(b"MZ") else native_faults(file)
    yield from folder_faults(file, options)


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("--objdump", default="x86_64-w64-mingw32-objdump")
    parser.add_argument("--folder", type=Path, action="append", default=[])
    parser.add_argument("files", nargs="+", type=Path)
    options = parser.parse_args()
    found = [f"{file}: {fault}" for file in options.files for fault in faults_of(file, options)]
    print("\n".join(found) if found else f"{len(options.files)} files are as they should be")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())

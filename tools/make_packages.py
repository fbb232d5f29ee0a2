#!/usr/bin/python3
"""Makes the packages of a site out of the files that were installed into the folder STAGE.

usage: make_packages.py STAGE OUTPUT --version V [OPTION...]

STAGE holds win64 and win32, or one of them: a zip for each, with its symbols in one of their own, and from both the
installer. Anything else becomes a .tar.gz of --system. What is packed has to pass check_binaries.py. With a certificate
DLL, programs and installer are signed, and verified by --sign-root. --add takes in a package that is ready. They come
into OUTPUT when all of them are made. SOURCE_DATE_EPOCH is the time of all files, and of the packages themselves: the same
files give the same packages. SHA256SUMS tells of those of the version and of that time in OUTPUT.
"""
import argparse
import gzip
import hashlib
import os
import shlex
import shutil
import subprocess
import sys
import tarfile
import time
import zipfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))
import check_binaries

ROOT = Path(__file__).resolve().parent.parent
PROGRAMS = {".dll", ".exe"}
EPOCH = int(os.environ.get("SOURCE_DATE_EPOCH", "1767225600"))


def files_below(folder):
    return sorted(file for file in folder.rglob("*") if file.is_file() or file.is_symlink())


class Signer:
    """Signs where there is a certificate."""

    def __init__(self, options):
        self.certificate = options.sign_certificate
        if not self.certificate:
            return
        self.words = ["osslsigncode", "sign", "-h", "sha256", "-n", "QVEsprit"]
        if self.certificate.suffix.lower() in (".p12", ".pfx"):
            self.words += ["-pkcs12", self.certificate]
        elif options.sign_key:
            self.words += ["-certs", self.certificate, "-key", options.sign_key]
        else:
            sys.exit(f"{self.certificate} holds no key: give it by QVESPRIT_SIGN_KEY (--sign-key)")
        for word, value in (("-readpass", options.sign_password_file), ("-ts", options.sign_time_server)):
            self.words += [word, value] if value else []
        self.words = [str(word) for word in self.words]
        self.verification = ["osslsigncode", "verify", "-CAfile", str(options.sign_root)]

    def command(self):
        """As the installer's compiler takes it, for the program that removes."""
        if not self.certificate:
            return ""
        return (f'{shlex.join(self.words)} -in "%1" -out "%1.signed" && mv "%1.signed" "%1" && '
                f'{shlex.join(self.verification)} -in "%1"')

    def sign(self, file):
        if not self.certificate:
            return
        signed = file.with_name(file.name + ".signed")
        signed.unlink(missing_ok=True)
        run([*self.words, "-in", file, "-out", signed])
        signed.replace(file)
        run([*self.verification, "-in", file])


def run(command):
    done = subprocess.run([str(word) for word in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
    if done.returncode != 0:
        sys.exit(f"{command[0]} ended with {done.returncode}:\n" + done.stdout.decode("utf-8", "replace"))


def check(files, options, of=check_binaries.faults_of):
    faults = [f"{file.name}: {fault}" for file in files for fault in of(file, options)]
    if faults:
        sys.exit("not packed:\n" + "\n".join(faults))


def make_zip(folder, files, output):
    """`files` below `folder`, under a folder that is called as the package."""
    with zipfile.ZipFile(output, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as package:
        for file in files:
            name = f"{output.stem}/{file.relative_to(folder).as_posix()}"
            entry = zipfile.ZipInfo(name, time.gmtime(EPOCH)[:6])
            entry.external_attr = (0o100755 if file.suffix in PROGRAMS else 0o100644) << 16
            entry.compress_type = zipfile.ZIP_DEFLATED
            package.writestr(entry, file.read_bytes())


def make_tar(folder, output):
    def as_anyones(entry):
        entry.uid = entry.gid = 0
        entry.uname = entry.gname = "root"
        entry.mtime = EPOCH
        return entry

    top = output.name.removesuffix(".tar.gz")
    with open(output, "wb") as file, gzip.GzipFile("", "wb", 9, file, EPOCH) as packed, \
            tarfile.open(fileobj=packed, mode="w", format=tarfile.GNU_FORMAT) as package:
        for entry in files_below(folder):
            package.add(entry, f"{top}/{entry.relative_to(folder)}", recursive=False, filter=as_anyones)


def file_lists(stage):
    """What the installer's script is told of the files: a macro for each kind, that calls a function for each file, and
    those that bring them out."""
    def kind(file):
        return "document" if file.parts[0] == "docs" else "program" if file.suffix in PROGRAMS else "text"

    def macro(name, arguments, lines):
        return "\n".join([f"!macro {name} {arguments}".rstrip(), *("  " + line for line in lines), "!macroend", ""])

    def windows(file):
        return str(file).replace("/", "\\")

    def bring(files, top):
        for file in files:
            yield f'SetOutPath "$INSTDIR\\${{WORK}}\\incoming\\{windows((top / file).parent)}"'
            yield f'File "{stage / width / file}"'

    for width in ("win64", "win32"):
        files = [file.relative_to(stage / width) for file in files_below(stage / width)]
        kinds = {name: [file for file in files if kind(file) == name] for name in ("program", "text", "document")}
        yield macro(f"bring_{width}", "", bring(kinds["program"] + kinds["text"], Path(width)))
        if width == "win32":  # the other width's are called the same
            continue
        yield macro("bring_documents", "", bring(kinds["document"], Path()))
        for name, members in kinds.items():
            below = "" if name == "document" else "${WIDTH}\\"
            calls = (line for file in members for line in (f'Push "{below}{windows(file)}"', "Call ${FUNCTION}"))
            yield macro(f"each_{name}", "FUNCTION" if name == "document" else "FUNCTION WIDTH", calls)


def make_installer(stage, options, signer, output):
    for file in files_below(stage):
        os.utime(file, (EPOCH, EPOCH))
    lists = stage.parent / "files.nsh"
    lists.write_text("\n".join(file_lists(stage)))
    values = {"VERSION": options.version, "PUBLISHER": options.publisher, "ICON": options.icon, "OUT": output,
              "FILES": lists, "SIZE": sum(file.stat().st_size for file in files_below(stage)) // 1024, "SIGN": signer.command()}
    defines = [f"-D{name}={value}" for name, value in values.items()]
    run(["makensis", "-V2", "-WX", *defines, ROOT / "packaging/installer.nsi"])
    signer.sign(output)


def pack_windows(stage, work, packages, options):
    signer = Signer(options)
    widths = [width for width in ("win64", "win32") if (stage / width).is_dir()]
    for width in widths:
        folder = work / "files" / width
        shutil.copytree(stage / width, folder)
        symbols = [file for file in files_below(folder) if file.suffix == ".debug"]
        check(symbols, options, check_binaries.folder_faults)
        make_zip(folder, symbols, packages / f"QVEsprit-{options.version}-{width}-symbols.zip")
        for file in symbols:
            file.unlink()
        programs = [file for file in files_below(folder) if file.suffix in PROGRAMS]
        check(programs, options)
        for file in programs:
            signer.sign(file)
        make_zip(folder, files_below(folder), packages / f"QVEsprit-{options.version}-{width}.zip")
    if len(widths) == 2:
        make_installer(work / "files", options, signer, packages / f"QVEsprit-{options.version}-setup.exe")


def pack_native(stage, packages, options):
    programs = [file for file in files_below(stage) if file.read_bytes().startswith(b"\x7fELF") and not file.is_symlink()]
    check(programs, options)
    make_tar(stage, packages / f"deskhost-{options.version}-{options.system}.tar.gz")


def put_in_place(packages, options):
    """The sums go first: they never tell of packages that aren't there."""
    sums_file = options.output / "SHA256SUMS"
    sums_file.unlink(missing_ok=True)
    for file in files_below(packages):
        os.utime(file, (EPOCH, EPOCH))
        file.replace(options.output / file.name)
    found = sorted(file for file in options.output.iterdir() if int(file.stat().st_mtime) == EPOCH and
                   (f"-{options.version}-" in file.name or f"_{options.version}_" in file.name))
    sums = [f"{hashlib.sha256(file.read_bytes()).hexdigest()}  {file.name}\n" for file in found]
    sums_file.write_text("".join(sums))
    print("".join(sums), end="")


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("stage", type=Path)
    parser.add_argument("output", type=Path)
    parser.add_argument("--version", required=True)
    parser.add_argument("--publisher", default="QVEsprit")
    parser.add_argument("--system", default="linux-x86_64")
    parser.add_argument("--objdump", default="x86_64-w64-mingw32-objdump")
    parser.add_argument("--sign-time-server")
    parser.add_argument("--sign-root", type=Path, default=Path("/etc/ssl/certs/ca-certificates.crt"))
    parser.add_argument("--folder", type=Path, action="append", default=[])
    parser.add_argument("--add", type=Path, action="append", default=[])
    for name in ("icon", "sign-certificate", "sign-key", "sign-password-file"):
        parser.add_argument(f"--{name}", type=Path)
    options = parser.parse_args()
    options.output = options.output.resolve()
    options.output.mkdir(parents=True, exist_ok=True)
    work = options.output / "work"
    shutil.rmtree(work, ignore_errors=True)
    packages = work / "packages"
    packages.mkdir(parents=True)
    if any(options.stage.glob("win*")):
        pack_windows(options.stage.resolve(), work, packages, options)
    else:
        pack_native(options.stage, packages, options)
    for file in options.add:
        shutil.copy(file, packages)
    put_in_place(packages, options)
    shutil.rmtree(work)


if __name__ == "__main__":
    main()

#!/usr/bin/python3
"""Installs, uses, upgrades and removes what the installer holds, in a Windows of its own, for all users and for one.

usage: installer_test.py PACKAGES WINDOWS_BUILD

The older version that is installed first is made here from the packages, and signed. This Windows has 64 bits only: where
both widths are wanted, the programs of 64 bits stand in for the others.
"""
import re
import shutil
import subprocess
import sys
import tempfile
import time
import types
import unittest
import zipfile
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools"))
import make_packages

PACKAGES, BUILD = (Path(argument).resolve() for argument in sys.argv[1:3])
VERSION = re.search(r"project\(QVEsprit VERSION (\S+)", (ROOT / "CMakeLists.txt").read_text())[1]
SETUP = PACKAGES / f"QVEsprit-{VERSION}-setup.exe"
PREFIX = BUILD / "wine-installed"
DRIVE = PREFIX / "drive_c"
PROG_ID = r"HKLM\Software\Classes\QVEsprit.Connect\CLSID"
REMOVE = ("copy /y \"C:\\{0}\\uninstall.exe\" C:\\remove.exe >NUL\r\nstart /wait \"\" C:\\remove.exe /S {1} _?=C:\\{0}\r\n"
          "set status=%errorlevel%\r\ndel C:\\remove.exe\r\nexit %status%\r\n")


def windows(*words, **how):
    done = subprocess.run([str(ROOT / "tools/run-windows"), str(PREFIX), *map(str, words)], stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False, timeout=300, **how)
    return done.returncode, done.stdout.decode("utf-8", "replace")


def state():
    """Files and registry, without what is temporary, and when it was written."""
    environment = {"WINEPREFIX": str(PREFIX), "PATH": "/usr/bin:/bin"}
    for option in ("-k", "-w"):
        subprocess.run(["/usr/lib/wine/wineserver64", option], env=environment, check=False)
    found = {str(file) for file in DRIVE.rglob("*") if "Temp" not in file.parts and file.name != "remove.exe"}
    for name in ("system.reg", "user.reg"):
        key = ""
        for line in (PREFIX / name).read_text(errors="replace").splitlines():
            key = line.rsplit("]", 1)[0] if line.startswith("[") else key
            if not line.startswith("#") and "DriverDateData" not in line:  # which each start writes
                found.add(f"{name} {key}] {'' if line.startswith('[') else line}")
    return found


def remove(place, *options):
    script = DRIVE / "users/root/Temp/remove.bat"
    script.parent.mkdir(parents=True, exist_ok=True)
    script.write_bytes(REMOVE.format(place, " ".join(options)).encode())
    return windows("cmd", "/c", "C:\\users\\root\\Temp\\remove.bat")


def files_of(folder):
    return {file: (file.read_bytes(), file.stat().st_mode) for file in folder.rglob("*") if file.is_file()}


def setup_of_twins(folder, version, dll=None):
    """A setup of few files, whose widths are the same; with another content of the first one's DLL."""
    stage = folder / version / "stage"
    for width in ("win64", "win32"):
        (stage / width / "Bitmaps").mkdir(parents=True)
        for name in ("QVEsprit.dll", "QVEsprit.cfg", "Bitmaps/QVEsprit16-1.bmp"):
            shutil.copy(folder / "stage/win64" / name, stage / width / name)
    (stage / "win64/docs").mkdir()
    (stage / "win64/docs/read.md").write_text("read")
    if dll:
        (stage / "win64/QVEsprit.dll").write_bytes(dll)
    options = types.SimpleNamespace(version=version, publisher="QVEsprit", icon=BUILD / "generated/QVEsprit.ico",
                                    sign_certificate=None)
    make_packages.make_installer(stage, options, make_packages.Signer(options), folder / f"{version}.exe")
    return folder / f"{version}.exe"


def older_setup(folder):
    """An older version with other settings and another text and files that are no longer shipped, signed with a
    certificate of its own."""
    for width in ("win64", "win32"):
        zipfile.ZipFile(PACKAGES / f"QVEsprit-{VERSION}-{width}.zip").extractall(folder)
        (folder / f"QVEsprit-{VERSION}-{width}").rename(folder / "stage" / width)
        for name in ("QVEsprit.cfg", "QVEspritGer.txt"):
            with open(folder / "stage" / width / name, "ab") as file:
                file.write(b"; older\r\n")
        shutil.copy(folder / "stage" / width / "deskhost.exe", folder / "stage" / width / "former.exe")
        (folder / "stage" / width / "Bitmaps/former.bmp").write_text("former")
    key, certificate = folder / "key.pem", folder / "certificate.pem"
    subprocess.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-subj", "/CN=test", "-days", "9", "-addext",
                    "extendedKeyUsage=codeSigning", "-keyout", key, "-out", certificate], check=True, capture_output=True)
    subprocess.run([sys.executable, ROOT / "tools/make_packages.py", folder / "stage", folder, "--version", "0.9.0", "--icon",
                    BUILD / "generated/QVEsprit.ico", "--sign-certificate", certificate, "--sign-key", key, "--sign-root",
                    certificate], check=True, stdout=subprocess.DEVNULL)
    return folder / "QVEsprit-0.9.0-setup.exe", certificate


class Installer(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = Path(tempfile.mkdtemp())
        cls.addClassCleanup(shutil.rmtree, cls.folder, ignore_errors=True)
        (cls.folder / "stage").mkdir()
        cls.older, cls.certificate = older_setup(cls.folder)
        shutil.rmtree(PREFIX, ignore_errors=True)
        windows("reg", "add", r"HKCU\Software\Classes\CLSID", "/f")
        cls.before = state()

    def had_variable(self, key):
        windows("reg", "add", key, "/v", "QVEspritExportPath", "/d", r"%SystemDrive%\before", "/f")
        type(self).before = state()

    def setup(self, setup, *options, status=0):
        done = windows(setup, "/S", *options)
        self.assertEqual(done[0], status, done[1])
        return done[1]

    def install_use_and_remove(self, users, place, addin):
        installed = DRIVE / place.replace("\\", "/") / "win64"
        site = self.folder / "site"
        shutil.rmtree(site, ignore_errors=True)
        shutil.copytree(BUILD / "shop", site)
        z_site = "Z:" + str(site).replace("/", "\\")
        self.setup(self.older, users, f"/D=C:\\{place}", f"/QVEspritInstallPath={z_site}\\programs",
                   f"/QVEspritExportPath={z_site}", f"/QVEspritUserModelsPath={z_site}", f"/QVMakeListPath={z_site}")
        for name in ("win64/QVEsprit.dll", "win64/deskhost.exe", "uninstall.exe"):
            subprocess.run(["osslsigncode", "verify", "-CAfile", self.certificate, "-in", installed.parent / name],
                           check=True, capture_output=True)
        settings, text = installed / "QVEsprit.cfg", installed / "QVEspritEng.txt"
        own = {settings: b"[Default]\r\nTurretID=2\r\n", text: b"mine", installed / "mine.txt": b"mine",
               installed / "QVEspritGer.txt.new": b"mine", installed / "QVEsprit.dll.old": b"mine",
               installed.parent / "incoming/mine.txt": b"mine"}
        (installed.parent / "incoming").mkdir()
        for file, content in own.items():
            file.write_bytes(content)
        (installed / "deskhost.exe").chmod(0o555)

        host = subprocess.Popen([str(ROOT / "tools/run-windows"), str(PREFIX), str(installed / "deskhost.exe"), *addin,
                                 "ui", "open", "-"], stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        host.stdout.readline()  # it is loaded
        before = files_of(installed.parent)
        self.assertIn("in use", self.setup(SETUP, status=5))
        self.assertEqual(before, files_of(installed.parent))
        host.communicate()

        other = "/CurrentUser" if users == "/AllUsers" else "/AllUsers"
        for options, status, told in (((users, "/D=C:\\elsewhere"), 3, "is installed in .* already"),
                                      ((other, f"/D=C:\\{place}"), 3, "is installed for .* in "),
                                      ((other, "/Width=both", "/D=C:\\elsewhere"), 7, "comes before")):
            with self.subTest(options):
                self.assertRegex(self.setup(SETUP, *options, status=status), told)
        document = installed.parent / "docs/install.md"
        document.unlink()
        document.mkdir()
        told = self.setup(SETUP, status=8)
        self.assertRegex(told, r"install.md can't be written[^$]*but not all of it")
        document.rmdir()
        self.assertIn(f"{settings.name} was edited and stays", told)
        self.assertIn(f"is installed in C:\\{place}", self.setup(SETUP))
        self.assertNotIn(b"older", settings.with_name("QVEsprit.cfg.new").read_bytes())
        self.assertNotIn(b"older", (installed / "QVEspritGer.txt").read_bytes())
        self.assertEqual([*installed.parent.rglob("former*"), *installed.glob("QVEspritEng.txt.new")], [])
        root = "HKLM" if users == "/AllUsers" else "HKCU"
        entry = windows("reg", "query", root + r"\Software\Microsoft\Windows\CurrentVersion\Uninstall\QVEsprit")[1]
        for value in (VERSION, "QVEsprit\r", "0x", place):
            self.assertIn(value, entry)

        status, told = windows(installed / "deskhost.exe", *addin, "open", ROOT / "examples/shop/turret.json", "import", "export")
        self.assertEqual(status, 0, told)
        self.assertRegex(told, r"import: (\d+) of \1 lines read")
        dll = installed / "QVEsprit.dll"
        content, _ = dll.read_bytes(), dll.write_bytes(b"damaged")
        before = files_of(installed.parent)
        status, told = remove(place)
        self.assertEqual(status, 7, told)
        self.assertEqual(before, files_of(installed.parent))
        dll.write_bytes(content)
        status, told = remove(place, "/Toolbar")
        self.assertEqual(status, 0, told)
        self.assertEqual({file: content for file, (content, _) in files_of(installed.parent).items()}, own)
        shutil.rmtree(installed.parent)
        self.assertEqual(self.before ^ state(), set())

    def test_for_all_users(self):
        self.had_variable(r"HKLM\SYSTEM\CurrentControlSet\Control\Session Manager\Environment")
        self.install_use_and_remove("/AllUsers", "Program Files\\QVEsprit", [])

    def test_for_one_user(self):  # whose classes this Windows doesn't look for
        place = "users\\root\\A place"
        self.had_variable(r"HKCU\Environment")
        self.install_use_and_remove("/CurrentUser", place, ["--addin", f"C:\\{place}\\win64\\QVEsprit.dll"])

    def test_widths(self):
        twins, broken = setup_of_twins(self.folder, "1.1.0"), setup_of_twins(self.folder, "1.2.0", b"damaged")
        stand_in = DRIVE / "windows/syswow64/regsvr32.exe"
        shutil.copy(DRIVE / "windows/system32/regsvr32.exe", stand_in)
        self.addCleanup(stand_in.unlink)
        self.setup(twins, "/AllUsers", "/Width=both", "/D=C:\\both")
        before = files_of(DRIVE / "both")
        self.assertIn("can't enter itself", self.setup(broken, "/Width=64", status=7))
        self.assertEqual(before, files_of(DRIVE / "both"))
        self.assertEqual(windows("reg", "query", PROG_ID)[0], 0)
        self.assertIn("win32, goes", self.setup(twins, "/Width=64"))
        self.assertFalse((DRIVE / "both/win32").exists() or (DRIVE / "both/original/win32").exists())
        self.assertEqual(windows("reg", "query", PROG_ID)[0], 0)
        status, told = remove("both")
        self.assertEqual(status, 0, told)
        self.assertFalse((DRIVE / "both").exists())

    def test_refuses(self):
        for options, status, text in (
                ("/QVEspritInstallPath=C:\\a b", 3, "look for another"), ("/QVMakeListPath=C:\\a b", 3, "take it for two"),
                ("/Width=16", 3, "64, 32 or both"), ("/Nothing", 3, "no option"), ("/Host=C:\\none", 3, "can't be read"),
                ("/Width=32|/Host=C:\\windows\\system32\\cmd.exe", 3, "program of 64 bits"), ("/S|/D=a b", 3, "whole name"),
                ("/Width=both", 7, "libraries of 32 bits")):
            with self.subTest(options):
                self.assertRegex(self.setup(SETUP, *options.split("|"), status=status), text)
        self.assertEqual(self.before ^ state(), set())

    def test_one_at_a_time(self):
        first = subprocess.Popen([str(ROOT / "tools/run-windows"), str(PREFIX), str(SETUP)], stdin=subprocess.DEVNULL,
                                 stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)  # its pages wait for somebody
        self.addCleanup(first.wait)
        self.addCleanup(first.kill)
        for _ in range(60):
            status, told = windows(SETUP, "/S", "/Width=16")
            if status == 5:
                break
            time.sleep(1)
        self.assertIn("Another setup", told)

    def test_same_files_give_same_bytes(self):
        sums = []
        for name in ("one", "another"):
            stage = self.folder / name / "stage"
            shutil.copytree(self.folder / "stage/win64", stage / "win64", copy_function=shutil.copy)
            subprocess.run([sys.executable, ROOT / "tools/make_packages.py", stage, stage.parent, "--version", "1.1.0"],
                           check=True, stdout=subprocess.DEVNULL)
            sums.append((stage.parent / "SHA256SUMS").read_text())
        self.assertIn("win64.zip", sums[0])
        self.assertEqual(*sums)

    def test_a_certificate_takes_a_key(self):
        done = subprocess.run([sys.executable, ROOT / "tools/make_packages.py", self.folder / "stage", self.folder / "none",
                               "--version", "1.1.0", "--sign-certificate", self.certificate], capture_output=True, check=False)
        self.assertEqual(done.returncode, 1)
        self.assertIn(b"holds no key", done.stderr)


if __name__ == "__main__":
    if not SETUP.exists():
        sys.exit(f"{SETUP} isn't there: cmake --build --preset windows --target package makes it")
    unittest.main(argv=sys.argv[:1])

#!/usr/bin/python3
"""Installs, uses, upgrades and removes what the installer holds, in a Windows of its own, for all users and for one.

usage: installer_test.py PACKAGES WINDOWS_BUILD

The older version that is installed first is made here from the packages, and signed. This Windows has 64 bits only.
"""
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import zipfile
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
PACKAGES, BUILD = (Path(argument).resolve() for argument in sys.argv[1:3])
VERSION = re.search(r"project\(QVEsprit VERSION (\S+)", (ROOT / "CMakeLists.txt").read_text())[1]
SETUP = PACKAGES / f"QVEsprit-{VERSION}-setup.exe"
PREFIX = BUILD / "wine-installed"
DRIVE = PREFIX / "drive_c"
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


def older_setup(folder):
    """An older version with other settings and another text, signed with a certificate of its own."""
    for width in ("win64", "win32"):
        zipfile.ZipFile(PACKAGES / f"QVEsprit-{VERSION}-{width}.zip").extractall(folder)
        (folder / f"QVEsprit-{VERSION}-{width}").rename(folder / "stage" / width)
        for name in ("QVEsprit.cfg", "QVEspritGer.txt"):
            with open(folder / "stage" / width / name, "ab") as file:
                file.write(b"; older\r\n")
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
        windows("cmd", "/c", "exit")
        cls.before = state()

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
        settings = installed / "QVEsprit.cfg"
        settings.write_bytes(b"[Default]\r\nTurretID=2\r\n")
        (installed / "mine.txt").write_text("mine")

        host = subprocess.Popen([str(ROOT / "tools/run-windows"), str(PREFIX), str(installed / "deskhost.exe"), *addin,
                                 "ui", "open", "-"], stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        host.stdout.readline()  # it is loaded
        before = {file: file.read_bytes() for file in installed.parent.rglob("*") if file.is_file()}
        self.assertIn("in use", self.setup(SETUP, status=5))
        self.assertEqual(before, {file: file.read_bytes() for file in installed.parent.rglob("*") if file.is_file()})
        host.communicate()

        self.assertIn("was edited and stays", self.setup(SETUP))
        self.assertEqual(settings.read_bytes(), b"[Default]\r\nTurretID=2\r\n")
        self.assertNotIn(b"older", settings.with_name("QVEsprit.cfg.new").read_bytes())
        self.assertNotIn(b"older", (installed / "QVEspritGer.txt").read_bytes())
        root = "HKLM" if users == "/AllUsers" else "HKCU"
        entry = windows("reg", "query", root + r"\Software\Microsoft\Windows\CurrentVersion\Uninstall\QVEsprit")[1]
        for value in (VERSION, "QVEsprit\r", "0x", place):
            self.assertIn(value, entry)

        status, told = windows(installed / "deskhost.exe", *addin, "open", ROOT / "examples/shop/turret.json", "import", "export")
        self.assertEqual(status, 0, told)
        self.assertRegex(told, r"import: (\d+) of \1 lines read")
        script = DRIVE / "users/root/Temp/remove.bat"
        script.parent.mkdir(parents=True, exist_ok=True)
        script.write_bytes(REMOVE.format(place, "/Toolbar").encode())
        status, told = windows("cmd", "/c", "C:\\users\\root\\Temp\\remove.bat")
        self.assertEqual(status, 0, told)
        left = {file.name for file in installed.parent.rglob("*") if file.is_file()}
        self.assertEqual(left, {"QVEsprit.cfg", "mine.txt"})
        shutil.rmtree(installed.parent)
        self.assertEqual(self.before ^ state(), set())

    def test_for_all_users(self):
        self.install_use_and_remove("/AllUsers", "Program Files\\QVEsprit", [])

    def test_for_one_user(self):  # whose classes this Windows doesn't look for
        place = "users\\root\\A place"
        self.install_use_and_remove("/CurrentUser", place, ["--addin", f"C:\\{place}\\win64\\QVEsprit.dll"])

    def test_refuses(self):
        for option, status, text in (
                ("/QVEspritInstallPath=C:\\a b", 3, "look for another"), ("/QVMakeListPath=C:\\a b", 3, "take it for two"),
                ("/Width=16", 3, "64, 32 or both"), ("/Nothing", 3, "no option"), ("/Host=C:\\none", 3, "can't be read"),
                ("/Width=both", 7, "libraries of 32 bits")):
            with self.subTest(option):
                self.assertRegex(self.setup(SETUP, option, status=status), text)
        self.assertEqual(self.before ^ state(), set())


if __name__ == "__main__":
    if not SETUP.exists():
        sys.exit(f"{SETUP} isn't there: cmake --build --preset windows --target package makes it")
    unittest.main(argv=sys.argv[:1])

#!/usr/bin/python3
"""Checks a knowledge base that many processes of the desk host fill at once, and one whose writer is killed.

usage: seats_test.py DESKHOST SHOP

SHOP is the folder of the example shop. The base is a SQLite file, or the server that QVESPRIT_TEST_POSTGRESQL names;
the kills are for the file alone.
"""
import os
import random
import re
import shutil
import sqlite3
import subprocess
import sys
import tempfile
import time
import unittest
from collections import Counter
from pathlib import Path

DESKHOST, SHOP = (Path(argument).resolve() for argument in sys.argv[1:3])
SERVER = os.environ.get("QVESPRIT_TEST_POSTGRESQL")
TOOLS = 8
KILLS = 20


def data_lines(text):
    return [line for line in re.split(rb"\r\n?", text) if line and not line.startswith((b"*", b"FileVersion:"))]


class Seat:
    """A folder with exchange files and an exporter of its own, as each user of the host has."""

    def __init__(self, folder):
        self.folder = Path(folder)
        (self.folder / "exchange").mkdir(parents=True)
        tools = data_lines((SHOP / "shop-tools.csv").read_bytes())[:TOOLS]
        (self.folder / "tools.csv").write_bytes(b"\r\n".join(tools) + b"\r\n")
        shutil.copy(SHOP / "shop-speeds.csv", self.folder / "exchange/QV-Esprit-KB-Integration.csv")
        exporter = self.folder / "QV-ToolExport.exe"
        exporter.write_text(f"#!/bin/sh\ncp '{self.folder}/tools.csv' '{self.folder}/exchange/QV-Esprit-Export.csv'\n")
        exporter.chmod(0o755)
        self.trace = self.folder / "trace.jsonl"

    def start(self, source, *options):
        environment = {**os.environ, "QVEspritInstallPath": f"{self.folder}/",
                       "QVEspritExportPath": f"{self.folder}/exchange",
                       "QVEspritUserModelsPath": f"{self.folder}", "QVESPRIT_REGISTRY": f"{self.folder}/registry.reg"}
        with open(self.folder / "errors.txt", "wb") as errors:
            return subprocess.Popen([DESKHOST, "--quiet", "--kb", source, *options, "open", SHOP / "turret.json", "import"],
                                    env=environment, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                    stderr=errors)

    def added_speeds(self):
        lines = self.trace.read_text("utf-8").splitlines()
        return sum('"on":"SpeedFeedRows","member":"Add"' in line and '"error"' not in line for line in lines)

    def messages(self):
        return (self.folder / "errors.txt").read_text("utf-8").splitlines()


def content(source):
    """What a reader sees in a base, without what may differ: how often a speed and feed row is there."""
    report = subprocess.run([DESKHOST, "--no-addin", "--quiet", "kb", source], check=True, text=True,
                            encoding="utf-8", stdout=subprocess.PIPE).stdout
    lines = {re.sub(r"\s+", " ", line) for line in report.splitlines() if "tblSpeedFeedData" not in line}
    speeds = int(re.search(r"tblSpeedFeedData\s+(\d+)", report)[1])
    return lines, speeds


class BaseTest(unittest.TestCase):
    def setUp(self):
        self.folder = Path(tempfile.mkdtemp(prefix="kb-seats-"))
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        seat = Seat(self.folder / "reference")
        started = time.monotonic()
        self.assertEqual(seat.start(self.folder / "reference.db").wait(), 0)
        self.seconds = time.monotonic() - started
        self.reference, self.reference_speeds = content(self.folder / "reference.db")
        self.assertEqual(seat.messages(), [])
        self.assertGreater(self.reference_speeds, 50)


class ManySeats(BaseTest):
    def test_rows_with_a_key_are_there_once_and_no_speed_is_lost(self):
        source = SERVER or str(self.folder / "shared.db")
        seats = [Seat(self.folder / f"seat{number}") for number in range(8 if SERVER else 4)]
        runs = [seat.start(source, "--trace", seat.trace) for seat in seats]
        self.assertEqual([run.wait() for run in runs], [0] * len(seats))
        self.assertEqual([seat.messages() for seat in seats], [[]] * len(seats))
        lines, speeds = content(source)
        self.assertEqual(lines, self.reference)
        self.assertEqual(speeds, sum(seat.added_speeds() for seat in seats))
        self.assertGreaterEqual(speeds, self.reference_speeds)


@unittest.skipIf(SERVER, "a server outlives its clients")
class KilledWriter(BaseTest):
    def parameters_by_tool(self, file):
        with sqlite3.connect(file) as base:
            self.assertEqual(base.execute("pragma integrity_check").fetchall(), [("ok",)])
            if not base.execute("select 1 from sqlite_master where name='tblKbTool'").fetchall():
                return {}
            return dict(base.execute("select fldToolID_tblKbTool, count(fldIndex_tblKbToolParameter) from tblKbTool "
                                     "left join tblKbToolParameter on fldfkToolRecordID_tblKbToolParameter="
                                     "fldpkID_tblKbTool group by 1").fetchall())

    def test_base_opens_with_whole_tools_and_the_next_import_completes_it(self):
        whole = self.parameters_by_tool(self.folder / "reference.db")
        self.assertEqual(len(whole), TOOLS)
        seed = random.randrange(1 << 32)
        chance = random.Random(seed)
        reached = Counter()
        for number in range(KILLS):
            with self.subTest(seed=seed, kill=number):
                seat = Seat(self.folder / f"killed{number}")
                file = self.folder / f"killed{number}.db"
                run = seat.start(file)
                time.sleep(self.seconds * chance.random())
                run.kill()
                run.wait()
                stored = self.parameters_by_tool(file)
                reached[len(stored)] += 1
                for tool, count in stored.items():
                    self.assertIn(count, (0, whole[tool]), tool)
                self.assertEqual(seat.start(file).wait(), 0)
                self.assertEqual(content(file)[0], self.reference)
        in_the_middle = sum(times for tools, times in reached.items() if 0 < tools)
        self.assertGreater(in_the_middle, 0, f"no kill met an import, seed {seed}")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)

#!/usr/bin/python3
"""The desk host as a user and a script meet it: what goes in and out, and how it ends.

usage: command_test.py DESKHOST SHOP
"""
import json
import os
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

DESKHOST, SHOP = Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()
TOOL = "Drehstahl PCLNR2525M12#300101"


class Desk(unittest.TestCase):
    def setUp(self):
        self.folder = Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)
        for name in ("exchange", "list", "models", "programs", "tmp"):
            (self.folder / name).mkdir()
        self.document, self.tools = SHOP / "turret.json", SHOP / "job-tools.csv"
        self.env = {"PATH": os.environ["PATH"], "TMPDIR": str(self.folder / "tmp"),
                    "QVEspritInstallPath": f"{self.folder}/programs/", "QVEspritExportPath": f"{self.folder}/exchange",
                    "QVEspritUserModelsPath": f"{self.folder}/models", "QVMakeListPath": f"{self.folder}/list",
                    "QVESPRIT_REGISTRY": f"{self.folder}/registry.reg"}

    def tearDown(self):
        self.assertEqual(list((self.folder / "tmp").iterdir()), [], "something is left over")

    def program(self, name, text):
        file = self.folder / "programs" / name
        file.write_text("#!/bin/sh\n" + text)
        file.chmod(0o755)

    def run_desk(self, *words, env=None, stdin=b"", status=0, told="", out=None):
        done = subprocess.run([DESKHOST, *map(str, words)], env={**self.env, **(env or {})}, input=stdin,
                              capture_output=True, timeout=120, check=False)
        self.errors = done.stderr.decode()
        self.assertEqual(done.returncode, status, f"{words}: {self.errors}")
        self.assertIn(told, self.errors, words)
        text = done.stdout.decode()
        if out is not None:
            self.assertIn(out, text, words)
        return text

    def counts(self, *words, **how):
        return json.loads(self.run_desk("--json", "-", *words, **how))["summary"]

    def test_import_of_a_file_leaves_it_alone_and_counts(self):
        before = self.tools.read_bytes()
        saved = [self.folder / name for name in ("one.json", "two.json")]
        for file in saved:
            counts = self.counts("--strict", "open", self.document, "import", self.tools, SHOP / "shop-speeds.csv",
                                 "save", file)
            self.assertEqual([counts[key] for key in ("lines", "lines_in_file", "tools_new", "tools_changed",
                                                      "message_boxes", "programs_failed")], [25, 25, 25, 0, 0, 0])
        self.assertEqual(saved[0].read_bytes(), saved[1].read_bytes())
        self.assertEqual(self.tools.read_bytes(), before)
        self.program("QVMakeList.exe", "exit 3\n")
        files = [self.tools, SHOP / "shop-speeds.csv"]
        counts = self.counts("--strict", "open", saved[0], "import", *files, "modify", TOOL, "ToolLength=9",
                             "import", *files, "export", status=1, told="ended with status 3")
        self.assertEqual([counts[key] for key in ("tools_new", "tools_changed", "list_rows", "list_left_out",
                                                  "programs_failed")], [0, 1, 25, 0, 1])

    def test_an_import_that_gives_less_than_the_file_says_so(self):
        lines = self.tools.read_bytes().split(b"\r\n")
        bad = self.folder / "bad.csv"
        wrong = lines[4].split(b";")
        wrong[21] = b"1,5"
        bad.write_bytes(b"\r\n".join([b";".join(wrong), lines[5], b"1;2;3", lines[6]]))
        counts = self.counts("open", self.document, "import", bad)
        self.assertEqual([counts[key] for key in ("lines", "lines_in_file", "tools_new", "values_refused",
                                                  "message_boxes")], [2, 4, 2, 1, 1])
        self.run_desk("--strict", "open", self.document, "import", bad, status=1, told="2 of 4 lines read")
        bad.write_bytes(b"")
        self.run_desk("open", self.document, "import", bad, told="1 file gave nothing")
        self.run_desk("--strict", "open", self.document, "import", bad, status=1)
        self.run_desk("open", self.document, "import", "shwo", status=2, told='there is no file "shwo"')

    def test_programs_are_told_apart_and_ended(self):
        export = f"cp '{self.tools}' \"$QVEspritExportPath/QV-Esprit-Export.csv\"\n"
        self.program("QV-ToolExport.exe", "echo out; echo err >&2\n" + export)
        text = self.run_desk("open", self.document, "import", "ui", told="program: QV-ToolExport.exe: out\n")
        self.assertIn("program: QV-ToolExport.exe: err\n", self.errors)
        self.assertTrue(text.startswith("ui 0"))
        self.program("QV-ToolExport.exe", "sleep 60\n")
        self.run_desk("--timeout", "1", "open", self.document, "import", told="ran into the time limit")
        (self.folder / "programs/QV-ToolExport.exe").chmod(0o644)
        self.run_desk("open", self.document, "import", told='QV-ToolExport.exe" can\'t be started: Permission denied')
        (self.folder / "exchange/QV-Esprit-Export.csv").mkdir()
        self.run_desk("open", self.document, "import", told='seen: the file "' + str(self.folder / "exchange"))

    def test_the_environment_is_looked_at(self):
        for variable, value, status, told in (
                ("QVESPRIT_CODEPAGE", "4711", 2, 'QVESPRIT_CODEPAGE is "4711"'), ("QVESPRIT_CODEPAGE", "65001", 2, "65001"),
                ("QVESPRIT_CODEPAGE", "1200", 2, "1200"), ("QVESPRIT_CODEPAGE", "abc", 2, "abc"),
                ("QVESPRIT_CODEPAGE", "932", 0, ""), ("QVESPRIT_DECIMAL", "::", 2, "one sign"),
                ("QVESPRIT_DECIMAL", "x", 2, "one sign"),
                ("QVEspritInstallPath", "/a b/", 0, "has a blank"), ("QVMakeListPath", "/a b", 0, "has a blank"),
                ("QVEspritInstallPath", "/a", 0, "doesn't end in a separator"),
                ("QVMakeListPath", "/a/", 0, "ends in a separator")):
            self.run_desk("open", self.document, "import", env={variable: value}, status=status, told=told)
        for command in ("inspect", "check"):
            self.run_desk(command, self.tools, env={"QVESPRIT_CODEPAGE": "65001"}, status=2, told=f"{command}: the variable")
            self.run_desk(command, "--help", env={"QVESPRIT_CODEPAGE": "65001"}, out="Usage: ")
        self.program("QV-ToolExport.exe", f"{DESKHOST} open {self.document} export\n")
        self.run_desk("open", self.document, "import", told="another session is using this folder")

    def test_knowledge_bases_are_read_as_they_are_and_made_whole(self):
        base = self.folder / "a=b.db"
        self.run_desk("--kb", base, "open", self.document, "import", self.tools)
        writer = sqlite3.connect(base)
        writer.execute("begin immediate")
        writer.execute("delete from tblKbTool")
        self.run_desk("kb", base, out=TOOL)
        writer.rollback()
        writer.close()
        before = base.read_bytes()
        base.chmod(0o444)
        self.run_desk("kb", base, out=TOOL)
        self.assertEqual(before, base.read_bytes())
        self.assertEqual(list(self.folder.glob("a=b.db-*")), [], "nothing is left beside it")
        self.assertEqual(json.loads(self.run_desk("--json", "-", "kb", base))["actions"][0]["result"]["tables"][1],
                         {"table": "tblKbTool", "rows": 25})
        other = self.folder / "other.db"
        other.write_text("no base")
        for source, told in ((self.folder, "is no file"), ("/dev/null", "is no file"), (other, "another kind"),
                             (self.folder / "none/x=y.db", "there is no folder"), ("DSN=none", "its driver says: [")):
            for words in (["--kb", source, "ui"], ["kb", source], ["inspect", self.tools, "--kb", source]):
                self.run_desk(*words, status=2, told=told)
        sqlite3.connect(self.folder / "empty.db").executescript("create table a(b)").connection.close()
        self.run_desk("kb", self.folder / "empty.db", status=2, told='empty.db" isn\'t a knowledge base')
        self.assertEqual(other.read_text(), "no base")
        limited = subprocess.run(["sh", "-c", f'ulimit -f 8; exec "{DESKHOST}" --kb "{self.folder}/full.db" ui'],
                                 env=self.env, capture_output=True, check=False)
        self.assertEqual(limited.returncode, 2, limited.stderr)
        self.assertFalse((self.folder / "full.db").exists())

    def test_an_interruption_leaves_nothing(self):
        self.program("QV-ToolExport.exe", "exec sleep 60\n")
        session = ("open", self.document, "import", self.tools, "import")
        for number, *words in ((signal.SIGINT, *session), (signal.SIGTERM, *session), (signal.SIGINT, "check"),
                               (signal.SIGTERM, "inspect", SHOP / "shop-tools.csv", self.document)):
            running = subprocess.Popen([DESKHOST, *words], env=self.env, stdin=subprocess.DEVNULL,
                                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            while not list((self.folder / "tmp").iterdir()):
                self.assertIsNone(running.poll(), words)
                time.sleep(0.01)
            running.send_signal(number)
            self.assertEqual(running.wait(20), -number)
            self.assertEqual(list((self.folder / "tmp").iterdir()), [])

    def test_standard_files_and_pipes(self):
        text = self.run_desk("--no-addin", "--quiet", "open", "-", "save", "-", stdin=self.document.read_bytes())
        self.assertEqual(json.loads(text)["Name"], "Flansch.esp")
        self.assertIn('"op":"event"', self.run_desk("--trace", "-", "open", self.document))
        pipe = self.folder / "pipe"
        os.mkfifo(pipe)
        for words in (("save", pipe), ("draw", pipe), ("dump", pipe)):
            self.run_desk("--no-addin", "open", self.document, *words, status=2, told="nobody reads from")
        self.run_desk("--trace", pipe, "ui", status=2, told="nobody reads from")
        for words, status in ((["--addin", pipe, "ui"], 3), (["inspect", pipe], 2), (["inspect", self.tools, pipe], 2),
                              *((["inspect", self.tools, option, pipe], 3 if option == "--addin" else 2) for option in
                                ("--addin", "--exchange", "--settings", "--models", "--kb", "--json", "--html"))):
            self.run_desk(*words, status=status, told=f'{pipe}')
        page, kept = self.folder / "page", self.folder / "kept.json"
        shutil.copy(self.document, kept)
        (self.folder / "link").symlink_to(page)
        for words, told in ((["inspect", self.tools, "--json", page, "--html", f"{self.folder}/./page"], "--json names it too"),
                            (["inspect", self.tools, "--json", page, "--html", self.folder / "link"], "--json names it too"),
                            (["inspect", self.tools, "--json", "-", "--html", "-"], "both"), (["inspect", "-", "-"], "once only"),
                            (["--no-addin", "--json", kept, "open", kept], "would be lost")):
            self.run_desk(*words, status=2, told=told)
        self.assertEqual(kept.read_bytes(), self.document.read_bytes())
        self.assertTrue(self.run_desk("inspect", "-", "--html", "-", stdin=self.tools.read_bytes()).startswith("<!DOCTYPE"))
        self.run_desk("inspect", self.tools, "-", stdin=self.document.read_bytes(), out=" into -: ")
        for words in (["open", self.document, "draw", page], ["--json", page, "open", self.document, "show"]):
            limited = subprocess.run(["sh", "-c", 'ulimit -f 1; exec "$@"', "sh", DESKHOST, "--no-addin", *words],
                                     env=self.env, capture_output=True, check=False)
            self.assertIn(b'page" couldn\'t be written to its end', limited.stderr)
            self.assertEqual((limited.returncode, page.exists()), (2, False))
        closed = subprocess.run(["sh", "-c", f'exec "{DESKHOST}" inspect "{self.tools}" >&-'], env=self.env,
                                stderr=subprocess.PIPE, check=False)
        self.assertEqual(closed.returncode, 2, closed.stderr)
        self.run_desk("inspect", self.tools, env={"TMPDIR": "/nonexist"}, status=2, told='"/nonexist", which')
        with subprocess.Popen(["cat", pipe], stdout=subprocess.PIPE) as reader:
            self.run_desk("--no-addin", "open", self.document, "save", pipe)
            self.assertTrue(reader.stdout.read().startswith(b"{"))
        ours, theirs = os.pipe()
        os.close(ours)
        done = subprocess.run([DESKHOST, "--no-addin", "--quiet", "open", self.document, "show"], stdout=theirs,
                              stderr=subprocess.PIPE, env=self.env, check=False)
        os.close(theirs)
        self.assertEqual((done.returncode, done.stderr), (0, b""))

    def test_odd_documents(self):
        odd = {"Name": "x", "MachineType": 3, "UnitSystem": 72,
               "MachineSetup": {"Turrets": [{"Stations": [{}], "Solids": [{"Station": 2}]}]},
               "Tools": [{"Parameters": {"ToolID": "a#1"}}, {"Parameters": {"ToolID": "a#1"}}]}
        self.run_desk("--no-addin", "open", "-", stdin=json.dumps(odd).encode(), told="MachineType: ")
        for path in ("UnitSystem", "MachineSetup.Turrets[0].Solids[0].Station", "Tools[1].Parameters.ToolID"):
            self.assertIn(f"warning: -: {path}: ", self.errors)
        for text, told in (('{"Name":"x"}\0', "byte 13: a NUL"), ('{"Name":"x"', "line 1, column 12: the text ends"),
                           ('{"Name":x}', 'column 9: "x" can\'t stand here'), ('{"Name":1e999}', "the number is too large"),
                           ('{"Name":"x","MachineType":1.5}', "and is 1.5"),
                           ('{"Name":"x","Tools":[{"Parameters":{"ToolLength":"abc"}}]}',
                            'Parameters.ToolLength: "abc" can\'t stand here: it has to be a decimal number')):
            self.run_desk("--no-addin", "open", "-", stdin=text.encode(), status=2, told=told)

    def test_words_are_understood_or_explained(self):
        for words, status, told, out in (
                (["open", "--help"], 0, "", "open FILE"), (["help", "modify"], 0, "", ",, is a comma"),
                (["--version"], 0, "", "deskhost 1."), (["help", "check"], 0, "", "--junit FILE"),
                (["--quiet", "--", "ui"], 0, "", "ui 0"), (["opn"], 2, 'did you mean "open"?', ""),
                (["--quite", "ui"], 2, 'did you mean "--quiet"?', ""), (["--language", "abc", "ui"], 2, '--language: "abc" is', ""),
                (["release", "import"], 0, "note: import: no add-in", ""), (["command", "3"], 0, "no command 3", ""),
                (["language", "99"], 0, "note: language: no texts", ""), (["--no-addin", "import"], 0, "note: import", ""),
                (["check", "--junit", "/no/x"], 2, "can't be written", ""),
                (["--language", "99", "ui"], 0, "note: --language: no texts", ""), (["--kb=", "ui"], 2, "--kb is empty", ""),
                (["open", ""], 2, 'of "open" is empty', ""), (["inspect", ""], 2, "is empty", ""),
                (["inspect", "x", "--json", ""], 2, "--json is empty", ""), (["--quiet", "inspect", "x"], 2, "stands alone", ""),
                (["inspect", "--jsn", "x"], 2, "see deskhost inspect --help", ""), (["inspct"], 2, 'did you mean "inspect"', ""),
                (["open", self.document, "import", self.tools, "modify", TOOL, "ToolLength=a"], 2, "has to be a decimal", ""), (["check", "--only", "x:1"], 2, "no checks", "")):
            self.run_desk(*words, status=status, told=told, out=out)
        lines = [self.run_desk(*words, "--help").splitlines() for words in ([], ["inspect"], ["check"])]
        self.assertLessEqual((len(lines[0]), max(map(len, sum(lines, [])))), (40, 100))
        text = self.run_desk("open", self.document, "import", self.tools, "modify", TOOL, "Comment=a,, b,ToolNumber=7",
                             "save", "-")
        tool = next(t for t in json.loads(text)["Tools"] if t["Parameters"]["ToolID"] == TOOL)
        self.assertEqual((tool["Parameters"]["Comment"], tool["Parameters"]["ToolNumber"]), ("a, b", 7))

    def test_man_page_completion_and_junit(self):
        page = self.run_desk("help", "man")
        for word in ("modify", "\\-\\-timeout", "\\-\\-junit"):
            self.assertIn(f"\\fB{word}\\fR", page)
        script = self.run_desk("help", "bash") + 'COMP_WORDS=(deskhost sho); _deskhost x sho deskhost; echo "${COMPREPLY[@]}"'
        self.assertEqual(subprocess.run(["bash", "-c", script], capture_output=True, check=True).stdout, b"show\n")
        text = self.run_desk("check", "--strictness", "1", "--junit", "-", "--component", DESKHOST.parent / "libQVEsprit.so")
        self.assertIn('tests="1" failures="0"', text)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])

#!/usr/bin/python3
"""The check of the floors has to be seen to fail: small trees, each with one planted line."""
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

CHECK = Path(__file__).parents[2] / "tools" / "check-floors"
HEADERS = ["src/automation/value.h", "src/platform/files.h", "src/formats/fields.h", "src/host/tool.h", "src/foundation/global.h",
           "src/import/driver.h", "src/shapes/shift.h", "src/toollist/list.h", "src/knowledgebase/kbm.h",
           "src/simulation/turn.h", "src/shell/connect.h", "src/component/exports.h", "deskhost/model/tool.h",
           "deskhost/session/gate.h"]

# the file with the planted line, the line, and what is said about it (None: nothing)
CASES = [
    ("src/host/a.cpp", '#include "automation/value.h"', None),
    ("src/automation/a.cpp", '#include "value.h"', None),
    ("src/import/a.cpp", '#include "knowledgebase/kbm.h"', None),
    ("src/shell/a.cpp", '#include "import/driver.h"', None),
    ("src/component/a.cpp", "#include <windows.h>", None),
    ("src/platform/a.cpp", "#ifdef _WIN32", None),
    ("src/host/a.cpp", "#ifdef NDEBUG", None),
    ("src/host/a.cpp", "// _WIN32 has it otherwise", None),
    ("deskhost/model/a.cpp", "#include <nlohmann/json.hpp>", None),
    ("deskhost/a.cpp", '#include "deskhost/model/tool.h"', None),
    ("deskhost/session/a.cpp", '#include "deskhost/model/tool.h"', None),
    ("src/automation/a.cpp", '#include "platform/files.h"', "src/automation may not include src/platform"),
    ("src/platform/a.cpp", '#include "../host/tool.h"', "src/platform may not include src/host"),
    ("src/foundation/a.cpp", '  #  include "shell/connect.h"', "src/foundation may not include src/shell"),
    ("src/knowledgebase/a.h", '#include "import/driver.h"', "src/knowledgebase may not include src/import"),
    ("src/toollist/a.cpp", '#include "knowledgebase/kbm.h"', "src/toollist may not include src/knowledgebase"),
    ("src/formats/a.cpp", '#include "host/tool.h"', "src/formats may not include src/host"),
    ("deskhost/a.cpp", '#include "formats/fields.h"', None),
    ("src/shell/a.cpp", '#include "component/exports.h"', "src/shell may not include src/component"),
    ("src/host/a.cpp", '#include "deskhost/model/tool.h"', "src/host may not include deskhost/model"),
    ("deskhost/model/a.cpp", '#include "host/tool.h"', "deskhost/model may not include src/host"),
    ("deskhost/model/a.cpp", '#include "deskhost/session/gate.h"', "deskhost/model may not include deskhost/session"),
    ("src/host/a.cpp", '#include "host/gone.h"', "lies in no room"),
    ("src/attic/a.cpp", "", "lies in no room"),
    ("deskhost/attic/a.cpp", "", "lies in no room"),
    ("src/import/a.cpp", "#include <unistd.h>", "<unistd.h> isn't of the C++20 standard library"),
    ("src/import/a.cpp", "#include <stdio.h>", "<stdio.h> isn't of the C++20 standard library"),
    ("src/import/a.cpp", "#if defined(__linux__) && 1", "__linux__: a system is told apart"),
    ("deskhost/a.cpp", "#ifndef _WIN32", "_WIN32: a system is told apart"),
]


class CheckFloors(unittest.TestCase):
    def test_planted_lines(self):
        for file, line, said in CASES:
            with self.subTest(file=file, line=line), tempfile.TemporaryDirectory() as root:
                for path in HEADERS + [file]:
                    (Path(root) / path).parent.mkdir(parents=True, exist_ok=True)
                    (Path(root) / path).write_text("")
                (Path(root) / file).write_text("\n" + line + "\n")
                done = subprocess.run([sys.executable, CHECK, root], capture_output=True, text=True)
                self.assertEqual((done.returncode, done.stderr), (1 if said else 0, ""))
                self.assertEqual(done.stdout.count("\n"), 1 if said else 0)
                self.assertIn(f"{file}" if said else "", done.stdout)
                self.assertIn(said or "", done.stdout)


if __name__ == "__main__":
    unittest.main()

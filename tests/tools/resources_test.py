#!/usr/bin/python3
"""What the build must refuse in a text of ours, and what it makes of a good one."""
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

ENCODE = Path(__file__).parents[2] / "resources" / "encode_text.py"
MODEL = '[MSG]\nnotSet=" not set!"\nOther=x\n'

# text, code page, the bytes that it becomes or what is said against it
CASES = [
    ('[MSG]\nnotSet=ä\r\nOther=Ø\n', "1252", b"[MSG]\r\nnotSet=\xe4\r\nOther=\xd8\r\n"),
    ('[MSG]\nnotSet=" ı"\nOther=ğ\n', "1254", b'[MSG]\r\nnotSet=" \xfd"\r\nOther=\xf0\r\n'),
    ("[MSG]\nnotSet=工\nOther=x\n", "932", b"[MSG]\r\nnotSet=\x8dH\r\nOther=x\r\n"),
    ("[MSG]\nnotSet=x\nOther=ł\n", "1252", ":3: 'ł' is not in code page 1252"),
    ("[MSG]\nnotSet= not set!\nOther=x\n", "1252", "notSet: blanks at an end need quotes"),
    ("[MSG]\nnotSet=set to: \nOther=x\n", "1252", "notSet: blanks at an end need quotes"),
    ("[MSG]\nnotSet='x'\nOther=x\n", "1252", "would be dropped"),
    ("[MSG]\nnotSet=x\n", "1252", "differ from those"),
    ("[KBM]\nnotSet=x\nOther=x\n", "1252", "differ from those"),
    ("[MSG]\nOther=x\nnotSet=x\n", "1252", "differ from those"),
    ("[MSG]\nnotSet\nOther=x\n", "1252", ":2: neither"),
    ("[MSG]\nnotSet=" + 127 * "工" + "\nOther=x\n", "932", b"[MSG]\r\nnotSet=" + 127 * b"\x8dH" + b"\r\nOther=x\r\n"),
    ("[MSG]\nnotSet=" + 128 * "工" + "\nOther=x\n", "932", "longer than 254 bytes"),
]


class EncodeText(unittest.TestCase):
    def test_texts(self):
        for text, code_page, wanted in CASES:
            with self.subTest(text=text), tempfile.TemporaryDirectory() as folder:
                source, model, output = (Path(folder) / name for name in ("source", "model", "output"))
                source.write_bytes(text.encode("utf-8"))
                model.write_text(MODEL)
                done = subprocess.run([sys.executable, ENCODE, code_page, source, output, model],
                                      capture_output=True, text=True)
                if isinstance(wanted, bytes):
                    self.assertEqual((done.returncode, done.stderr), (0, ""))
                    self.assertEqual(output.read_bytes(), wanted)
                else:
                    self.assertEqual(done.returncode, 1)
                    self.assertIn(wanted, done.stderr)
                    self.assertFalse(output.exists())


if __name__ == "__main__":
    unittest.main()

#!/usr/bin/python3
"""Writes a UTF-8 text of ours as the component reads it: 8-bit code page, CR LF.

usage: encode_text.py CODEPAGE SOURCE OUTPUT [MODEL]

A character that the code page lacks ends the build, and so does a value that the system's profile functions
would give back otherwise than it stands here: one with blanks at an end and no quotes around it, or one that
is too long. With MODEL, SOURCE must have exactly the sections and keys of that file, in its order.
"""
import sys
from pathlib import Path

LONGEST_VALUE = 254  # bytes; what the component's 255-byte buffer holds


def entries(path):
    """(section, key, value as written) of each entry."""
    section = None
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), start=1):
        if not line.strip() or line.startswith(";"):
            continue
        if line.startswith("[") and line.endswith("]"):
            section = line[1:-1]
            continue
        key, equals, value = line.partition("=")
        if not equals or section is None:
            sys.exit(f"{path}:{number}: neither a section, an entry nor a comment: {line!r}")
        yield section, key, value


def check_values(path, code_page):
    for section, key, value in entries(path):
        quoted = len(value) >= 2 and value[0] == value[-1] == '"'
        if not quoted and value != value.strip():
            sys.exit(f"{path}: [{section}] {key}: blanks at an end need quotes")
        if not quoted and value[:1] in ("'", '"') and value[:1] == value[-1:]:
            sys.exit(f"{path}: [{section}] {key}: the quotes around this value would be dropped")
        if len(value.encode(code_page)) > LONGEST_VALUE:
            sys.exit(f"{path}: [{section}] {key}: longer than {LONGEST_VALUE} bytes in {code_page}")


def check_keys(path, model):
    keys, wanted = ([entry[:2] for entry in entries(file)] for file in (path, model))
    if keys != wanted:
        odd = sorted(set(wanted) ^ set(keys)) or "their order"
        sys.exit(f"{path}: sections and keys differ from those of {model.name}: {odd}")


def main(code_page, source, output, model=None):
    code_page = f"cp{code_page}"
    source = Path(source)
    # Reading makes one line end of CR LF and LF.
    text = source.read_text(encoding="utf-8").replace("\n", "\r\n")
    try:
        coded = text.encode(code_page)
    except UnicodeEncodeError as lost:
        line = text.count("\n", 0, lost.start) + 1
        sys.exit(f"{source}:{line}: {text[lost.start]!r} is not in code page {code_page[2:]}")
    if coded.decode(code_page) != text:
        sys.exit(f"{source}: code page {code_page[2:]} doesn't give this text back")
    check_values(source, code_page)
    if model:
        check_keys(source, Path(model))
    Path(output).write_bytes(coded)


if __name__ == "__main__":
    if len(sys.argv) not in (4, 5):
        sys.exit(__doc__)
    main(*sys.argv[1:])

#!/usr/bin/python3
"""Runs a program with a PostgreSQL cluster of its own, which is gone afterwards.

usage: with_postgresql.py PROGRAM [ARGUMENT...]

The program finds an ODBC connection string in QVESPRIT_TEST_POSTGRESQL. Ends with the program's status, or with 77
and a line that says why where there is no PostgreSQL.
"""
import os
import pwd
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

SKIPPED = 77


def server_programs():
    found = sorted(Path("/usr/lib/postgresql").glob("*/bin/initdb"), key=lambda path: int(path.parts[4]))
    return found[-1].parent if found else None


class Cluster:
    """A server on a socket in a temporary folder; it refuses to run as root, so root runs it as postgres."""

    def __init__(self, programs):
        self.programs = programs
        self.folder = tempfile.mkdtemp(prefix="kb-pg-")
        if os.geteuid() == 0:
            account = pwd.getpwnam("postgres")
            os.chown(self.folder, account.pw_uid, account.pw_gid)

    def run(self, program, *arguments):
        command = [str(self.programs / program), *arguments]
        if os.geteuid() == 0:
            command = ["runuser", "-u", "postgres", "--", *command]
        subprocess.run(command, check=True, cwd=self.folder, stdout=subprocess.DEVNULL)

    def __enter__(self):
        self.run("initdb", "-D", self.folder + "/data", "-A", "trust", "-U", "postgres", "-E", "UTF8",
                 "--locale=C.UTF-8", "--no-sync")
        options = f"-k {self.folder} -c listen_addresses='' -c fsync=off -c max_connections=40"
        self.run("pg_ctl", "-D", self.folder + "/data", "-w", "-l", self.folder + "/log", "-o", options, "start")
        self.run("psql", "-h", self.folder, "-U", "postgres", "-q", "-c", "create role kb_reader login")
        return f"Driver=PostgreSQL Unicode;Server={self.folder};Database=postgres;UID=postgres"

    def __exit__(self, *_):
        try:
            self.run("pg_ctl", "-D", self.folder + "/data", "-m", "immediate", "stop")
        finally:
            shutil.rmtree(self.folder, ignore_errors=True)


def main(command):
    programs = server_programs()
    if programs is None:
        print("skipped: PostgreSQL isn't installed (Debian: postgresql)")
        return SKIPPED
    with Cluster(programs) as connection_string:
        return subprocess.run(command, env={**os.environ, "QVESPRIT_TEST_POSTGRESQL": connection_string}).returncode


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))

#!/usr/bin/env python3
"""Runs zrxml commands whose standard output is a closed pipe and fails unless each one reports
"standard output could not be written: Broken pipe" and exits 1 at once.

usage: expectClosedPipe.py TOOL WORKDIR SAMPLES
"""
import os
import subprocess
import sys

REPORT = b"zrxml Error: standard output could not be written: Broken pipe"
# The document's last tag is cut short: a command that read to the end would report it.
LATE_FAULT = b"EOF found before end of tag"


def big_document(workdir):
    path = os.path.join(workdir, "closedPipe.xml")
    with open(path, "w") as out:
        out.write("<r>\n")
        out.write('<e a="1">x</e>\n' * 300000)
        out.write("<late")
    return path


def closed_from_the_start(command):
    """The reading end is closed before the tool starts."""
    read_end, write_end = os.pipe()
    os.close(read_end)
    try:
        run = subprocess.run(command, stdout=write_end, stderr=subprocess.PIPE, timeout=120)
    finally:
        os.close(write_end)
    return run.returncode, run.stderr


def closed_after_one_line(command):
    """As `command | head -1`: the reader takes one line and goes."""
    tool = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    tool.stdout.readline()
    tool.stdout.close()
    errors = tool.stderr.read()
    return tool.wait(timeout=120), errors


def main():
    tool, workdir, samples = sys.argv[1:4]
    os.makedirs(workdir, exist_ok=True)
    document = big_document(workdir)
    cases = [
        ("events | head -1", closed_after_one_line, [tool, "events", document], True),
        ("events into a closed pipe", closed_from_the_start, [tool, "events", document], True),
        ("check", closed_from_the_start, [tool, "check", os.path.join(samples, "robotCell.xml")], False),
        ("demo", closed_from_the_start, [tool, "demo"], False),
        ("demo --values", closed_from_the_start, [tool, "demo", "--values"], False),
        ("demo --formula", closed_from_the_start, [tool, "demo", "--formula"], False),
        ("--help", closed_from_the_start, [tool, "--help"], False),
    ]
    failed = 0
    for name, run, command, big in cases:
        status, errors = run(command)
        problems = []
        if status != 1:
            problems.append("exit status %d, expected 1" % status)
        if REPORT not in errors:
            problems.append("no report of the closed pipe")
        if big and LATE_FAULT in errors:
            problems.append("read the whole document after the pipe closed")
        if problems:
            failed += 1
            print("%s: %s\nstderr:\n%s" % (name, "; ".join(problems), errors.decode(errors="replace")[-2000:]))
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()

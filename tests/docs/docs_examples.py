#!/usr/bin/env python3
"""Runs every example command of the documentation and checks what it prints.

The convention the pages follow: inside a fenced code block (```), a line that starts with "$ "
is a command that works as written from the repository root. The lines after it, up to the next
command or the end of the block, are what it prints on standard output. A command that is meant
to fail ends with the shell comment "# exits N" (N its exit status); every other command must
exit with 0. Commands that need something the reader builds outside the repository are written
without the "$ " prompt and are not run.

How strict the comparison is: line by line and exact, except that trailing blanks are ignored,
a run time ("0.002 seconds") matches any run time, and a line that is just "..." stands for any
number of lines (none included). A command shown without output lines is checked for its exit
status only. Standard error is not compared (it is shown when a command fails).

The commands of one page run in order in one scratch copy of the repository's docs/ and
examples/ folders, so that a command may read what an earlier one of the same page wrote and
none writes into the source tree. The built vellum-cli comes first on PATH; LD_LIBRARY_PATH
starts with the folder of the libraries that pages ask the reader to build (the test builds
them).

usage: docs_examples.py VELLUM_CLI SOURCE_DIR [LIBRARY_DIR]
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

COPIED = ["docs", "examples"]
TIME = re.compile(r"\d+(\.\d+)?(e-?\d+)? seconds")
EXITS = re.compile(r"#\s*exits\s+(\d+)\s*$")
TIMEOUT = 120


def commands_of(page):
    """(line number, command, expected output lines) for each "$ " line of the page's fences."""
    found = []
    fence = None
    current = None
    for number, line in enumerate(page.read_text(encoding="utf-8").splitlines(), 1):
        stripped = line.strip()
        if stripped.startswith("```"):
            if fence is None:
                fence = line[: len(line) - len(line.lstrip())]
            else:
                fence = None
                current = None
            continue
        if fence is None:
            continue
        text = line[len(fence):] if line.startswith(fence) else line.lstrip()
        if text.startswith("$ "):
            current = (number, text[2:].strip(), [])
            found.append(current)
        elif current is not None:
            current[2].append(text)
    return found


def normalised(line):
    return TIME.sub("T seconds", line.rstrip())


def matches(expected, actual):
    """True when the actual lines fit the expected ones ("..." matching any run of lines)."""
    if not expected:
        return not actual
    if expected[0].strip() == "...":
        return any(matches(expected[1:], actual[i:]) for i in range(len(actual) + 1))
    return bool(actual) and normalised(expected[0]) == normalised(actual[0]) and matches(
        expected[1:], actual[1:])


def run_page(page, scratch, environment):
    failures = []
    for number, command, expected in commands_of(page):
        wanted = EXITS.search(command)
        status = int(wanted.group(1)) if wanted else 0
        try:
            done = subprocess.run(["bash", "-c", command], cwd=scratch, env=environment,
                                  capture_output=True, text=True, timeout=TIMEOUT)
        except subprocess.TimeoutExpired:
            failures.append(f"{page.name}:{number}: '{command}' did not end in {TIMEOUT} s")
            continue
        actual = done.stdout.splitlines()
        problems = []
        if done.returncode != status:
            problems.append(f"exit status {done.returncode}, expected {status}")
        if expected and not matches(expected, actual):
            problems.append("output differs:\n  expected:\n    " + "\n    ".join(expected) +
                            "\n  got:\n    " + "\n    ".join(actual))
        if problems:
            failures.append(f"{page.name}:{number}: '{command}': " + "; ".join(problems) +
                            ("\n  standard error:\n    " + done.stderr.strip().replace(
                                "\n", "\n    ") if done.stderr.strip() else ""))
    return failures


def main():
    if len(sys.argv) not in (3, 4):
        sys.exit(__doc__.split("usage: ")[1])
    cli = Path(sys.argv[1]).resolve()
    source = Path(sys.argv[2]).resolve()
    environment = dict(os.environ)
    environment["PATH"] = str(cli.parent) + os.pathsep + environment.get("PATH", "")
    if len(sys.argv) == 4:
        environment["LD_LIBRARY_PATH"] = (str(Path(sys.argv[3]).resolve()) + os.pathsep +
                                          environment.get("LD_LIBRARY_PATH", ""))
    # The search paths are the command's own business: the pages run with them unset.
    for variable in ("koralModules", "koralGraphRules", "koralGraphClasses", "VellumLayout"):
        environment.pop(variable, None)
    pages = sorted((source / "docs").glob("*.md"))
    failures = []
    count = 0
    for page in pages:
        count += len(commands_of(page))
        with tempfile.TemporaryDirectory(prefix="vellum-docs-") as scratch:
            for folder in COPIED:
                shutil.copytree(source / folder, Path(scratch) / folder)
            failures += run_page(page, scratch, environment)
    for failure in failures:
        print(failure)
    print(f"{count - len(failures)} passed, {len(failures)} failed")
    sys.exit(1 if failures or count == 0 else 0)


if __name__ == "__main__":
    main()

#!/usr/bin/env python3
"""Runs the bindings under valgrind and fails where they read, write or free what they mustn't, or leak.

    check_memory.py PROGRAMS     the folder of the build, with brenlox_batch and brenlox_make_samples

PYTHONPATH leads to the package. Python itself and numpy are left to their developers: an error counts if the
compiled module is on its stack, a wrong access or release counts wherever it is seen.
"""

import os
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree
from pathlib import Path

ALWAYS = {"InvalidRead", "InvalidWrite", "InvalidFree", "MismatchedFree", "InvalidJump", "Overlap"}
SUPPRESSIONS = Path("/usr/lib/valgrind/python3.supp")


def make_survey(programs: Path, folder: Path) -> Path:
    """A survey of one line's field files."""
    survey, fields = folder / "survey.mdb", folder / "field_files"
    batch = str(programs / "batch" / "brenlox_batch")
    subprocess.run([programs / "samples" / "brenlox_make_samples", fields, "--tensor-line"],
                   check=True, stdout=subprocess.DEVNULL)
    for surplus in sorted(path for path in fields.rglob("*") if path.is_file())[3:]:
        surplus.unlink()
    for command in (["new", survey], ["import", survey, fields, "--auto"]):
        subprocess.run([batch, *map(str, command)], check=True, stdout=subprocess.DEVNULL)
    return survey


def frames_of(error: ElementTree.Element) -> "list[ElementTree.Element]":
    return [frame for stack in error.findall("stack") for frame in stack.findall("frame")]


def counts(error: ElementTree.Element) -> bool:
    kind = error.findtext("kind", "")
    frames = frames_of(error)
    functions = [frame.findtext("fn", "") for frame in frames]
    if any(function.startswith("_dl_") for function in functions):
        return False  # the loader reads names by words
    if any(function.startswith("PyInit_") for function in functions):
        return kind in ALWAYS  # what a module keeps for the life of the process
    return kind in ALWAYS or any("_brenlox" in frame.findtext("obj", "") for frame in frames)


def text_of(error: ElementTree.Element) -> str:
    what = error.findtext("what") or error.findtext("xwhat/text") or ""
    where = error.findtext("auxwhat") or ""
    lines = [f"{error.findtext('kind')}: {what} {where}"]
    for frame in frames_of(error)[:20]:
        place = f"{frame.findtext('file')}:{frame.findtext('line')}" if frame.find("file") is not None else \
            Path(frame.findtext("obj", "?")).name
        lines.append(f"    {frame.findtext('fn', '?')} ({place})")
    return "\n".join(lines)


def main() -> int:
    programs = Path(sys.argv[1]).resolve()
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        survey = make_survey(programs, folder)
        report = folder / "valgrind.xml"
        command = ["valgrind", "--xml=yes", f"--xml-file={report}", "--leak-check=full", "--num-callers=40",
                   "--show-leak-kinds=definite", "--errors-for-leak-kinds=definite", "--trace-children=no"]
        if SUPPRESSIONS.exists():
            command.append(f"--suppressions={SUPPRESSIONS}")
        exercise = Path(__file__).with_name("exercise.py")
        ran = subprocess.run(
            [*command, sys.executable, str(exercise), str(survey)],
            env={**os.environ, "PYTHONMALLOC": "malloc", "OPENBLAS_NUM_THREADS": "1"},
            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        print(ran.stdout, end="")
        if ran.returncode != 0 or "all calls made" not in ran.stdout:
            print(f"The calls end with status {ran.returncode}")
            return 1
        errors = ElementTree.parse(report).findall("error")
    ours = [error for error in errors if counts(error)]
    for error in ours:
        print(text_of(error))
    print(f"{len(ours)} faults of the bindings; {len(errors) - len(ours)} reports on Python and numpy are left aside")
    return 1 if ours else 0


sys.exit(main())

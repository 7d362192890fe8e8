"""Two programs at one survey, in every combination: one has it, the other says which."""

import contextlib
import os
import pathlib
import shutil
import subprocess
import sys
import time

import brenlox
import pytest
from programs import BATCH, WINDOW, needs_programs

pytestmark = needs_programs
PROGRAMS = ("window", "batch", "python")
PATIENCE = 60.0  # seconds, on a busy machine


@pytest.fixture
def path(made_survey, tmp_path):
    return pathlib.Path(shutil.copy(made_survey, tmp_path / "survey.mdb"))


class Program:
    """A process with a debug log and settings of its own, which goes at the end of a `with`."""

    def __init__(self, folder, *words):
        self.log = folder / "Vexapp" / "Brenlox_debug.log"
        self.words = words
        self.environment = os.environ | {"QT_QPA_PLATFORM": "offscreen", "BRENLOX_DEBUG_LEVEL": "1",
                                         "XDG_DATA_HOME": str(folder), "XDG_CONFIG_HOME": str(folder)}
        self.log.parent.mkdir(parents=True)

    def __enter__(self, output=subprocess.PIPE):
        self.process = subprocess.Popen(list(map(str, self.words)), env=self.environment, stdin=subprocess.PIPE,
                                        stdout=output, stderr=subprocess.STDOUT, text=True)
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.communicate()

    def wait_for_log(self, *texts):
        """The log, as soon as it has one of the texts."""
        end = time.monotonic() + PATIENCE
        while time.monotonic() < end:
            log = self.log.read_text() if self.log.exists() else ""
            if any(text in log for text in texts):
                return log
            assert self.process.poll() is None, self.process.communicate()[0]
            time.sleep(0.01)
        raise AssertionError(log)


def window(folder, path):
    if not WINDOW.exists():
        pytest.skip("the window isn't built")
    return Program(folder, WINDOW, path)


class HoldingWindow:
    def __init__(self, folder, path):
        self.program = window(folder, path)

    def __enter__(self):
        process = self.program.__enter__().process
        self.program.wait_for_log("open_database done")
        return process

    def __exit__(self, *_):
        self.program.__exit__()


class HoldingBatch:
    """Nobody takes what it writes, so that it stands still with the survey open."""

    def __init__(self, folder, path):
        self.program = Program(folder, BATCH, "curve", path, "--line", "200E", "--station", 500, "--reference", 0,
                               "--data-type", "ExHy", "--dipole", 100, "--reduction", 0, "--json")

    def __enter__(self):
        self.pipe, output = os.pipe()
        os.set_blocking(output, False)
        for size in (4096, 1):
            with contextlib.suppress(BlockingIOError):
                while True:
                    os.write(output, b" " * size)
        os.set_blocking(output, True)
        process = self.program.__enter__(output).process
        os.close(output)
        self.program.wait_for_log("open_database done")
        return process

    def __exit__(self, *_):
        self.program.__exit__()
        os.close(self.pipe)


class HoldingPython:
    CODE = "import brenlox, sys; s = brenlox.open(sys.argv[1]); print('open', flush=True); sys.stdin.read()"

    def __init__(self, folder, path):
        self.program = Program(folder, sys.executable, "-c", self.CODE, path)

    def __enter__(self):
        process = self.program.__enter__().process
        assert process.stdout.readline() == "open\n"
        return process

    def __exit__(self, *_):
        self.program.__exit__()


HOLDERS = {"window": HoldingWindow, "batch": HoldingBatch, "python": HoldingPython}


def refusal_of(program, folder, path):
    """What a program says that can't have the survey."""
    if program == "window":
        with window(folder, path) as second:
            return second.wait_for_log("database is locked", "open_database done")  # the message is up
    if program == "batch":
        ran = subprocess.run([BATCH, "info", path], capture_output=True, text=True)
        assert ran.returncode == 1 and ran.stdout == ""
        return ran.stderr
    with pytest.raises(brenlox.Error) as refused:
        brenlox.open(path)
    return str(refused.value)


@pytest.mark.parametrize("holder", PROGRAMS)
def test_the_second_says_who_has_the_survey(path, tmp_path, holder):
    with HOLDERS[holder](tmp_path / "holder", path) as first:
        name = pathlib.Path(f"/proc/{first.pid}/comm").read_text().strip()
        wanted = f"database is locked. The survey is open in another window or program: {name}, process {first.pid} of "
        for second in PROGRAMS:
            assert wanted in refusal_of(second, tmp_path / second, path), second
        assert first.poll() is None
    with brenlox.open(path) as survey:  # although the first was killed
        assert survey.lines == ["200E", "400E"]
    assert sorted(each.name for each in path.parent.glob("survey*")) == ["survey.bak", "survey.mdb"]

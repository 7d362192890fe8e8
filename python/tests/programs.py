"""The programs of the same build, which the package is compared with."""

import subprocess
from pathlib import Path

import brenlox
import pytest

BUILD = Path(brenlox.__file__).resolve().parents[2]
BATCH = BUILD / "batch" / "brenlox_batch"
WINDOW = BUILD / "app" / "brenlox"
SAMPLES = BUILD / "samples" / "brenlox_make_samples"
needs_programs = pytest.mark.skipif(not (BATCH.exists() and SAMPLES.exists()), reason="the programs aren't built")


def batch(*words, status=0):
    ran = subprocess.run([BATCH, *map(str, words)], capture_output=True, text=True)
    assert ran.returncode == status, ran.stdout + ran.stderr
    return ran.stdout


def make_samples(folder, *options):
    subprocess.run([SAMPLES, folder, *options], check=True, stdout=subprocess.DEVNULL)


def same_files(one, other):
    """The files of two folders, byte by byte."""
    names = sorted(path.name for path in one.iterdir() if path.is_file())
    assert names and names == sorted(path.name for path in other.iterdir() if path.is_file())
    for name in names:
        assert (one / name).read_bytes() == (other / name).read_bytes(), name

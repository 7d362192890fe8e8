"""Runs the recipes of docs/python.md as they stand there.

A recipe is a heading with one block ```python, and where it prints something a block ```text after it. Each runs in
a folder of its own that holds what its readers have: `survey.mdb`, `tensors.mdb` and `field_files`.

    python3 recipes.py SAMPLES PICTURES     puts the pictures that the recipes save into the folder PICTURES
"""

from __future__ import annotations

import contextlib
import io
import os
import pathlib
import re
import shutil
import sys
import tempfile
from dataclasses import dataclass

PAGE = pathlib.Path(__file__).parents[2] / "docs" / "python.md"
_BLOCK = re.compile(r"^```(python|text)\n(.*?)^```$", re.MULTILINE | re.DOTALL)
_PICTURE = re.compile(r"!\[[^\]]+\]\(screenshots/python_(\w+\.png)\)")


@dataclass(frozen=True)
class Recipe:
    title: str
    code: str
    output: str
    pictures: tuple[str, ...]  # names of the files that the code saves and the page shows

    def run(self, samples: pathlib.Path, folder: pathlib.Path) -> str:
        """What the code prints, run in `folder` with a copy of the samples."""
        shutil.copytree(samples, folder, dirs_exist_ok=True)
        printed = io.StringIO()
        before = os.getcwd()
        os.chdir(folder)
        try:
            with contextlib.redirect_stdout(printed):
                exec(compile(self.code, self.title, "exec"), {"__name__": "__main__"})
        finally:
            os.chdir(before)
            if "matplotlib.pyplot" in sys.modules:
                sys.modules["matplotlib.pyplot"].close("all")
        return printed.getvalue()


def recipes() -> list[Recipe]:
    found = []
    for section in PAGE.read_text(encoding="utf-8").split("\n## ")[1:]:
        blocks = {"python": "", "text": ""}
        for kind, text in _BLOCK.findall(section):
            blocks[kind] += text
        if blocks["python"]:
            found.append(Recipe(section.partition("\n")[0], blocks["python"], blocks["text"],
                                tuple(_PICTURE.findall(section))))
    return found


def main(samples: str, pictures: str) -> None:
    for recipe in recipes():
        with tempfile.TemporaryDirectory() as folder:
            recipe.run(pathlib.Path(samples), pathlib.Path(folder))
            for picture in recipe.pictures:
                shutil.copy(pathlib.Path(folder) / picture, pathlib.Path(pictures) / f"python_{picture}")


if __name__ == "__main__":
    main(*sys.argv[1:])

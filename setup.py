"""Builds the extension module with CMake, nothing else of Brenlox, and lets setuptools put the package together."""

import os
import re
import shutil
import subprocess
import sys
import sysconfig
from pathlib import Path

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

ROOT = Path(__file__).resolve().parent
# A folder for each interpreter: a second installation compiles only what has changed.
FOLDER = ROOT / "build" / f"pip-{sysconfig.get_config_var('SOABI')}"
JOBS = os.environ.get("JOBS") or str(os.cpu_count() or 1)


def version():
    return re.search(r"project\(Brenlox VERSION (\S+)", (ROOT / "CMakeLists.txt").read_text("utf-8"))[1]


class CMakeBuild(build_ext):
    """The extension module as CMake's target `brenlox_python` makes it."""

    def build_extension(self, ext):
        subprocess.run(
            ["cmake", "--preset", "python", "-B", str(FOLDER), f"-DPython_EXECUTABLE={sys.executable}"],
            cwd=ROOT, check=True)
        subprocess.run(
            ["cmake", "--build", str(FOLDER), "--target", "brenlox_python", "-j", JOBS], cwd=ROOT, check=True)
        target = Path(self.get_ext_fullpath(ext.name)).resolve()
        target.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy2(FOLDER / "python" / "brenlox" / target.name, target)


lists = FOLDER / "setuptools"
shutil.rmtree(lists, ignore_errors=True)  # modules that have been removed would come along
lists.mkdir(parents=True)
setup(
    version=version(),
    packages=["brenlox"],
    package_dir={"": "python"},
    package_data={"brenlox": ["py.typed", "*.pyi"]},
    ext_modules=[Extension("brenlox._brenlox", sources=[])],
    cmdclass={"build_ext": CMakeBuild},
    options={"build": {"build_base": str(lists)}, "egg_info": {"egg_base": str(lists)}},
    zip_safe=False,
)

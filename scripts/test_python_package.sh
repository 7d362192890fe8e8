#!/usr/bin/env bash
# Installs the Python package from this checkout into a fresh virtual environment, works there with it, removes it
# again, and makes a wheel. Without a network.
#
#   scripts/test_python_package.sh [PYTHON]     /usr/bin/python3 by default; it needs numpy, setuptools and wheel
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

fail() { echo "FAILED: $*" >&2; exit 1; }
step() { printf '== %s\n' "$*"; }

checkout="$PWD"
environment="$(mktemp -d)"
trap 'rm -rf "$environment"' EXIT
before="$(git status --porcelain 2>/dev/null || true)"
"${1:-/usr/bin/python3}" -m venv --system-site-packages "$environment/venv"
python="$environment/venv/bin/python"
pip=("$python" -m pip --disable-pip-version-check)

step "Installing"
"${pip[@]}" install --no-index --no-build-isolation . >"$environment/install.log" 2>&1 ||
  { tail -n 30 "$environment/install.log" >&2; fail "pip can't install the checkout"; }
# The build has the module and the libraries below it; windows, programs, tests and benchmarks aren't compiled.
for unwanted in app/ tests/ benchmarks/ screenshots/ batch/; do
  left="$(find build/pip-*/"$unwanted" -name '*.o' -print -quit 2>/dev/null || true)"
  [ -z "$left" ] || fail "more than the module is compiled: $left"
done

step "Working with it"
cd "$environment"
"$python" - "$checkout" <<'PYTHON'
import importlib.metadata
import pathlib
import sys

import brenlox
import numpy as np

folder = pathlib.Path(brenlox.__file__).parent
assert pathlib.Path(sys.argv[1]) not in folder.parents, folder
assert importlib.metadata.version("brenlox") == brenlox.__version__
assert (folder / "py.typed").exists() and (folder / "_brenlox.pyi").exists()
frequency = np.logspace(3, -1, 20)
fit = brenlox.rhoplus(frequency, np.full(20, 100.0), np.full(20, 45.0), np.full(20, 3.0), np.full(20, 1.0))
assert fit.is_consistent
print("brenlox", brenlox.__version__, "from", folder)
PYTHON
cd "$checkout"

step "Removing it"
"${pip[@]}" uninstall -y -q brenlox
left="$(find "$environment/venv" -iname '*brenlox*')"
[ -z "$left" ] || fail "these are left: $left"

step "Making a wheel"
"${pip[@]}" wheel --no-index --no-build-isolation --no-deps -q -w "$environment/wheel" .
contents="$("$python" -m zipfile -l "$environment"/wheel/brenlox-*.whl)"
for file in brenlox/__init__.py brenlox/py.typed brenlox/_brenlox.pyi brenlox/_brenlox.cpython dist-info/METADATA; do
  [[ "$contents" == *"$file"* ]] || fail "the wheel has no $file: $contents"
done
[ "$before" = "$(git status --porcelain 2>/dev/null || true)" ] || fail "the checkout has changed: $(git status --short)"
echo "The Python package installs, works and goes, and there is a wheel of it."

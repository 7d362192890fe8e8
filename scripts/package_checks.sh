#!/usr/bin/env bash
# What scripts/test_package.sh asks of the installed packages, inside the clean root.
set -euo pipefail

fail() { echo "FAILED: $*" >&2; exit 1; }

# A file's text or a program's output that has to have the words.
expect() {
  local words="$1"
  shift
  local shown
  shown="$("$@" 2>&1)" || fail "$* ends with status $?: $shown"
  [[ "$shown" == *"$words"* ]] || fail "$*: no '$words' in: $shown"
  echo "ok: $*: $words"
}

# Started as the desktop's file manager would, by what the desktop takes the file for; the title is the proof.
opens() {
  local file="$1" title="$2"
  gio open "$file" >opened.log 2>&1 &
  for _ in $(seq 60); do
    if xwininfo -root -tree 2>/dev/null | grep -qF "$title"; then
      sleep 2  # for the graphs
      import -window root "pictures/$(basename "$file").png"
      echo "ok: $file opens a window '$title'"
      return
    fi
    sleep 0.5
  done
  xwininfo -root -tree >&2
  cat opened.log >&2
  fail "$file opens no window '$title'"
}

# With nothing but what the package depends on, and no display to look at: the window has the survey open.
holds_open() {
  local survey program
  survey="$(realpath "$1")"
  brenlox "$survey" 2>windows.log &
  program=$!
  for _ in $(seq 60); do
    if [ -n "$(find "/proc/$program/fd" -lname "$survey" 2>/dev/null)" ]; then
      sleep 2  # opening rewrites the file first
      [ -n "$(find "/proc/$program/fd" -lname "$survey")" ] || break
      kill "$program"
      wait "$program" || true
      echo "ok: brenlox opens $1"
      return
    fi
    sleep 0.5
  done
  fail "brenlox doesn't open $1: $(cat windows.log)"
}

work() {
  cd ~
  export QT_QPA_PLATFORM=offscreen
  brenlox_make_samples field_files
  brenlox_batch new survey.mdb
  expect "144 files, 576 readings stored" brenlox_batch import survey.mdb field_files --reference 0 \
    --line-columns 2,4 --event-columns 14,1 --rate-columns 17,4 --sectid-as-station
  brenlox_batch recalculate survey.mdb
  local line=(--line 200E --reference 0 --data-type ExHy --dipole 100)
  brenlox_batch zonge survey.mdb "${line[@]}" --output 200E.avg
  [ "$(wc -l <200E.avg)" -gt 100 ] || fail "200E.avg is short"
  brenlox_batch plots survey.mdb --line 200E --output 200E.pdf
  [ "$(head -c 5 200E.pdf)" = %PDF- ] || fail "200E.pdf is no PDF"

  brenlox_batch occam survey.mdb "${line[@]}" --directory run
  expect "RMS" brenlox_batch inversion run --iterations 2
  [ -f run/ITER02.iter ] || fail "no iteration: $(ls run)"
  brenlox_batch section run --iteration 2 --output section.png
  [ "$(stat -c %s section.png)" -gt 5000 ] || fail "nothing to be seen in the section"

  # The datum's name comes out of the database of coordinate systems.
  cat >list.csv <<'LIST'
Name,Datum,projection,hemisphere,Origin_Longitude,Origin_Latitude,Standard_parallel_1,Standard_parallel_2,Description,False_easting,False_northing,Scale_factor,Zone_width,Zone_number,ERM
MGA 55,4283,2,0,0,0,0,0,south,0,0,0,6,55
LIST
  expect "4283 GDA94" brenlox_batch projection survey.mdb --set "MGA 55" --csv list.csv

  holds_open survey.mdb
  for page in brenlox brenlox_batch brenlox_make_samples; do
    [ -f "/usr/share/man/man1/$page.1.gz" ] || fail "no man page of $page"
  done

  mkdir others
  printf 'no survey' >others/text.mdb
  cp others/text.mdb others/before
  if brenlox_batch info others/text.mdb 2>refused.log; then
    fail "a text counts as a survey"
  fi
  grep -q "file is not a database" refused.log || fail "a text is refused with: $(cat refused.log)"
  cmp others/text.mdb others/before
}

# With numpy and without matplotlib and pandas, which the package only recommends.
python() {
  cd ~
  python3 - <<'SCRIPT'
import importlib.metadata
import pathlib

import brenlox

folder = pathlib.Path(brenlox.__file__).parent
assert folder == pathlib.Path("/usr/lib/python3/dist-packages/brenlox"), folder
assert (folder / "py.typed").exists() and (folder / "_brenlox.pyi").exists()
assert (folder / "__pycache__").exists(), "the modules aren't compiled"
assert importlib.metadata.version("brenlox") == brenlox.__version__
with brenlox.open("survey.mdb", read_only=True) as survey:
    curve = survey.curve("200E", 500, "ExHy")
error = 0.05 * curve.resistivity
fit = brenlox.rhoplus(curve.frequency, curve.resistivity, curve.phase, error, 0 * error + 1.5)
assert fit.used_values > 10 and fit.certificate_gap < 0.01 * fit.chi_squared
print("ok: python3: Rho+ of", fit.used_values, "values")
SCRIPT
  for document in copyright changelog.gz changelog.Debian.gz; do
    [ -f "/usr/share/doc/python3-brenlox/$document" ] || fail "python3-brenlox has no $document"
  done
}

# The message box that says why bears the program's name; behind it the main window is there without a survey.
refuses() {
  local file="$1" program
  cp "$file" before
  brenlox "$file" >refused.log 2>&1 &
  program=$!
  for _ in $(seq 60); do
    if xwininfo -root -tree 2>/dev/null | grep -qF '"Brenlox": ('; then
      import -window root "pictures/$(basename "$file").png"
      ! xwininfo -root -tree | grep -qF "BLX DATABASE $(realpath "$file")" || fail "$file counts as a survey"
      kill "$program"
      wait "$program" || true
      cmp "$file" before
      echo "ok: $file is refused"
      return
    fi
    sleep 0.5
  done
  xwininfo -root -tree >&2
  fail "nothing says that $file is no survey: $(cat refused.log)"
}

type_is() {
  [ "$(gio info -a standard::content-type "$1" | sed -n 's/.*content-type: //p')" = "$2" ] ||
    fail "$1 isn't $2 but: $(gio info -a standard::content-type "$1")"
  echo "ok: $1 is $2"
}

desktop() {
  cd ~
  desktop-file-validate /usr/share/applications/brenlox.desktop
  printf '\000\001\000\000Standard Jet DB\000\001' >others/access.mdb
  cp survey.mdb others/unnamed
  type_is survey.mdb application/x-brenlox-survey
  type_is others/access.mdb application/vnd.ms-access
  type_is others/unnamed application/vnd.sqlite3  # an SQLite file is no survey by that alone
  expect brenlox.desktop xdg-mime query default application/x-brenlox-survey
  expect brenlox.desktop xdg-mime query default application/vnd.ms-access
  expect brenlox.desktop xdg-mime query default application/x-magnetotelluric-edi

  Xvfb :7 -screen 0 1400x900x24 >xvfb.log 2>&1 &
  export DISPLAY=:7
  for _ in $(seq 40); do
    ! xwininfo -root >/dev/null 2>&1 || break
    sleep 0.25
  done
  xwininfo -root >/dev/null || fail "no display: $(cat xvfb.log)"
  mkdir -p pictures "a survey"
  cp survey.mdb "a survey/line 200 é.mdb"
  opens "a survey/line 200 é.mdb" "BLX DATABASE $HOME/a survey/line 200 é.mdb"
  refuses others/text.mdb
}

removed() {
  local left
  left="$(find / -xdev -iname '*brenlox*')"
  [ -z "$left" ] || fail "these are left: $left"
  left="$(grep -rl brenlox /usr/share/applications /usr/share/mime /etc || true)"
  [ -z "$left" ] || fail "these still name it: $left"
}

"$1"

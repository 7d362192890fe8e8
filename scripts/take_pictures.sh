#!/usr/bin/env bash
# Takes the pictures of the tutorial and of the recipes for Python again, on the sample surveys of ./run, into
# docs/screenshots.
#
#   scripts/take_pictures.sh [BUILD]     BUILD: build folder of the programs, build/release
#
# Windows show folders and the tree of the disk. They are opened in a root of their own that has the system's folders
# and the survey below /home/surveys, so that no picture shows a folder of the machine that made it.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

if [ "${1:-}" != "--inside" ]; then
  build="${1:-build/release}"
  root="$(mktemp -d)"
  mkdir -p "$root/pictures/tensors" "$root/root"
  trap 'rm -r "$root/pictures"; rmdir "$root/root" "$root"' EXIT  # never through what is mounted
  unshare --map-root-user --mount "$0" --inside "$build" "$root"
  for picture in docs/screenshots/*.png; do
    if [[ "$picture" != */python_* ]]; then
      cp "$root/pictures/$(basename "$picture")" "$picture"
    fi
  done
  for picture in pseudo_section strike tensor_map; do  # there is more to see in whole tensors
    cp "$root/pictures/tensors/$picture.png" "docs/screenshots/$picture.png"
  done
  samples="$root/pictures/samples"
  mkdir "$samples"
  cp -r demo_output/field_files "$samples/"
  cp demo_output/sample.mdb "$samples/survey.mdb"
  cp demo_output/tensor_line.mdb "$samples/tensors.mdb"
  python="$(sed -n 's/^_Python_EXECUTABLE:INTERNAL=//p' "$build/CMakeCache.txt")"
  MPLBACKEND=Agg PYTHONDONTWRITEBYTECODE=1 PYTHONPATH="$build/python" "$python" python/tests/recipes.py "$samples" docs/screenshots
  exit
fi

build="$2"
root="$3/root"
mount -t tmpfs tmpfs "$root"
for folder in bin etc lib lib64 usr; do
  if [ -L "/$folder" ]; then
    cp -P "/$folder" "$root/$folder"
  elif [ -d "/$folder" ]; then
    mkdir "$root/$folder"
    mount --rbind "/$folder" "$root/$folder"
  fi
done
mkdir -p "$root"/{dev,home/surveys/200E,mnt/pictures,opt/brenlox,tmp}
mkdir -m 700 "$root/tmp/runtime"
mount --rbind /dev "$root/dev"
mount --bind "$3/pictures" "$root/mnt/pictures"
cp "$build/screenshots/brenlox_screenshots" "$root/opt/brenlox/"
cp -r demo_output/sample.mdb demo_output/field_files demo_output/run_200E "$root/home/surveys/200E/"
# The size of the screen, or windows are fitted into a small one.
cat >"$root/tmp/screen.json" <<END
{"screens": [{"name": "offscreen", "x": 0, "y": 0, "width": 1280, "height": 800,
  "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]}
END
take() {
  chroot "$root" /usr/bin/env -i PATH=/usr/bin:/bin HOME=/home/surveys XDG_RUNTIME_DIR=/tmp/runtime LANG=C.UTF-8 \
    QT_QPA_PLATFORM=offscreen:configfile=/tmp/screen.json /opt/brenlox/brenlox_screenshots "$@"
}
take /home/surveys/200E/sample.mdb /mnt/pictures
mkdir "$root/home/surveys/100E"
cp demo_output/tensor_line.mdb "$root/home/surveys/100E/"
take /home/surveys/100E/tensor_line.mdb /mnt/pictures/tensors

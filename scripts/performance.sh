#!/usr/bin/env bash
# Runs all benchmarks and prints the table of docs/performance.md, and below it what calls from Python cost where
# the package is built; some minutes. Figures of one line come from one run and can be compared whatever else the
# machine does; times of two lines can not.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

folder=build/release/benchmarks
[ -f build/release/build.ninja ] || cmake --preset release
cmake --build --preset release --target benchmarks/all >/dev/null

export QT_QPA_PLATFORM=offscreen
results="$(mktemp -d)"
trap 'rm -rf "$results"' EXIT
for program in "$folder"/*_benchmark; do
  "$program" --benchmark_min_time=0.3 --benchmark_out="$results/$(basename "$program").json" >/dev/null
done

echo "| program | benchmark | time (ms) | rate | bound (ms) | ratio |"
echo "|---|---|---:|---:|---:|---:|"
jq -r '
  def digits($n): if . == 0 then 0 else
    pow(10; $n - 1 - (log10 | floor)) as $scale | (. * $scale | round) / $scale end;
  def shorter: if . >= 1e6 then "\(. / 1e6 | digits(3)) M" elif . >= 1e3 then "\(. / 1e3 | digits(3)) k"
    else "\(digits(3)) " end;
  def rate: if .items_per_second then "\(.items_per_second | shorter)/s"
    elif .bytes_per_second then "\(.bytes_per_second / 1e6 | digits(3)) MB/s" else "" end;
  (input_filename | split("/")[-1] | rtrimstr("_benchmark.json")) as $program
  | .benchmarks[]
  | (.name | gsub("/manual_time|/iterations:[0-9]+"; "") | gsub("/"; " ")) as $name
  | "| \($program) | \($name) | \(.work_ms | digits(3)) | \(rate) | \(.bound_ms | digits(3)) | " +
    "\(.ratio | digits(2)) |"' "$results"/*.json

package=build/release/python
if compgen -G "$package/brenlox/*.so" >/dev/null; then
  echo
  python="$(sed -n 's/^_Python_EXECUTABLE:INTERNAL=//p' build/release/CMakeCache.txt)" # that the package is built for
  PYTHONPATH="$package" "$python" python/benchmarks/overhead.py
fi

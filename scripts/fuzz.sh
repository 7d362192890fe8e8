#!/usr/bin/env bash
# Runs the fuzz targets, one after the other: scripts/fuzz.sh [SECONDS_EACH [TARGET...]]. New inputs are kept
# under build/fuzz_corpus; what finds a fault is left in build/fuzz_findings, reduced by hand and put into
# fuzz/corpus/TARGET, where ./check replays it. Needs clang with libFuzzer.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

seconds="${1:-60}"
shift || true
targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
  for folder in fuzz/corpus/*/; do targets+=("$(basename "$folder")"); done
fi
[ -f build/fuzz/build.ninja ] || cmake --preset fuzz
cmake --build --preset fuzz --target "${targets[@]}"

mkdir -p build/fuzz_findings
status=0
for target in "${targets[@]}"; do
  mkdir -p "build/fuzz_corpus/$target"
  echo "== $target"
  build/fuzz/fuzz/"$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
    -artifact_prefix="$PWD/build/fuzz_findings/$target-" "$PWD/build/fuzz_corpus/$target" "$PWD/fuzz/corpus/$target" \
    2>build/fuzz_findings/"$target".log || status=1
  grep -E '^stat::number_of_executed_units|ERROR|SUMMARY' build/fuzz_findings/"$target".log || true
done
exit $status

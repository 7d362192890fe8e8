#!/usr/bin/env bash
# Runs clang-tidy: scripts/tidy.sh --changed | --all. Changed is what differs from the branch main of origin, a
# changed header by the source of its name; without an origin there is nothing to compare with and nothing is done.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

jobs="${JOBS:-$(nproc)}"
if [ "${1:-}" = --all ]; then
  mapfile -t sources < <(git ls-files '*.cpp')
else
  if ! base="$(git merge-base HEAD origin/main 2>/dev/null)"; then
    echo "no origin/main to compare with; nothing checked"
    exit 0
  fi
  mapfile -t sources < <(
    git diff --name-only --diff-filter=d "$base" -- '*.cpp' '*.h' | sed 's/\.h$/.cpp/' | sort -u | xargs -r ls 2>/dev/null
  )
fi

# A source can be left out by the configuration (a fuzzer's own main, what needs another option).
cmake --preset tidy >/dev/null
known="$(jq -r '.[].file' build/tidy/compile_commands.json | sed "s|^$PWD/||")"
mapfile -t sources < <(printf '%s\n' "${sources[@]}" | grep -Fxf <(echo "$known") || true)
if [ ${#sources[@]} -eq 0 ]; then
  echo "no source to check"
  exit 0
fi

if grep -qE '"ui_|\.moc"' "${sources[@]}"; then  # headers that are made from the windows' forms
  mapfile -t forms < <(ninja -C build/tidy -t targets all | sed -n 's|^\([a-z_0-9]*_autogen\): phony$|\1|p')
  cmake --build --preset tidy --target "${forms[@]}" >/dev/null
fi
echo "${#sources[@]} sources"
printf '%s\0' "${sources[@]}" | xargs -0 -n 4 -P "$jobs" clang-tidy -p build/tidy --quiet

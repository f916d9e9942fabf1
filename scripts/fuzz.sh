#!/bin/bash
# Feeds the parsers with made-up input and a desk with made-up days, built with sanitizers; sets up
# first what is missing. One line per target; the last line says how it went.
#   fuzz.sh [SECONDS]   each target runs so long, 60 seconds unless told
# Each begins with what is known in tests/fuzz/corpus. What the targets learned stays in
# build/fuzz/corpus and inputs that broke one in build/fuzz/findings: both are tried again first in
# the next run.
set -euo pipefail
here=$(dirname "${BASH_SOURCE[0]}")
source "$here/lib/common.sh"

seconds=${1:-60}
[[ $# -le 1 && $seconds =~ ^[1-9][0-9]*$ ]] || die "usage: fuzz.sh [SECONDS]"

# fuzz NAME: one line about the run; fails when the target found something or never ran.
fuzz() {
  local corpus=build/fuzz/corpus/$1 findings=build/fuzz/findings/$1 log=$logs/fuzz-$1.log
  local known=tests/fuzz/corpus/$1
  local status=0 runs found
  mkdir -p "$corpus" "$findings"
  "build/fuzz/tests/fuzz/$1" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=1024 \
    -artifact_prefix="$findings/" "$corpus" "$findings" \
    $([[ ! -d $known ]] || echo "$known") >"$log" 2>&1 </dev/null || status=$?
  runs=$(sed -nE 's/^Done ([1-9][0-9]*) runs .*/\1/p' "$log")
  if [[ $status -eq 0 && -n $runs ]]; then
    printf '%s: passed with %s inputs\n' "$1" "$runs"
    return
  fi
  found=$(sed -nE 's/.*Test unit written to //p' "$log" | tail -n 1)
  printf '%s: failed%s: %s (all of it: %s)\n' "$1" "${found:+ on $found}" \
    "$(grep -m 1 -E '^broken: |ERROR: |runtime error: ' "$log" || echo "exit code $status")" "$log"
  return 1
}

"$here/setup.sh" >/dev/null
cd "$root"
[[ -e build/fuzz/build.ninja ]] || logged configure-fuzz cmake -S . -B build/fuzz -G Ninja \
  -DCMAKE_CXX_COMPILER=clang++ -DPOSTROVE_FUZZ=ON || exit 1
logged build-fuzz cmake --build build/fuzz --target postrove_fuzz -j "$(nproc)" || exit 1

passed=0 failed=0
for source in tests/fuzz/*_fuzz.cpp; do
  if fuzz "$(basename "$source" .cpp)"; then passed=$((passed + 1)); else failed=$((failed + 1)); fi
done
echo "$passed passed, $failed failed"
[[ $failed -eq 0 && $passed -gt 0 ]]

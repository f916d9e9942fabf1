#!/bin/bash
# Builds everything and runs every test; sets up first what is missing. The last line says how it went.
#   test.sh         static checks, native tests, a short run of the fuzz targets, 64-bit Windows tests, whole filings
#                   of the sample messages
#   test.sh --x86   the Windows tests of the 32-bit build
set -euo pipefail
here=$(dirname "${BASH_SOURCE[0]}")
source "$here/lib/common.sh"
source "$here/lib/chroot32.sh"
source "$here/lib/wine.sh"

POSTROVE_DISPLAY=''
passed=0 failed=0 skipped=0

# count PASSED FAILED SKIPPED
count() {
  passed=$((passed + $1)) failed=$((failed + $2)) skipped=$((skipped + $3))
}

# run_ctest NAME BUILD_FOLDER JOBS: a cross build's tests use one registry, so they run one by one.
run_ctest() {
  local results=$root/build/results/$1 log=$logs/test-$1.log counts status=0
  rm -rf "$results"
  mkdir -p "$results" "$logs"
  GTEST_OUTPUT=xml:$results/ ctest --test-dir "$2" -j "$3" --output-on-failure --timeout 600 \
    --output-junit "$results/ctest.junit" >"$log" 2>&1 </dev/null || status=$?
  read -ra counts < <("$here/lib/count_tests.py" "$results/ctest.junit" "$results") || true
  [[ ${#counts[@]} -eq 3 ]] || counts=(0 1 0)
  [[ $status -eq 0 || ${counts[1]} -gt 0 ]] || counts[1]=1
  [[ ${counts[1]} -eq 0 ]] || show_failure "$1" "$log"
  count "${counts[@]}"
  say "$1: ${counts[0]} passed, ${counts[1]} failed"
}

# run_checks NAME COMMAND...: a program that closes with "N passed, N failed".
run_checks() {
  local name=$1 log=$logs/test-$1.log counts status=0
  shift
  mkdir -p "$logs"
  "$@" >"$log" 2>&1 </dev/null || status=$?
  read -ra counts < <(sed -nE '$s/^([0-9]+) passed, ([0-9]+) failed$/\1 \2 0/p' "$log") || true
  [[ ${#counts[@]} -eq 3 ]] || counts=(0 1 0)
  [[ $status -eq 0 || ${counts[1]} -gt 0 ]] || counts[1]=1
  [[ ${counts[1]} -eq 0 ]] || show_failure "$name" "$log"
  count "${counts[@]}"
  say "$name: ${counts[0]} passed, ${counts[1]} failed"
}

show_failure() {
  say "---- $1"
  grep -Ev '^ *(Start +[0-9]+:|[0-9]+/[0-9]+ Test .* Passed )' "$2" >&2 || true
  say "---- (all of it: $2)"
}

test_x64() {
  run_ctest x64 "$root/build/win64" 1
  run_checks mail "$root/tests/mail/filing_test.py" "$root"
}

test_x86() { run_ctest x86 "$root/build/win32" 1; }

case ${1:-} in
  '')
    "$here/setup.sh" >/dev/null
    "$here/build.sh" >/dev/null
    run_checks static "$here/check.sh"
    run_ctest native "$root/build/native" "$(nproc)"
    run_checks fuzz "$here/fuzz.sh" 3
    with_wine x64 test_x64
    run_checks demo "$root/tests/mail/demo_test.sh"
    ;;
  --x86)
    "$here/setup.sh" --x86 >/dev/null
    "$here/build.sh" --x86 >/dev/null
    with_wine x86 test_x86
    ;;
  *) die "unknown option $1 (usage: test.sh [--x86])" ;;
esac

line="$passed passed, $failed failed"
[[ $skipped -eq 0 ]] || line+=", $skipped skipped"
printf '%s\n' "$line"
[[ $failed -eq 0 && $passed -gt 0 ]]

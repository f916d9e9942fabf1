#!/bin/bash
# The long runs behind the figures of docs/quality.md; the tests run a short form of each. Sets up and
# builds what is missing; some hours.
#   prove.sh          everything
#   prove.sh DAYS     the days at the desk instead of 200,000, which are some eleven million steps
set -euo pipefail
here=$(dirname "${BASH_SOURCE[0]}")
source "$here/lib/common.sh"
source "$here/lib/chroot32.sh"
source "$here/lib/wine.sh"

days=${1:-200000}
[[ $# -le 1 && $days =~ ^[1-9][0-9]*$ ]] || die "usage: prove.sh [DAYS]"
POSTROVE_DISPLAY=''
cd "$root"
"$here/setup.sh" >/dev/null
"$here/build.sh" >/dev/null
results=$root/build/results/prove
rm -rf "$results"
mkdir -p "$results"

"$here/check.sh" --all

say "$days days at the desk, and $((days / 1000)) whose every call and allocation fails once"
POSTROVE_DAYS=$days build/native/tests/unit/any_order_test --gtest_output="xml:$results/days.xml" \
  --gtest_brief=1
sed -nE 's/.*<property name="(steps|runs)" value="([0-9]+)".*/\1: \2/p' "$results/days.xml"

say "each fuzz target for ten minutes, then ten million names and subjects, which stay below their root"
"$here/fuzz.sh" 600
for target in file_name_fuzz subject_fuzz; do
  "build/fuzz/tests/fuzz/$target" -runs=10000000 2>&1 | tail -n 1
done

say "2,000 filings in one process, 100 loads of the add-in"
endurance() {
  POSTROVE_ROUNDS=2000 wine_run x64 wine "$root/build/win64/tests/windows/host/windows_product.exe" \
    '--gtest_filter=Endurance.*' </dev/null
}
with_wine x64 endurance

"$here/bench.sh"

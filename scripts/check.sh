#!/bin/bash
# Checks the sources without running them; sets up and builds first what is missing.
#   check.sh          cppcheck, and whether each header stands by itself for clang
#   check.sh --all    also for gcc, and clang-tidy on the portable part (.clang-tidy), some minutes
# One line per finding; the last line says how it went.
set -euo pipefail
here=$(dirname "${BASH_SOURCE[0]}")
source "$here/lib/common.sh"

all=no
case ${1:-} in
  '') ;;
  --all) all=yes ;;
  *) die "unknown option $1 (usage: check.sh [--all])" ;;
esac
"$here/setup.sh" >/dev/null
[[ -e $root/build/native/compile_commands.json ]] || "$here/build.sh" >/dev/null
cd "$root"
passed=0 failed=0

# check NAME COMMAND...: what it prints are findings.
check() {
  local name=$1 log=$logs/check-$1.log
  shift
  mkdir -p "$logs"
  if "$@" >"$log" 2>&1 && [[ ! -s $log ]]; then
    passed=$((passed + 1))
    say "$name: no finding"
  else
    failed=$((failed + 1))
    say "---- $name"
    cat "$log" >&2
  fi
}

# Left out, because they are told of what is right here: a rethrow in a function that only handlers
# call; references to controls, which the form owns; pointers to what a scope puts in and takes out
# again; a window that its own procedure keeps; an assignment that must come before another; memory
# that is handed over as bytes.
run_cppcheck() {
  cppcheck --std=c++20 --language=c++ --library=windows --enable=warning,performance,portability \
    --inline-suppr --quiet --error-exitcode=1 -j "$(nproc)" -I src -I standin \
    -D'STDMETHODIMP_(type)=type' -D'STDAPI_(type)=type' --suppress=rethrowNoCurrentException \
    --suppress=returnTempReference --suppress=danglingTempReference --suppress=danglingLifetime \
    --suppress=ignoredReturnValue:src/forms/win32/form_window.cpp \
    --suppress=useInitializationList:src/forms/win32/modal_owner.cpp \
    --suppress=memleak:standin/oledb/cell.cpp \
    src standin bench
}

# headers COMPILER...: each header of the portable part as a source of its own.
headers() {
  find src standin/memory tests/support -name '*.h' \
    -not -path '*/win32/*' -not -path 'src/outlook/com/*' -not -path 'src/addin/*' -print0 |
    xargs -0 -P "$(nproc)" -I{} "$@" -std=c++20 -fsyntax-only -Wall -Wextra -Werror \
      -I src -I standin -I tests -isystem /usr/src/googletest/googletest/include -x c++ \
      -include {} /dev/null
}

run_tidy() {
  find src -name '*.cpp' -not -path '*/win32/*' -not -path 'src/outlook/com/*' \
    -not -path 'src/addin/*' -print0 |
    xargs -0 -P "$(nproc)" -n 4 clang-tidy -p build/native --quiet --warnings-as-errors='*' 2>/dev/null
}

check cppcheck run_cppcheck
check headers-clang headers clang++
if [[ $all == yes ]]; then
  check headers-gcc headers g++
  check clang-tidy run_tidy
fi
printf '%s passed, %s failed\n' "$passed" "$failed"
[[ $failed -eq 0 ]]

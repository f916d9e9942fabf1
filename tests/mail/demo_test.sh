#!/bin/bash
# demo_test.sh: the demo's options, exit codes and output. The last line is "N passed, N failed".
set -uo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd -P)
work=$root/build/demo-test
rm -rf "$work"
mkdir -p "$work"
# From a folder with no build beside it.
cd "$work" || exit 1

passed=0 failed=0

# demo STATUS ARGUMENT...: runs the demo; its output is in $work/out and $work/err afterwards.
demo() {
  local want=$1 status=0
  shift
  what="demo.sh $*"
  timeout 120 "$root/scripts/demo.sh" "$@" >out 2>err </dev/null || status=$?
  check "status $status, not $want" [ "$status" -eq "$want" ]
}

# check WORDS COMMAND...: counts whether the command succeeds.
check() {
  local words=$1
  shift
  if "$@"; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    printf '%s: %s\n' "$what" "$words"
    sed 's/^/    /' out err
  fi
}

# prints STREAM PATTERN: one whole line of the output matches.
prints() { check "no line \"$2\" in $1" grep -qxE -- "$2" "$1"; }

# exists NAME: the path printed after "NAME: " is a file.
exists() {
  local path
  path=$(sed -n "s/^$1: //p" out)
  check "\"$1: $path\" is no file" [ -f "$path" ]
}

refused() {
  local message=$1
  shift
  demo 1 "$@"
  check "one line of explanation" grep -qF -- "$message" err
  check "output" [ ! -s out ]
}

refused 'unknown option --wrong' --wrong
refused '--outlook is 9, 10' --outlook 8
refused '--outlook is 9, 10' --outlook 13
refused '--editor is text' --editor rich
refused '--answer is TITLE=BUTTON' --answer Yes
refused '--name needs a value' --name
refused 'cannot read the message' missing.eml
refused 'one message at a time' a.eml b.eml
printf 'Only words.\n' >words.eml
refused 'is not a mail message' words.eml

demo 0 --help
prints out '  --interactive .*'

demo 0
prints out 'Message: Folder Not Found \| .*Corr_Out.*'
exists Filed
demo 0
exists Filed

# A name with letters of a national alphabet, in a folder that has to be made.
demo 0 --name 'Übergabe Pläne' --folder 'C:\Projects\Büro 7' --outlook 9
prints out 'Filed: .*/drive_c/Projects/Büro 7/Übergabe Pläne\(att\)\.msg'
exists Filed

# A project that the database does not know is asked about; the answer unless told is No.
demo 0 --project 'Halle: 99' --name Plan --folder 'C:\Projects\7' \
  --answer 'Folder Not Found=OK:C:\Projects\8'
prints out 'Message: Project Not Found \| Project name "Halle" was not found in the Database \. .*'
prints out 'Filed: .*/drive_c/Projects/8/Plan\(att\)\.msg'
exists Filed

demo 1 --answer 'Folder Not Found=Maybe' --answer 'Never Asked=OK'
prints out 'Fault: "Folder Not Found" has no button Maybe'
prints out 'Unused: never asked=OK'

demo 0 --new --editor html --screenshots pictures
exists Filed
exists Sent
check "pictures" compgen -G 'pictures/*.png' >/dev/null

# Without a name saving is refused, and the refusal ends the run.
demo 2 --name ''
prints out 'Message: Cannot Save \| .*'
check "a filed message" [ "$(grep -c '^Filed' out)" -eq 0 ]

echo "$passed passed, $failed failed"
[[ $failed -eq 0 ]]

# Common to all scripts: where things are, and how they talk. Sourced, never run.
# shellcheck shell=bash

# shellcheck disable=SC2034  # used by the scripts that source this file
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd -P)
logs=$root/build/logs

say() { printf '%s\n' "$*" >&2; }

die() {
  printf '%s: %s\n' "$(basename "$0")" "$*" >&2
  exit 1
}

# as_root COMMAND...: runs it with the rights to install and to mount.
as_root() {
  if [[ $EUID -eq 0 ]]; then
    "$@"
  elif command -v sudo >/dev/null; then
    sudo "$@"
  else
    die "needs root or sudo to run: $1"
  fi
}

# logged NAME COMMAND...: runs the command silently; its output is shown when it fails.
logged() {
  local name=$1 log=$logs/$1.log
  shift
  mkdir -p "$logs"
  "$@" >"$log" 2>&1 </dev/null && return
  cat "$log" >&2
  say "$(basename "$0"): $name failed (the output above is in $log)"
  return 1
}

# missing_packages DPKG_QUERY... -- PACKAGE...: prints those that are not installed.
missing_packages() {
  local -a query=()
  while [[ $1 != -- ]]; do
    query+=("$1")
    shift
  done
  shift
  local installed
  # The query fails for packages it has never heard of.
  installed=$({ "${query[@]}" -W -f='${Package} ${db:Status-Status}\n' "$@" 2>/dev/null || true; } |
    sed -n 's/ installed$//p')
  local package
  for package in "$@"; do
    grep -qxF -- "$package" <<<"$installed" || printf '%s\n' "$package"
  done
}

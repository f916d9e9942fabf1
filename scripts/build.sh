#!/bin/bash
# Builds everything and leaves the add-in in dist/, with the data files and the stand-ins beside it.
#   build.sh         native and 64-bit: dist/x64
#   build.sh --x86   32-bit: dist/x86
#   build.sh --all   all of it
set -euo pipefail
here=$(dirname "${BASH_SOURCE[0]}")
source "$here/lib/common.sh"

presets=(native win64)
case ${1:-} in
  '') ;;
  --x86) presets=(win32) ;;
  --all) presets=(native win64 win32) ;;
  *) die "unknown option $1 (usage: build.sh [--x86|--all])" ;;
esac

# put FILE... FOLDER: copies what differs, so that nothing seems new that is not.
put() {
  local folder=${*: -1} file
  mkdir -p "$folder"
  for file in "${@:1:$#-1}"; do
    cmp -s "$file" "$folder/$(basename "$file")" || cp -p "$file" "$folder/"
  done
}

# distribute PRESET WIDTH
distribute() {
  local product stand_ins data
  product=$(find "$root/build/$1/src" -name Postrove09.dll)
  [[ -n $product ]] || die "the $1 build left no Postrove09.dll"
  mapfile -t stand_ins < <(find "$root/build/$1/standin" -name deskhost.exe -o -name standin_oledb.dll)
  mapfile -t data < <(find "$root/resources" -maxdepth 1 -name '*.cnt')
  put "$product" "${stand_ins[@]}" "${data[@]}" "$root/dist/$2"
  echo "dist/$2/Postrove09.dll"
}

cd "$root"
compilers=$(cat cmake/mingw-*.cmake | cksum)
for preset in "${presets[@]}"; do
  # A configured build looks after itself when a CMake file changes, but keeps the compiler it began with.
  if [[ ! -e build/$preset/build.ninja || $(cat "build/$preset/.compilers" 2>/dev/null) != "$compilers" ]]; then
    logged "configure-$preset" cmake --fresh --preset "$preset" || exit 1
    printf '%s\n' "$compilers" >"build/$preset/.compilers"
  fi
  logged "build-$preset" cmake --build --preset "$preset" -j "$(nproc)" || exit 1
  case $preset in
    win64) distribute win64 x64 ;;
    win32) distribute win32 x86 ;;
  esac
done
echo "Build complete."

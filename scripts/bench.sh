#!/bin/bash
# Measures the product beside the least that the same work can take, in the private Wine prefix: start,
# a mail window, a click, a key, filing, the project list at 100 to 1,000,000 projects, settings, memory
# and the DLL itself. Each line ends with the ratio of the two figures and the one aimed at. Sets up and
# builds what is missing.
set -euo pipefail
here=$(dirname "${BASH_SOURCE[0]}")
source "$here/lib/common.sh"
source "$here/lib/chroot32.sh"
source "$here/lib/wine.sh"

[[ $# -eq 0 ]] || die "unknown option $1 (usage: bench.sh)"
POSTROVE_DISPLAY=''
"$here/setup.sh" >/dev/null
"$here/build.sh" >/dev/null
product=$root/build/win64/src/addin/Postrove09.dll
logged build-bench cmake --build "$root/build/win64" --target product_bench || exit 1

# projects COUNT: a folder with a database of that many, half of them with a folder of their own.
projects() {
  local folder=$root/build/bench/$1
  mkdir -p "$folder"
  sample_database "$folder/Postrove.mdb"
  sqlite3 -bail "$folder/Postrove.mdb" <<SQL || die "the database of $1 projects could not be filled"
DELETE FROM Project;
WITH RECURSIVE N(I) AS (SELECT 1 UNION ALL SELECT I + 1 FROM N WHERE I < $1)
INSERT INTO Project ([Project Number], [Project Name], ProjFilePath, Active)
SELECT printf('24-%06d', I), 'Harbour Bridge, Section ' || I,
       CASE I % 2 WHEN 0 THEN '' ELSE printf('C:\Projects\24-%06d\', I) END, True
FROM N;
SQL
  windows_path "$folder"
}

folders=()
for count in 100 1000 10000 100000 1000000; do folders+=("$(projects "$count")"); done

wine_lock x64
wine_prepare x64
office_data x64
trap 'wine_stop x64; display_stop' EXIT
display_start
wine_start x64
wine_frames x64 N
wine_register x64 standin_oledb.dll
empty=$root/build/bench/empty
rm -rf "$empty"
mkdir -p "$empty"
wine_run x64 wine "$root/build/win64/bench/product_bench.exe" "$(windows_path "$product")" \
  "$(windows_path "$root/build/win64/bench/libbare_add_in.dll")" "$(windows_path "$empty")" \
  "${folders[@]}" </dev/null

printf '\nThe DLL\n'
for width in win64 win32; do
  dll=$root/build/$width/src/addin/Postrove09.dll
  [[ -f $dll ]] || continue
  printf '%-40s %21d\n' "bytes, $width" "$(stat -c %s "$dll")" \
    "imports, $width" "$(x86_64-w64-mingw32-objdump -p "$dll" | grep -cE '^\s+[0-9a-f]+\s+[0-9]+\s+[A-Z_a-z]')"
done

# Private Wine prefixes, one per width (x64, x86), below build/wine. Sourced after common.sh and
# chroot32.sh. POSTROVE_WINEPREFIX names another prefix.
#
# A prefix draws on an X display when the first program of a session finds DISPLAY and nowhere
# otherwise, so sessions are started and ended here; DISPLAY itself is never taken from the caller but
# from POSTROVE_DISPLAY.
# shellcheck shell=bash disable=SC2154

wine_prefix() { printf '%s\n' "${POSTROVE_WINEPREFIX:-$root/build/wine/$1}"; }

# wine_run WIDTH wine|wineserver ARGUMENT...
wine_run() {
  local width=$1 program=/usr/lib/wine/$2 enter=() home=$root/build/wine/home settings
  shift 2
  case $width$program in
    x64*/wine) program=/usr/lib/wine/wine64 ;;
    x86*) enter=(chroot32_run) ;;
  esac
  mkdir -p "$home"
  settings=(-u DISPLAY -u WINELOADER -u WINESERVER WINEPREFIX="$(wine_prefix "$width")" HOME="$home"
    LC_ALL=C.UTF-8 TZ=UTC WINEDEBUG=-all 'WINEDLLOVERRIDES=mscoree,mshtml=;winemenubuilder.exe=d')
  [[ -z ${POSTROVE_DISPLAY:-} ]] || settings+=(DISPLAY="$POSTROVE_DISPLAY")
  # GoogleTest does not take a path that begins with a slash for a whole one on Windows.
  [[ ${GTEST_OUTPUT:-} != xml:/* ]] || settings+=(GTEST_OUTPUT="xml:$(windows_path "${GTEST_OUTPUT#xml:}")")
  # The lock (file 9) is the script's alone: Wine's background processes outlive a run.
  "${enter[@]}" env "${settings[@]}" "$program" "$@" 9>&-
}

# wine_lock WIDTH: one script at a time uses a prefix.
wine_lock() {
  mkdir -p "$root/build/wine"
  exec 9>"$root/build/wine/$1.lock"
  flock -n 9 && return
  say "Waiting for another script that uses the $1 Wine prefix ..."
  flock 9
}

# wine_unlock: lets others have the prefix.
wine_unlock() { exec 9>&-; }

# wine_start WIDTH: the server stays until wine_stop, which makes the later starts of programs quick.
# Nothing of it holds on to the caller's output.
wine_start() {
  (wine_run "$1" wineserver -p; wine_run "$1" wine wineboot) >/dev/null 2>&1 </dev/null
}

wine_stop() { wine_run "$1" wineserver -k >/dev/null 2>&1 || true; }

# display_start [SIZE]: a virtual display for the session that is started next, until display_stop.
display_start() {
  local number
  # The server takes a free number and tells it on the pipe once it can be used.
  exec 8< <(exec Xvfb -displayfd 1 -screen 0 "${1:-1280x1024}x24" -nolisten tcp 2>/dev/null 9>&-)
  display_server=$!
  read -r number <&8 || die "the virtual display did not start"
  POSTROVE_DISPLAY=:$number
}

display_stop() { [[ -z ${display_server:-} ]] || kill "$display_server" || true; }

# wine_frames WIDTH Y|N: whether the display's window manager frames the windows, or Wine itself.
wine_frames() {
  wine_run "$1" wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d "$2" /f >/dev/null
}

# wine_prepare WIDTH: makes the prefix unless it is there as the files beside prefix.reg want it.
wine_prepare() {
  local width=$1 prefix marker wanted
  prefix=$(wine_prefix "$width")
  marker=$prefix/.postrove-ready
  wanted=$(cat "$root"/standin/prefix/* | cksum)
  [[ ! -e $marker || $(<"$marker") != "$wanted" ]] || return 0
  say "Making the private $width Wine prefix (once, some ten seconds) ..."
  [[ ! -e $prefix ]] || { wine_stop "$width" && rm -rf "$prefix"; }
  mkdir -p "$prefix"
  logged "prefix-$width" wine_fill "$width" "$prefix" || exit 1
  printf '%s' "$wanted" >"$marker"
}

wine_fill() {
  local width=$1 prefix=$2 tools=$root/build/win64
  [[ $width == x64 ]] || tools=$root/build/win32
  wine_run "$width" wine wineboot -i || return
  wine_run "$width" wine regedit /S "$root/standin/prefix/prefix.reg" || return
  wine_run "$width" wine "$tools/standin/prefix/link_classes.exe" || return
  # Debian's Wine does not find its own fonts.
  cp /usr/share/wine/fonts/*.ttf /usr/share/fonts/truetype/open-sans/OpenSans-{Regular,Bold,Italic}.ttf \
    /usr/share/fonts/truetype/liberation/Liberation{Mono,Sans,Serif}-*.ttf "$prefix/drive_c/windows/Fonts/" || return
  wine_run "$width" wineserver -k
  # The server writes the registry when it ends.
  wine_run "$width" wineserver -w
}

# wine_register WIDTH FILE...: registers servers that build.sh left in dist.
wine_register() {
  local width=$1 file
  shift
  for file in "$@"; do
    wine_run "$width" wine regsvr32 /s "$(windows_path "$root/dist/$width/$file")" </dev/null ||
      die "$file could not be registered"
  done
}

# sample_database FILE: a fresh one, as SQLite, which the stand-in provider opens as an Access file.
sample_database() {
  rm -f "$1"
  sqlite3 -bail "$1" <"$root/resources/sample/Postrove.sql" || die "$1 could not be made"
}

# office_data WIDTH: the add-in's data folder of the prefix as a new office has it: the shipped files and
# a sample database, no settings file, no Quillion (which a test that was ended may have left).
office_data() {
  local folder drive
  drive=$(wine_prefix "$1")/drive_c
  folder=$drive/ProgramData/Postrove
  rm -rf "$drive/ProgramData/Quillion" "$drive/Program Files/Quillion"
  mkdir -p "$folder"
  rm -f "$folder/Postrove.ini"
  cp "$root"/resources/*.cnt "$folder"
  sample_database "$folder/Postrove.mdb"
}

# unix_path WIDTH 'C:\FOLDER\FILE': the path on this machine's file system.
unix_path() {
  local drive=${2:0:1} rest=${2:2}
  printf '%s%s\n' "$(realpath -m "$(wine_prefix "$1")/dosdevices/${drive,,}:" | sed 's:^/$::')" \
    "${rest//\\//}"
}

# windows_path /FOLDER/FILE: the path that Windows programs use for it.
windows_path() { printf 'Z:%s\n' "${1//\//\\}"; }

# with_wine WIDTH COMMAND...: runs it in the session of a prefix as a new office has it, with the stand-in
# provider.
with_wine() {
  local width=$1
  shift
  wine_lock "$width"
  wine_prepare "$width"
  office_data "$width"
  trap 'wine_stop '"$width" EXIT
  wine_start "$width"
  wine_register "$width" standin_oledb.dll
  "$@"
  wine_stop "$width"
  trap - EXIT
  wine_unlock
}

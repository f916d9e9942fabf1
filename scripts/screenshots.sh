#!/bin/bash
set -euo pipefail
here=$(dirname "${BASH_SOURCE[0]}")
source "$here/lib/common.sh"
source "$here/lib/chroot32.sh"
source "$here/lib/wine.sh"

word=Project labels=$root/resources/Postrove.cnt
while [[ $# -gt 1 ]]; do
  case $1 in
    --word) word=$2 ;;
    --labels) labels=$(realpath -- "$2") ;;
    *) break ;;
  esac
  shift 2
done
if [[ $# -ne 1 || $1 == -* ]]; then
  cat <<'HELP'
screenshots.sh [--word WORD] [--labels FILE] FOLDER: leaves a picture of every dialog in every state
there, as PNG files: at 100, 150 and 200 %, and in high contrast. WORD stands for a project in labels;
FILE is another label file than the shipped one. Sets up and builds what is missing.
HELP
  [[ ${1:-} == --help ]] && exit 0
  exit 2
fi
[[ -r $labels ]] || die "cannot read $labels"
mkdir -p -- "$1"
folder=$(realpath -- "$1")

"$here/setup.sh" >/dev/null
"$here/build.sh" >/dev/null

wine_lock x64
wine_prepare x64
POSTROVE_DISPLAY=''
# Scale and colours are the prefix's for this run only.
registry=$(wine_prefix x64)/user.reg
wine_stop x64
wine_run x64 wineserver -w
cp "$registry" "$root/build/user.reg"
put_back() {
  wine_stop x64
  wine_run x64 wineserver -w
  cp "$root/build/user.reg" "$registry"
  display_stop
}
trap put_back EXIT
display_start 2560x1600
work=$root/build/screenshots

# set_dpi DPI: a session of Wine keeps the scale that it began with.
set_dpi() {
  wine_run x64 wine reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d "$1" /f >/dev/null
  wine_run x64 wineserver -k
  wine_run x64 wineserver -w
  wine_start x64
}

# pictures SUFFIX
pictures() {
  local suffix=$1 picture
  rm -rf "$work"
  mkdir -p "$work"
  wine_run x64 wine "$root/build/win64/scripts/pictures/show_form.exe" all \
    "$(windows_path "$labels")" "$word" "$(windows_path "$work")" </dev/null
  for picture in "$work"/*.bmp; do
    convert "$picture" "$folder/$(basename "${picture%.bmp}")-$suffix.png"
  done
}

wine_start x64
for percent in 100 150 200; do
  set_dpi $((96 * percent / 100))
  pictures "$percent"
done

# White on black, as Windows' own scheme, which has no theme.
wine_run x64 wine reg add 'HKCU\Software\Microsoft\Windows\CurrentVersion\ThemeManager' \
  /v ThemeActive /d 0 /f >/dev/null
while read -r name color; do
  wine_run x64 wine reg add 'HKCU\Control Panel\Colors' /v "$name" /d "$color" /f >/dev/null
done <<'COLORS'
Window 0 0 0
WindowText 255 255 255
ButtonFace 0 0 0
ButtonText 255 255 255
ButtonHilight 192 192 192
ButtonLight 255 255 255
ButtonShadow 128 128 128
ButtonDkShadow 255 255 255
GrayText 63 242 63
Hilight 26 235 255
HilightText 0 0 0
InfoWindow 0 0 0
InfoText 255 255 0
ActiveTitle 0 0 0
TitleText 255 255 255
HotTrackingColor 255 255 0
COLORS
set_dpi 96
pictures contrast

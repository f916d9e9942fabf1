#!/bin/bash
set -euo pipefail
here=$(dirname "${BASH_SOURCE[0]}")
source "$here/lib/common.sh"
source "$here/lib/chroot32.sh"
source "$here/lib/wine.sh"

usage() {
  cat <<'HELP'
demo.sh [OPTION]... [FILE.eml]: opens a message in a stand-in for Outlook, presses the add-in's button
and files the message. Sets up and builds what is missing.

  --new               a new message, which is filed and sent
  --project TEXT      the project to pick or to type; without it "Harbour Bridge: 2231". About one that
                      the database does not know the add-in asks, and the answer is No unless told
  --folder PATH       the folder to type: of this machine, or of the private Windows ("C:\...")
  --name TEXT         the file name to type
  --editor text|html|rtf|word
                      the kind of message or its editor
  --outlook 9..16     the version to behave like (there was no 13); 11 unless told
  --answer TITLE=BUTTON
                      the button to press in each message box of that title; may be repeated.
                      BUTTON:NAME types a name first, where a dialog has one to edit
  --screenshots DIR   leaves a picture of every dialog there, as PNG files
  --interactive       shows the windows on your display and leaves the work to you
  --help              this text

Without FILE.eml a bundled message is used. Each run begins with an empty C:\Projects.
Prints each message box as "Message: TITLE | TEXT", then "Filed: PATH" and, for a new message,
"Sent: PATH". Ends with 0 when the message was filed (and sent), 2 when you or a refusal stopped it,
1 on any fault.
HELP
}

# need OPTION VALUE...: the value may be empty, but has to be there.
need() { [[ $# -gt 1 ]] || die "$1 needs a value (see --help)"; }

POSTROVE_DISPLAY=''
new=no interactive=no project='Harbour Bridge: 2231' screenshots='' eml='' options=()
while [[ $# -gt 0 ]]; do
  case $1 in
    --help) usage; exit 0 ;;
    --new) new=yes; options+=(--new) ;;
    --interactive) interactive=yes; options+=(--interactive) ;;
    --project) need "$@"; project=$2; shift ;;
    --folder)
      need "$@"
      folder=$2
      [[ $folder != /* ]] || folder=$(windows_path "$folder")
      options+=(--folder "$folder")
      shift
      ;;
    --name) need "$@"; options+=(--name "$2"); shift ;;
    --editor)
      need "$@"
      [[ $2 =~ ^(text|html|rtf|word)$ ]] || die "--editor is text, html, rtf or word, not $2"
      options+=(--editor "$2")
      shift
      ;;
    --outlook)
      need "$@"
      [[ $2 =~ ^(9|1[0-24-6])$ ]] || die "--outlook is 9, 10, 11, 12, 14, 15 or 16, not $2"
      options+=(--outlook "$2")
      shift
      ;;
    --answer)
      need "$@"
      [[ $2 == ?*=?* ]] || die "--answer is TITLE=BUTTON, not $2"
      options+=(--answer "$2")
      shift
      ;;
    --screenshots)
      need "$@"
      [[ -n $2 ]] || die "--screenshots needs a folder"
      screenshots=$(realpath -m -- "$2")
      shift
      ;;
    -*) die "unknown option $1 (see --help)" ;;
    *) [[ -z $eml ]] || die "one message at a time: $eml or $1"; eml=$1 ;;
  esac
  shift
done
[[ $interactive == no ]] || [[ -n ${DISPLAY:-} ]] || die "--interactive needs a display (DISPLAY)"
[[ $interactive == no || -z $screenshots ]] || die "--interactive and --screenshots exclude each other"
if [[ -z $eml ]]; then
  eml=$root/resources/mail/received.eml
  [[ $new == no ]] || eml=$root/resources/mail/new.eml
fi
[[ -f $eml && -r $eml ]] || die "cannot read the message $eml"
[[ -z $screenshots ]] || mkdir -p -- "$screenshots" || exit 1

"$here/setup.sh" >/dev/null
"$here/build.sh" >/dev/null

wine_lock x64
wine_prepare x64
work=$root/build/demo
drive=$(wine_prefix x64)/drive_c
rm -rf "$work" "$drive/Projects" "$drive/Sent"
mkdir -p "$work/pictures" "$drive/Projects" "$drive/Sent"
office_data x64
printf '[Setup]\r\nRoot=C:\\Projects\\\r\n' >"$drive/ProgramData/Postrove/Postrove.ini"
"$root/standin/mail/eml2folder.py" "$eml" "$work/message" || exit 1

trap 'wine_stop x64; display_stop' EXIT

if [[ $interactive == yes ]]; then
  export XAUTHORITY=${XAUTHORITY:-$HOME/.Xauthority}
  POSTROVE_DISPLAY=$DISPLAY
elif [[ -n $screenshots ]]; then
  display_start
  options+=(--screenshots "$(windows_path "$work/pictures")")
fi
wine_start x64
# A person's window manager frames the windows; on the virtual display Wine does it itself.
frames=N
[[ $interactive == no ]] || frames=Y
[[ -z $POSTROVE_DISPLAY ]] || wine_frames x64 "$frames"

wine_register x64 standin_oledb.dll Postrove09.dll

# windows_lines: what deskhost prints, with paths of this machine.
windows_lines() {
  local line
  while IFS= read -r line; do
    line=${line%$'\r'}
    case $line in
      'Filed: '?:*) printf 'Filed: %s\n' "$(unix_path x64 "${line#Filed: }")" ;;
      'Sent: '?:*) printf 'Sent: %s\n' "$(unix_path x64 "${line#Sent: }")" ;;
      *) printf '%s\n' "$line" ;;
    esac
  done
}

status=0
wine_run x64 wine "$root/dist/x64/deskhost.exe" --project "$project" "${options[@]}" \
  --sent-folder 'C:\Sent' "$(windows_path "$work/message")" </dev/null | windows_lines || status=$?

if [[ -n $screenshots ]]; then
  for picture in "$work"/pictures/*.bmp; do
    [[ -e $picture ]] || continue
    convert "$picture" "$screenshots/$(basename "${picture%.bmp}").png"
  done
fi
[[ $status -eq 0 || $status -eq 2 ]] || exit 1
exit "$status"

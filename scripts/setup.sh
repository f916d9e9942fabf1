#!/bin/bash
# Installs what building and testing need and this Debian machine lacks.
#   setup.sh         for the native and the 64-bit build
#   setup.sh --x86   also makes the 32-bit Debian that the tests of the 32-bit build run in
set -euo pipefail
here=$(dirname "${BASH_SOURCE[0]}")
source "$here/lib/common.sh"
source "$here/lib/chroot32.sh"

x86=no
for argument in "$@"; do
  case $argument in
    --x86) x86=yes ;;
    *) die "unknown option $argument (usage: setup.sh [--x86])" ;;
  esac
done

packages=(
  cmake ninja-build g++                 # the build, and the native compiler
  g++-mingw-w64-x86-64-win32            # the 64-bit Windows compiler, without winpthread
  g++-mingw-w64-i686-win32              # the 32-bit one
  binutils-mingw-w64-x86-64             # windres and objdump for Windows programs
  binutils-mingw-w64-i686
  mingw-w64-tools                       # widl, the type library compiler
  libwine                               # the standard type library that ours refers to
  googletest                            # GoogleTest, as source for all three compilers
  clang libclang-rt-dev                 # the compiler of the fuzz targets, with its libFuzzer
  wine64                                # runs the 64-bit Windows programs
  unixodbc libsqliteodbc sqlite3        # the database behind the stand-in OLE DB provider
  fonts-wine fonts-open-sans fonts-liberation # the fonts of its dialogs
  clang-tidy cppcheck                   # the static checks
  xvfb xauth                            # a display for screenshots
  imagemagick                           # their conversion to PNG
  python3 python3-olefile               # unpacks mail, reads filed messages, counts tests
  libemail-outlook-message-perl         # msgconvert, a second reader of filed messages
  libemail-address-perl                 # which it needs and does not ask for
  util-linux                            # flock and unshare
)
[[ $x86 == no ]] || packages+=(debootstrap)   # makes the 32-bit Debian

install_packages() {
  as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "$@"
}

# The package lists of a fresh machine are missing or old.
install_missing() {
  compgen -G '/var/lib/apt/lists/*Packages*' >/dev/null && install_packages "$@" && return
  as_root apt-get update && install_packages "$@"
}

command -v dpkg-query >/dev/null || die "this is for Debian: there is no dpkg here"
mapfile -t missing < <(missing_packages dpkg-query -- "${packages[@]}")
if [[ ${#missing[@]} -gt 0 ]]; then
  say "Installing ${missing[*]} ..."
  logged setup install_missing "${missing[@]}" || exit 1
fi
if [[ $x86 == yes ]]; then
  chroot32_make
  chroot32_check
fi
echo "Setup complete."

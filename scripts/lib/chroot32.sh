# The 32-bit Debian that the 32-bit Wine runs in: Wine for one width only is all that Debian's 64-bit
# packages offer. Sourced after common.sh.
# shellcheck shell=bash disable=SC2154

chroot32=${XDG_CACHE_HOME:-$HOME/.cache}/postrove/i386
chroot32_packages=(wine32 libwine unixodbc libsqliteodbc)

# Ready is one that had all of today's packages.
chroot32_ready() { [[ $(cat "$chroot32/.postrove-ready" 2>/dev/null) == "${chroot32_packages[*]}" ]]; }
chroot32_mark() { as_root tee "$1/.postrove-ready" <<<"${chroot32_packages[*]}" >/dev/null; }

# Makes it unless it is there. An older one, or one made by hand, is given the packages it lacks.
chroot32_make() {
  chroot32_ready && return
  mkdir -p "$(dirname "$chroot32")"
  if [[ -x $chroot32/usr/bin/dpkg-query ]]; then
    local missing
    mapfile -t missing < <(
      missing_packages as_root chroot "$chroot32" dpkg-query -- "${chroot32_packages[@]}")
    if [[ ${#missing[@]} -gt 0 ]]; then
      say "Installing ${missing[*]} in $chroot32 ..."
      chroot32_work chroot32_install "$chroot32" "${missing[@]}" || exit 1
    fi
    chroot32_mark "$chroot32"
    return
  fi
  local fresh=$chroot32.new old
  for old in "$chroot32" "$fresh"; do
    grep -qF " $old/" /proc/mounts && die "something is mounted below $old: unmount it first"
    as_root rm -rf --one-file-system "$old"
  done
  say "Making a 32-bit Debian for Wine in $chroot32 (once, about a minute) ..."
  chroot32_work chroot32_fill "$fresh" "$(chroot32_mirror)" "${chroot32_packages[@]}" || exit 1
  chroot32_mark "$fresh"
  as_root mv "$fresh" "$chroot32"
}

# The mirror that this machine's own packages come from; nothing when apt does not tell.
chroot32_mirror() {
  apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' 'Codename: bookworm' |
    sort -u | head -n 1
}

# chroot32_work FUNCTION ARGUMENT...: one of those below, as root and by this machine's way to packages.
chroot32_work() {
  logged chroot32 as_root bash -c "$(declare -f chroot32_fill chroot32_install)
    set -e
    eval \"\$(apt-config shell proxy Acquire::http::Proxy)\"
    [[ -z \${proxy:-} ]] || export http_proxy=\$proxy
    \"\$@\"" bash "$@"
}

chroot32_fill() {
  local folder=$1 mirror=$2
  shift 2
  debootstrap --arch=i386 --variant=minbase bookworm "$folder" ${mirror:+"$mirror"}
  chroot32_install "$folder" "$@"
}

chroot32_install() {
  local folder=$1
  shift
  export DEBIAN_FRONTEND=noninteractive
  cp /etc/resolv.conf "$folder/etc/resolv.conf" || true
  chroot "$folder" apt-get update
  chroot "$folder" apt-get install -y --no-install-recommends "$@"
  chroot "$folder" apt-get clean
}

# chroot32_run PROGRAM ARGUMENT...: as the present user, in the present folder, with this source tree
# and /tmp at their usual places. The mounts live in a namespace of their own, so that none is left.
chroot32_run() {
  as_root unshare --mount --propagation private bash -c "$(declare -f chroot32_enter)
    chroot32_enter \"\$@\"" bash "$chroot32" "$root" "$PWD" "$(id -u):$(id -g)" "$@"
}

chroot32_enter() {
  set -e
  local inside=$1 tree=$2 folder=$3 user=$4
  shift 4
  mount --rbind /dev "$inside/dev"
  mount -t proc proc "$inside/proc"
  mount --bind /tmp "$inside/tmp"
  mkdir -p "$inside$tree"
  mount --bind "$tree" "$inside$tree"
  exec chroot --userspec="$user" "$inside" /usr/bin/env -C "$folder" "$@"
}

chroot32_check() {
  chroot32_run true 2>/dev/null ||
    die "the 32-bit Wine needs the right to mount and to change the root folder: run this as root, or in a container with CAP_SYS_ADMIN"
}

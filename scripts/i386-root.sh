#!/usr/bin/env bash
# Makes, once per machine, the i386 Debian root in which the 32-bit Wine runs
# the shipped veldor.exe (this machine's own Wine runs 64-bit programs only),
# or reuses it when it is whole. scripts/wine32.sh runs its programs.
#
# The root lives at $VELDOR_I386_ROOT (default /var/lib/veldor/i386-root).
# It is whole when its stamp names the packages below: the stamp is written
# only after all of them are in. A root without it is finished when its base
# system is complete, and otherwise removed and made again. No mount of the
# machine is ever left under the root: the mounts that apt needs live in a
# private mount namespace that ends with it.
set -euo pipefail

ROOT="${VELDOR_I386_ROOT:-/var/lib/veldor/i386-root}"
STAMP="$ROOT/.veldor-root-complete"
# Wine, and the fonts that the machine's own 64-bit prefix sees, so that both
# builds are drawn with the same fonts (scripts/install-deps.sh has them too).
PACKAGES="wine wine32 fonts-wine fonts-dejavu-core fonts-dejavu-extra fonts-urw-base35"

[ "$(id -u)" -eq 0 ] || { echo "i386-root: must run as root (debootstrap, chroot, mount)" >&2; exit 1; }
mkdir -p "$(dirname "$ROOT")"
exec 9>"$ROOT.lock"
flock 9

if [ -f "$STAMP" ] && [ "$(cat "$STAMP")" = "$PACKAGES" ]; then
  echo "i386-root: $ROOT is whole, reused"
  exit 0
fi

# The mounts of the machine's namespace that lie under the root (a root made
# by hand may have some): unmounted before anything there is deleted.
mounts_under_root() { findmnt -rn -o TARGET | awk -v r="$ROOT" '$0 == r || index($0, r "/") == 1'; }
remove_root() {
  local m
  for m in $(mounts_under_root | sort -r); do umount -R "$m" 2>/dev/null || umount -l "$m"; done
  if [ -n "$(mounts_under_root)" ]; then
    echo "i386-root: still mounted under $ROOT, not removed: $(mounts_under_root | tr '\n' ' ')" >&2
    exit 1
  fi
  rm -rf --one-file-system "$ROOT"
}

# The Debian mirror that the machine's own apt sources name.
mirror() {
  local url
  url="$(cat /etc/apt/sources.list.d/*.sources 2>/dev/null | awk '$1 == "URIs:" { print $2; exit }')"
  [ -n "$url" ] || url="$(awk '$1 == "deb" && $2 !~ /^\[/ { print $2; exit }' /etc/apt/sources.list 2>/dev/null)"
  echo "${url:-http://deb.debian.org/debian}"
}

# debootstrap deletes $ROOT/debootstrap as its last step.
if [ ! -x "$ROOT/usr/bin/apt-get" ] || [ -e "$ROOT/debootstrap" ]; then
  [ ! -e "$ROOT" ] || { echo "i386-root: $ROOT is half-made: removed"; remove_root; }
  echo "i386-root: debootstrap of an i386 bookworm into $ROOT from $(mirror) (3-4 min)"
  debootstrap --arch=i386 --variant=minbase bookworm "$ROOT" "$(mirror)" >"$ROOT.debootstrap.log" 2>&1 ||
    { tail -5 "$ROOT.debootstrap.log"; echo "i386-root: debootstrap failed (log $ROOT.debootstrap.log)" >&2; exit 1; }
fi

echo "i386-root: installing $PACKAGES in $ROOT"
rm -f "$STAMP"
cp /etc/resolv.conf "$ROOT/etc/resolv.conf"
# shellcheck disable=SC2016
unshare --mount --propagation private /bin/bash -euc '
  ROOT=$1; shift
  mount --bind /proc "$ROOT/proc"
  mount --rbind /dev "$ROOT/dev"
  mount --rbind /sys "$ROOT/sys"
  export DEBIAN_FRONTEND=noninteractive LC_ALL=C
  chroot "$ROOT" dpkg --configure -a
  chroot "$ROOT" apt-get update -q
  chroot "$ROOT" apt-get install -y -q --no-install-recommends "$@"
  chroot "$ROOT" apt-get clean
  chroot "$ROOT" wine --version
' i386-root "$ROOT" $PACKAGES
echo "$PACKAGES" >"$STAMP"
echo "i386-root: $ROOT is whole"

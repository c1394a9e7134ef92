#!/usr/bin/env bash
# Runs a program of the 32-bit Wine of the i386 root (scripts/i386-root.sh)
# as if it were the machine's own: the caller's environment and working
# directory, with WINEARCH=win32.
#
# usage: wine32.sh wine|wineserver|winepath|... ARGS...
#
# The program sees the root's files, plus the machine's /proc, /sys, /dev,
# /tmp/.X11-unix and every folder named in VELDOR_WINE32_BINDS (separated by
# ':'), each at its own path. These mounts are made in a private mount
# namespace of the program, so they end with it (a wineserver keeps its own
# while it lives) and the machine never sees a mount under the root.
set -euo pipefail

root="${VELDOR_I386_ROOT:-/var/lib/veldor/i386-root}"
if [ ! -f "$root/.veldor-root-complete" ]; then
  echo "wine32: no whole i386 root at $root: run scripts/i386-root.sh" >&2
  exit 127
fi
# An X server makes this folder when it starts; one that has not run yet
# would leave nothing to lend.
[ -d /tmp/.X11-unix ] || install -d -m 1777 /tmp/.X11-unix
export WINEARCH=win32

# shellcheck disable=SC2016
exec unshare --mount --propagation private /bin/bash -euc '
  root=$1 binds=$2
  shift 2
  mount --bind /proc "$root/proc"
  mount --rbind /dev "$root/dev"
  mount --rbind /sys "$root/sys"
  mount --bind /tmp/.X11-unix "$root/tmp/.X11-unix" 2>/dev/null ||
    { mkdir -p "$root/tmp/.X11-unix"; mount --bind /tmp/.X11-unix "$root/tmp/.X11-unix"; }
  IFS=:
  for dir in $binds; do
    [ -d "$dir" ] || continue
    mkdir -p "$root$dir"
    mount --rbind "$dir" "$root$dir"
  done
  unset IFS
  # The root programs come before any wrapper that PATH names.
  export PATH="/usr/bin:/bin:$PATH"
  exec chroot "$root" /bin/bash -c "cd \"\$0\" 2>/dev/null || cd /; exec \"\$@\"" "$PWD" "$@"
' wine32 "$root" "${VELDOR_WINE32_BINDS:-}" "$@"

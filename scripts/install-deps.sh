#!/usr/bin/env bash
# Installs the Debian packages the build and the tests need, if any is missing.
set -euo pipefail

PACKAGES=(
  cmake ninja-build g++ clang libclang-rt-14-dev googletest
  g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix binutils-mingw-w64-x86-64 binutils-mingw-w64-i686
  wine wine64 fonts-wine xvfb xauth xdotool imagemagick socat
  ghostscript poppler-utils procps file
  gdal-bin libxml2-utils
  pandoc weasyprint unrtf unzip nsis python3
  chromium
  debootstrap fonts-dejavu-core fonts-dejavu-extra fonts-urw-base35
)

missing=()
for p in "${PACKAGES[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  echo "install-deps: all packages present"
  exit 0
fi

echo "install-deps: installing ${missing[*]}"
SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -q
$SUDO apt-get install -y -q --no-install-recommends "${missing[@]}"

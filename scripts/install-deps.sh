#!/usr/bin/env bash
# Installs the Debian packages that building, testing and running ZAMClientUI need
# (or only the packages named as arguments). Only what is missing is installed;
# works as root or through sudo, without questions.
set -euo pipefail

packages=(
  # toolchain
  g++ clang libclang-rt-14-dev cmake ninja-build pkg-config git
  # the program's own dependencies
  libx11-dev libxt-dev libxaw7-dev libxinerama-dev
  # tests, benchmarks and their peers
  libgtest-dev libgmock-dev libbenchmark-dev libexpat1-dev libxml2-dev libpugixml-dev
  # an X server of our own for the display tests and the demo
  xvfb xauth x11-utils xfonts-base libxtst-dev
  # monitors set through RandR, and a window manager, for the end-to-end tests
  libxrandr-dev twm
  # the dialogs' font (data/app-defaults/XZAMClientUI)
  xfonts-100dpi
  # the demo's screenshots: xwd, then xwdtopnm and pnmtopng; xdotool clicks the dialogs
  x11-apps netpbm xdotool
  # locales the text tests generate
  locales
  # the Debian package: dependencies from the binaries, its checks, the manual pages
  dpkg-dev file lintian mandoc groff-base
)
if [ $# -gt 0 ]; then
  packages=("$@")
fi

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  echo "install-deps: everything is installed"
  exit 0
fi

as_root=()
if [ "$(id -u)" -ne 0 ]; then
  as_root=(sudo)
fi

echo "install-deps: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -q
"${as_root[@]}" apt-get install -y -q --no-install-recommends "${missing[@]}" </dev/null

#!/usr/bin/env bash
# Builds the Debian package of ZAMClientUI from the optimised build: installs
# what building it needs, configures build/package for the prefix /usr, builds
# the program and zam-client and lets CPack make the .deb, whose dependencies
# dpkg-shlibdeps computes from the binaries. The build's output goes to
# standard error; standard output gets only the package's path.
#
#   bash scripts/package.sh
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh g++ cmake ninja-build pkg-config libx11-dev libxt-dev libxaw7-dev libxinerama-dev \
  dpkg-dev file >&2

build=build/package
jobs=$(nproc 2>/dev/null || echo 2)
# Files and directories in the package get the usual modes whatever the caller's umask.
umask 022
log=$(mktemp)
trap 'rm -f "$log"' EXIT

# Debian's hardening flags for programs that run on every desktop: stack
# protector, fortified libc calls, read-only relocations bound at start.
export DEB_BUILD_MAINT_OPTIONS=hardening=+all
cflags="$(dpkg-buildflags --get CPPFLAGS) $(dpkg-buildflags --get CXXFLAGS)"
ldflags=$(dpkg-buildflags --get LDFLAGS)
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF -DZAM_BENCH=OFF \
  -DCMAKE_INSTALL_PREFIX=/usr -DCMAKE_CXX_FLAGS="$cflags" -DCMAKE_EXE_LINKER_FLAGS="$ldflags" >/dev/null
cmake --build "$build" -j "$jobs" 2>&1 | tee "$log" >&2
if grep -q 'warning:' "$log"; then
  echo "package: compiler warnings in the package build" >&2
  exit 1
fi

rm -f "$build"/*.deb
(cd "$build" && cpack -G DEB >/dev/null)
debs=("$build"/zamclientui_*.deb)
if [ ${#debs[@]} -ne 1 ] || [ ! -f "${debs[0]}" ]; then
  echo "package: CPack made no package (or more than one)" >&2
  exit 1
fi
deb=${debs[0]}

# Without dpkg-shlibdeps CPack writes no dependencies at all: a package that
# installs and then cannot start.
depends=$(dpkg-deb -f "$deb" Depends)
for library in libxaw7 libxinerama1; do
  if ! grep -q "\\b$library\\b" <<<"$depends"; then
    echo "package: the dependencies do not name $library: '$depends'" >&2
    exit 1
  fi
done
echo "$deb"

#!/usr/bin/env bash
# The package stage: builds the Debian package (scripts/package.sh) and checks
# it as an administrator would meet it:
#   - lintian reports no error and no warning;
#   - the program, zam-client, the app-defaults file and the manual pages are
#     at their paths, and the app-defaults file is a conffile;
#   - unpacked into a temporary root, the program answers --version, the X
#     Toolkit finds the unpacked app-defaults file through XFILESEARCHPATH, and
#     the unpacked zam-client plays a short scenario with the unpacked program
#     on a private Xvfb, whose screenshot shows the dialog in the file's colours;
#   - the manual pages render without a single warning.
# Runs as any user; writes only below build/ and one temporary directory.
set -euo pipefail
cd "$(dirname "$0")/.."

# lintian leaves directories of its own in TMPDIR: keep them in the build tree
# when the script runs on its own, as the test command does for every stage.
if [ -z "${TMPDIR:-}" ]; then
  export TMPDIR=$PWD/build/tmp
  mkdir -p "$TMPDIR"
fi

fail() { echo "test-package: $*" >&2; exit 1; }

deb=$(bash scripts/package.sh | tail -n 1)
[ -f "$deb" ] || fail "no package"
echo "--- $deb"

# Warnings we accept would be listed here and in docs/design.md; there are none.
lintian --fail-on error,warning "$deb" || fail "lintian reports errors or warnings"

contents=$(dpkg-deb -c "$deb" | awk '{ print $NF }')
for path in ./usr/bin/ZAMClientUI ./usr/bin/zam-client ./etc/X11/app-defaults/XZAMClientUI \
            ./etc/X11/app-defaults/XZAMClientUI-hidpi \
            ./usr/share/man/man1/ZAMClientUI.1.gz ./usr/share/man/man1/zam-client.1.gz \
            ./usr/share/doc/zamclientui/copyright ./usr/share/doc/zamclientui/changelog.gz; do
  grep -qxF "$path" <<<"$contents" || fail "the package lacks $path"
done
[ "$(dpkg-deb -I "$deb" conffiles)" = "$(printf '%s\n' /etc/X11/app-defaults/XZAMClientUI{,-hidpi})" ] ||
  fail "the conffiles are not the two app-defaults files"

TMPDIR=${TMPDIR:-/tmp}
mkdir -p "$TMPDIR"
work=$(mktemp -d "$TMPDIR/zam-test-$$-XXXXXX")
. scripts/xvfb.sh
cleanup() {
  stop_private_xvfb
  rm -rf -- "$work"
}
trap cleanup EXIT
root=$work/root
dpkg-deb -x "$deb" "$root"

# The manual pages, as installed.
for page in "$root"/usr/share/man/man1/*.1.gz; do
  zcat "$page" >"$work/page"
  out=$( { mandoc -T lint "$work/page"; groff -man -ww -z "$work/page"; } 2>&1) || fail "$(basename "$page"): $out"
  [ -z "$out" ] || fail "$(basename "$page") renders with warnings: $out"
done

version=$(awk -F'[()]' 'NR == 1 { print $2 }' packaging/changelog)
[ "$("$root/usr/bin/ZAMClientUI" --version </dev/null 2>&1)" = "ZAMClientUI $version" ] ||
  fail "the unpacked program does not answer --version with $version"

# A private X server.
start_private_xvfb "$work" || fail "Xvfb did not start"
unset XAPPLRESDIR XUSERFILESEARCHPATH XENVIRONMENT
export HOME=$work

# Every resource of the unpacked file reaches the toolkit through XFILESEARCHPATH,
# and (unless the package is installed on this machine) only through it.
appdefaults=$root/etc/X11/app-defaults/XZAMClientUI
search="$root/etc/X11/%T/%N%S"
resources=$(XFILESEARCHPATH=$search appres XZAMClientUI ZAMClientUI)
specifiers=$(sed -n 's/^\([^!#[:space:]][^:]*\):.*/\1/p' "$appdefaults")
[ -n "$specifiers" ] || fail "no resources in the app-defaults file"
while read -r specifier; do
  grep -qF "$specifier:" <<<"$resources" || fail "appres does not show $specifier"
done <<<"$specifiers"
if [ ! -e /etc/X11/app-defaults/XZAMClientUI ]; then
  first=$(head -n 1 <<<"$specifiers")
  ! appres XZAMClientUI ZAMClientUI | grep -qF "$first:" || fail "$first is found without XFILESEARCHPATH"
fi

# The start-up flow of the unpacked pair: ready, initialisation, a message on
# the screen, a screenshot, the pipe closed, exit status 0.
background=$(sed -n 's/^\*background:[[:space:]]*#\([0-9A-Fa-f]\{6\}\)[[:space:]]*$/\1/p' "$appdefaults")
[ -n "$background" ] || fail "the app-defaults file sets no *background colour to look for"
cat >"$work/check.scenario" <<'SCENARIO'
at 0s  message id=1 title="Package check" text="Shown by the unpacked program."
at 3s  mark shown
at 4s  close
SCENARIO
XFILESEARCHPATH=$search ZAM_SHOT=$work/shot.ppm "$root/usr/bin/zam-client" \
  --at-mark 'xwd -root -silent | xwdtopnm >"$ZAM_SHOT" 2>/dev/null' "$work/check.scenario" ||
  fail "the unpacked zam-client and ZAMClientUI did not play the scenario"
rgb=$(printf '%d %d %d' "0x${background:0:2}" "0x${background:2:2}" "0x${background:4:2}")
ppmhist -noheader "$work/shot.ppm" | awk -v want="$rgb" '$1 " " $2 " " $3 == want { found = 1 } END { exit !found }' ||
  fail "the dialog on the screen does not show the app-defaults background #$background"
echo "test-package: $deb passes"

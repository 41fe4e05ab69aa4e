#!/usr/bin/env bash
# Shows ZAMClientUI at work: installs what is missing, builds the optimised
# program and the sample client, and plays a scenario (by default
# examples/restart.scenario) while printing the client's transcript.
#
#   bash scripts/demo.sh [SCENARIO]
#
# With $DISPLAY set the program appears on that display. Without one the demo
# starts its own Xvfb, saves a PNG screenshot at every "mark" step of the
# scenario, prints where, and stops the Xvfb whatever happens.
set -euo pipefail
cd "$(dirname "$0")/.."

scenario=${1:-examples/restart.scenario}
[ -r "$scenario" ] || { echo "demo: cannot read $scenario" >&2; exit 2; }

bash scripts/install-deps.sh
cmake --preset release >/dev/null
cmake --build --preset release --target ZAMClientUI zam-client

# The dialogs' look comes from the checkout's app-defaults file, whether or not
# a copy is installed on the machine; a desktop that sets a customization
# (such as "*customization: -hidpi" on a high-resolution screen) gets that
# file, the others the base one.
export XFILESEARCHPATH="$PWD/data/app-defaults/%N%C"

# A scenario that names a locale needs it on the machine; only root can add it.
locale_name=$(awk '$1 == "locale" { print $2; exit }' "$scenario")
if [ -n "$locale_name" ]; then
  # "de_DE.UTF-8" is listed as "de_DE.utf8".
  listed=$(echo "$locale_name" | sed 's/\.UTF-\?8$/.utf8/I')
  if ! locale -a 2>/dev/null | grep -qix -e "$locale_name" -e "$listed"; then
    if [ "$(id -u)" -eq 0 ]; then
      echo "demo: generating the locale $locale_name"
      localedef -i "${locale_name%%.*}" -f UTF-8 "$locale_name"
    else
      echo "demo: the locale $locale_name is missing and only root can generate it;" \
           "the program will show its English texts" >&2
    fi
  fi
fi

client=(build/release/zam-client)
if [ -n "${DISPLAY:-}" ]; then
  exec "${client[@]}" "$scenario"
fi

. scripts/xvfb.sh
use_private_xvfb demo
echo "demo: no display given; playing on a private Xvfb at $DISPLAY"

shots="$PWD/build/demo"
mkdir -p "$shots"
export ZAM_DEMO_SHOTS="$shots/$(basename "$scenario" .scenario)"
rm -f "$ZAM_DEMO_SHOTS"-*.png
status=0
"${client[@]}" \
  --at-mark 'xwd -root -silent | xwdtopnm 2>/dev/null | pnmtopng >"$ZAM_DEMO_SHOTS-$ZAM_MARK.png"' \
  "$scenario" || status=$?

for shot in "$ZAM_DEMO_SHOTS"-*.png; do
  [ -e "$shot" ] || continue
  if pngtopnm "$shot" >/dev/null 2>&1; then
    echo "demo: screenshot $shot"
  else
    echo "demo: the screenshot $shot is not a valid PNG" >&2
    status=1
  fi
done
exit "$status"

#!/usr/bin/env bash
# Renders the screenshots of every dialog into docs/screenshots/*.png, as the
# checkout's app-defaults file (data/app-defaults/XZAMClientUI) draws them on
# a screen of 96 dpi, and into docs/screenshots/192dpi/*.png on a 3840x2160
# screen of 192 dpi (scale 2) with its -hidpi customization:
#
#   bash scripts/screenshots.sh
#
# Installs what is missing, builds the optimised program and the sample
# client, and plays examples/dialogs.scenario and examples/notices.scenario on
# a private Xvfb (never on the caller's display), which it stops whatever
# happens. Runs as root or as any user; the pictures are replaced only when
# every one of them was taken.
#
# How the dialogs are driven: zam-client runs this script again with --mark
# at every "mark" step of a scenario (--at-mark), and the mark's name says
# what to do:
#   select-first-action   click the first row of the action list;
#   press-NAME            click a button: takeAllActions, takeActions,
#                         cancelAction, actionDetails or snoozeButton of the
#                         action request dialog, or "ok" (the last button) and
#                         "cancel" (the one before it) of the newest dialog;
#   shot-NAME             save the newest dialog as NAME.png.
# There is no window manager, so a dialog is a child of the root window, the
# newest one on top, and xwininfo lists the root's children top first. Widget
# windows carry no names: a button is found by its place among the children
# of the dialog's form, which xwininfo lists in the order the program creates
# the widgets (ui/ActionRequestDialog.cpp's Build). xdotool moves the pointer
# there, clicks through the XTEST extension, and moves the pointer to the
# screen's corner again so that no button is drawn highlighted. A click is
# followed in the scenarios by a pause of more than one second, as the
# program acts on a button at its next once-a-second tick. "xwd -id" takes
# the dialog's window alone; the script frames it with a one-pixel border in
# the dialogs' border colour.
set -euo pipefail
cd "$(dirname "$0")/.."

# ---- At a mark: called by zam-client, with DISPLAY and ZAM_MARK set ----

# The newest mapped top-level window, waited for up to 3 seconds (see
# action_dialog).
newest_dialog() {
  local id tries
  for tries in {1..30}; do
    for id in $(xwininfo -root -children | awk '$1 ~ /^0x/ { print $1 }'); do
      if xwininfo -id "$id" | grep -q 'Map State: IsViewable'; then
        echo "$id"
        return 0
      fi
    done
    sleep 0.1
  done
  echo "screenshots: no dialog is shown" >&2
  return 1
}

# The children of WINDOW, one a line: "ID X Y WIDTH HEIGHT", X and Y on the screen.
children() {
  xwininfo -children -id "$1" | awk '$1 ~ /^0x/ {
    split($(NF - 1), size, /[x+]/); split($NF, at, "+")
    print $1, at[2], at[3], size[1], size[2] }'
}

# The dialog's form: the one child of its shell.
form_of() {
  children "$1" | awk 'NR == 1 { print $1 }'
}

# Clicks at X Y and takes the pointer out of the way again.
click_at() {
  xdotool mousemove "$1" "$2"
  sleep 0.2
  xdotool click 1
  sleep 0.2
  xdotool mousemove ${ZAM_CORNER:?}
}

# Clicks the middle of the Nth child (1 = first created; -1 = last) of the dialog's form.
press_child() {
  local dialog=$1 n=$2 line
  local -a widgets
  mapfile -t widgets < <(children "$(form_of "$dialog")")
  if [ "$n" -lt 0 ]; then n=$((${#widgets[@]} + n + 1)); fi
  if [ "$n" -lt 1 ] || [ "$n" -gt ${#widgets[@]} ]; then
    echo "screenshots: the dialog has no widget $n" >&2
    return 1
  fi
  line=${widgets[n - 1]}
  read -r _ x y w h <<<"$line"
  click_at $((x + w / 2)) $((y + h / 2))
}

# The action request dialog, waited for up to 3 seconds: the program shows
# its first dialog at its second tick, which may come after the scenario's
# first mark.
action_dialog() {
  local id= tries=0
  while [ -z "$id" ] && [ $((tries += 1)) -le 30 ]; do
    id=$(xdotool search --onlyvisible --name '^Action Requests$' | head -n 1) || sleep 0.1
  done
  [ -n "$id" ] || { echo "screenshots: the action request dialog is not shown" >&2; return 1; }
  echo "$id"
}

at_mark() {
  local mark=$1 dialog
  case $mark in
    select-first-action)
      # The list sits in the viewport's clip window; its first row starts at its top.
      local viewport clip list x y
      dialog=$(action_dialog)
      viewport=$(children "$(form_of "$dialog")" | awk 'NR == 4 { print $1 }')
      clip=$(children "$viewport" | awk 'NR == 1 { print $1 }')
      read -r list x y _ <<<"$(children "$clip" | head -n 1)"
      [ -n "$list" ] || { echo "screenshots: no action list" >&2; return 1; }
      click_at $((x + 40)) $((y + 8))
      ;;
    press-takeAllActions) press_child "$(action_dialog)" 5 ;;
    press-takeActions) press_child "$(action_dialog)" 6 ;;
    press-cancelAction) press_child "$(action_dialog)" 7 ;;
    press-actionDetails) press_child "$(action_dialog)" 8 ;;
    press-snoozeButton) press_child "$(action_dialog)" 11 ;;
    press-ok) press_child "$(newest_dialog)" -1 ;;
    press-cancel) press_child "$(newest_dialog)" -2 ;;
    shot-*)
      local border
      dialog=$(newest_dialog)
      border=$(sed -n 's/^\*borderColor:[[:space:]]*\(#[0-9A-Fa-f]\{6\}\).*/\1/p' data/app-defaults/XZAMClientUI)
      xwd -id "$dialog" -silent | xwdtopnm 2>/dev/null |
        pnmmargin -color "${border:-#808080}" 1 | pnmtopng >"${ZAM_SHOTS:?}/${mark#shot-}.png"
      ;;
    *) echo "screenshots: the mark $mark means nothing here" >&2; return 1 ;;
  esac
}

if [ "${1:-}" = --mark ]; then
  at_mark "${ZAM_MARK:?}"
  exit
fi

# ---- The run ----

expected=(action-selected action-details confirmation action-deadline action-empty message completion quiet-mode)

bash scripts/install-deps.sh
cmake --preset release >/dev/null
cmake --build --preset release --target ZAMClientUI zam-client

# Only the checkout's look: no installed copy, no user's resources.
export XFILESEARCHPATH="$PWD/data/app-defaults/%N%C"
unset XAPPLRESDIR XUSERFILESEARCHPATH XENVIRONMENT
# The same texts and time zone on every machine.
export LC_ALL=C.UTF-8 TZ=UTC

work=$(mktemp -d)
trap 'stop_private_xvfb; rm -rf -- "$work"' EXIT
trap 'exit 130' INT
trap 'exit 143' TERM
. scripts/xvfb.sh

# Plays both scenarios on a private Xvfb of the screen SIZE and density DPI
# and keeps the pictures in DIRECTORY; RESOURCES, if not empty, is the
# user's resource file (XENVIRONMENT).
play() {
  local size=$1 dpi=$2 directory=$3 resources=$4 scenario
  export ZAM_XVFB_SCREEN="${size}x24" ZAM_XVFB_DPI=$dpi ZAM_SHOTS="$work/shots-$dpi"
  # Out of every dialog's way: the screen's bottom right corner.
  export ZAM_CORNER="$((${size%x*} - 1)) $((${size#*x} - 1))"
  if [ -n "$resources" ]; then export XENVIRONMENT=$resources; else unset XENVIRONMENT; fi
  mkdir "$ZAM_SHOTS"
  start_private_xvfb "$work" || { echo "screenshots: Xvfb did not start" >&2; exit 1; }
  echo "screenshots: playing at $dpi dpi on a private Xvfb at $DISPLAY"
  for scenario in examples/dialogs.scenario examples/notices.scenario; do
    # A home of its own: no ~/.Xdefaults reaches the toolkit.
    HOME="$work" build/release/zam-client --at-mark "bash '$PWD/scripts/screenshots.sh' --mark" "$scenario"
  done
  stop_private_xvfb
  for name in "${expected[@]}"; do
    if ! pngtopnm "$ZAM_SHOTS/$name.png" >/dev/null 2>&1; then
      echo "screenshots: $name.png at $dpi dpi was not taken" >&2
      exit 1
    fi
  done
  shots+=("$ZAM_SHOTS:$directory")
}

# At 96 dpi the sizes as the program sets them; at 192 dpi (scale 2, from the
# screen's size) with the -hidpi customization a user there would choose.
shots=()
play 1024x768 96 docs/screenshots ""
echo '*customization: -hidpi' >"$work/hidpi.ad"
play 3840x2160 192 docs/screenshots/192dpi "$work/hidpi.ad"

for pair in "${shots[@]}"; do
  mkdir -p "${pair#*:}"
  for name in "${expected[@]}"; do
    mv "${pair%%:*}/$name.png" "${pair#*:}/$name.png"
    echo "screenshots: ${pair#*:}/$name.png"
  done
done

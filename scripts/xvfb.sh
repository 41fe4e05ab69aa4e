# Sourced by the scripts that need an X server of their own (demo.sh,
# screenshots.sh, test-package.sh): a private Xvfb that is stopped on every
# way out.
#
#   use_private_xvfb NAME         all in one: makes a private directory $work,
#                                 installs the traps that stop the server and
#                                 remove $work on every way out, starts the
#                                 server; exits with 1 ("NAME: ...") if it does
#                                 not come up
#   start_private_xvfb WORKDIR    starts it, exports DISPLAY; fails if it does not come up
#   stop_private_xvfb             stops it (again harmless)
#
# With the last two, WORKDIR is an existing private directory for the server's
# pipe, and the caller installs its own traps and calls stop_private_xvfb from
# its EXIT trap.
#
# ZAM_XVFB_SCREEN (default 1024x768x24) and ZAM_XVFB_DPI (default Xvfb's own)
# give the server another screen size or density.

xvfb_pid=

start_private_xvfb() {
  local fifo="$1/displayfd" number=
  # The server writes its display number to descriptor 3 once it accepts
  # clients, so no number is ever guessed.
  mkfifo "$fifo"
  Xvfb -nolisten tcp -noreset -screen 0 "${ZAM_XVFB_SCREEN:-1024x768x24}" ${ZAM_XVFB_DPI:+-dpi "$ZAM_XVFB_DPI"} \
    -displayfd 3 3>"$fifo" >/dev/null 2>&1 &
  xvfb_pid=$!
  read -r -t 30 number <"$fifo" || true
  rm -f "$fifo"
  [ -n "$number" ] || return 1
  export DISPLAY=":$number"
}

stop_private_xvfb() {
  if [ -n "$xvfb_pid" ]; then
    kill "$xvfb_pid" 2>/dev/null || true
    wait "$xvfb_pid" 2>/dev/null || true
    xvfb_pid=
  fi
}

use_private_xvfb() {
  work=$(mktemp -d)
  trap 'stop_private_xvfb; rm -rf -- "$work"' EXIT
  trap 'exit 130' INT
  trap 'exit 143' TERM
  if ! start_private_xvfb "$work"; then
    echo "$1: Xvfb did not start" >&2
    exit 1
  fi
}

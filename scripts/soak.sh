#!/usr/bin/env bash
# The soak: the real program for MINUTES minutes (default 10) on a private
# Xvfb, fed random client documents through the sample client's code while
# random clicks and keys land on its windows (tests/soak/SoakDriver.cpp says
# what it checks). Half the runs, by the seed's last bit, use the ASan+UBSan
# program, the others the optimised one, whose memory is then checked too.
#
#   bash scripts/soak.sh [MINUTES] [SEED]
#   ZAM_SOAK_BUILD=asan|optimised   overrides the seed's choice
#
# The same seed gives the same documents and input at the same moments; the
# program's one-second tick may still fall differently between them.
# It never uses the caller's display: DISPLAY is cleared and the driver starts
# its own server, which, like the program, dies with it. Everything it writes
# stays in one mktemp -d directory, removed at the end.
set -euo pipefail
cd "$(dirname "$0")/.."

minutes=${1:-10}
seed=${2:-$(od -An -N4 -tu4 /dev/urandom | tr -d ' ')}
case "$minutes$seed" in *[!0-9]* | '') echo "usage: soak.sh [MINUTES] [SEED]" >&2; exit 2 ;; esac
build=${ZAM_SOAK_BUILD:-$([ $((seed % 2)) -eq 1 ] && echo asan || echo optimised)}
unset DISPLAY

jobs=$(nproc 2>/dev/null || echo 2)
cmake --preset e2e >/dev/null
cmake --build --preset e2e -j "$jobs" --target ZAMClientUI SoakDriver >/dev/null
program=build/e2e/ZAMClientUI
memory=memory
if [ "$build" = asan ]; then
  cmake --preset asan >/dev/null
  cmake --build --preset asan -j "$jobs" --target ZAMClientUI >/dev/null
  program=build/asan/ZAMClientUI
  memory=no-memory
fi

# Named like the tests' sandboxes, so the test command's sweep can tell a
# killed run's leftovers by the process id in the name.
work=$(mktemp -d "${TMPDIR:-/tmp}/zam-test-$$-XXXXXX")
driver=
finish() {
  if [ -n "$driver" ]; then kill "$driver" 2>/dev/null || true; wait "$driver" 2>/dev/null || true; fi
  rm -rf -- "$work"
}
trap finish EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

echo "soak: $minutes minutes, seed $seed, $build program (again: ZAM_SOAK_BUILD=$build bash scripts/soak.sh $minutes $seed)"
status=0
build/e2e/tests/soak/SoakDriver "$PWD/$program" "$work" "$minutes" "$seed" "$memory" 2>"$work/stderr.log" &
driver=$!
wait "$driver" || status=$?
driver=
if compgen -G "$work/sanitizer*" >/dev/null; then
  echo "soak: sanitizer report:"
  cat "$work"/sanitizer*
  status=1
fi
if [ "$status" -ne 0 ]; then
  echo "--- the conversation before each failure, or its end"
  grep -B 25 '^FAIL' "$work/transcript.log" 2>/dev/null || tail -n 30 "$work/transcript.log" 2>/dev/null || true
  echo "--- the program's standard error"
  tail -n 30 "$work/stderr.log" || true
fi
exit "$status"

#!/usr/bin/env bash
# Runs every test: installs what is missing, then builds and tests the plain,
# ASan+UBSan and TSan builds, builds the optimised program and benchmarks and
# runs the action dialog's benchmarks (figures only, never a verdict), drives the optimised program end to end through the sample client, and
# runs each fuzz target for a short while. Any compiler warning fails the run.
# Exits non-zero on the first failure and prints how long each stage took.
#
# No test runs as root. Run as root (as CI does), it installs the packages and
# the locale, makes the X socket directory, then runs everything else as an
# ordinary user: the checkout's owner, or else ZAM_TEST_USER (made when
# missing), in a copy of the checkout in that user's home.
#
#   ZAM_FUZZ_SECONDS  seconds per fuzz target (default 30)
#   ZAM_TEST_USER     the user root runs the builds as (default zamtest)
set -euo pipefail
cd "$(dirname "$0")/.."

fuzz_seconds=${ZAM_FUZZ_SECONDS:-30}
jobs=$(nproc 2>/dev/null || echo 2)
# The sanitizers must fail the run, not only print.
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
export TSAN_OPTIONS=${TSAN_OPTIONS:-halt_on_error=1:second_deadlock_stack=1}
# A missing German locale fails the test that needs it instead of skipping it.
export ZAM_REQUIRE_LOCALES=1
# Temporary files of the run and its tools stay in the build tree. Each is
# named zam-test-<pid>-XXXXXX, like the tests' sandboxes, so the sweep below
# can tell a dead run's leftovers from a live one's.
export TMPDIR=$PWD/build/tmp

stage() {
  local name=$1; shift
  local start=$SECONDS
  echo "=== $name"
  "$@"
  echo "=== $name: $((SECONDS - start)) s"
}

scratch() { mktemp "$@" "$TMPDIR/zam-test-$$-XXXXXX"; }

# Removes what runs that no longer exist left in TMPDIR (a killed run leaves
# its sandboxes); a live run's are never touched.
sweep_dead_runs() {
  local leftover pid
  for leftover in "$TMPDIR"/zam-test-*-??????; do
    [ -e "$leftover" ] || [ -L "$leftover" ] || continue
    pid=${leftover#"$TMPDIR"/zam-test-}
    pid=${pid%-*}
    case $pid in '' | *[!0-9]*) continue ;; esac
    [ -d "/proc/$pid" ] && continue
    if [ -d "$leftover" ] && [ ! -L "$leftover" ]; then chmod -R u+rwx -- "$leftover" 2>/dev/null || true; fi
    rm -rf -- "$leftover"
  done
}

# Builds a preset; a warning from the compiler fails the stage.
build_checked() {
  local preset=$1 log
  log=$(scratch)
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset" -j "$jobs" 2>&1 | tee "$log"
  if grep -q 'warning:' "$log"; then
    echo "compiler warnings in the $preset build:"
    grep 'warning:' "$log"
    rm -f "$log"
    return 1
  fi
  rm -f "$log"
}

# The sanitizer builds play fewer random conversations (the plain build 10,000).
build_and_test() {
  local preset=$1 conversations=10000
  [ "$preset" = dev ] || conversations=1000
  build_checked "$preset"
  ZAM_CONVERSATIONS=$conversations ctest --preset "$preset" -j "$jobs"
}

run_fuzzers() {
  build_checked fuzz
  local found=0 target corpus
  for target in build/fuzz/fuzz/*Fuzz; do
    [ -x "$target" ] || continue
    corpus=$(scratch -d)
    # Seeds from the tree; new finds stay in the temporary copy.
    if [ -d "fuzz/corpus/$(basename "$target")" ]; then
      cp -r "fuzz/corpus/$(basename "$target")/." "$corpus/"
    fi
    echo "--- $(basename "$target") for ${fuzz_seconds} s"
    if ! "$target" -max_total_time="$fuzz_seconds" -print_final_stats=0 \
         -artifact_prefix="build/fuzz/$(basename "$target")-" "$corpus" 2>"build/fuzz/$(basename "$target").log"; then
      tail -n 40 "build/fuzz/$(basename "$target").log"
      found=1
    fi
    rm -rf "$corpus"
  done
  return $found
}

# The optimised build, then the action dialog's benchmarks, each on an Xvfb of
# its own: show-to-map time, scale up to 50,000 actions, peak memory beside
# xmessage. They print figures; only a benchmark that cannot run fails.
build_and_run_benchmarks() {
  build_checked release
  local bench
  for bench in DialogMapBench ActionDialogScaleBench ActionDialogMemoryBench; do
    echo "--- $bench"
    "build/release/bench/$bench"
  done
}

# The initialisation tests load translations under a real German locale.
generate_locales() {
  if ! locale -a 2>/dev/null | grep -ix 'de_DE\.utf-\?8' >/dev/null; then
    localedef -i de_DE -f UTF-8 de_DE.UTF-8
  fi
}

report_test_share() { echo "=== $(bash scripts/test-share.sh)"; }

# ---- as root: the system's part, then everything else as an ordinary user

# Runs a command as `user` with that user's home; the environment of the run
# (ZAM_*, sanitizer options) goes along.
as_user() {
  local user=$1; shift
  setpriv --reuid="$(id -u "$user")" --regid="$(id -g "$user")" --init-groups -- \
    env HOME="$(getent passwd "$user" | cut -d: -f6)" USER="$user" LOGNAME="$user" "$@"
}

# The user to build as and a tree that user owns: the checkout itself when its
# owner is not root, else a copy in the home of ZAM_TEST_USER (made when
# missing). Root cannot hand over its own clone: a clone under /root is not
# readable by anyone else, and CMake cannot write into a root-owned tree.
choose_user() {
  user=$(stat -c %U .)
  tree=$PWD
  if [ "$user" = root ]; then
    user=${ZAM_TEST_USER:-zamtest}
    id "$user" >/dev/null 2>&1 || useradd --create-home --user-group --shell /usr/sbin/nologin "$user"
    tree=$(getent passwd "$user" | cut -d: -f6)/zam-checkout
  fi
}

# The copy is refreshed by the user (who can delete nothing of the system's);
# its build directory stays for the next run.
copy_checkout() {
  as_user "$user" mkdir -p "$tree"
  as_user "$user" find "$tree" -mindepth 1 -maxdepth 1 ! -name build -exec rm -rf -- {} +
  tar -C . --exclude=./build -cf - . | as_user "$user" tar -C "$tree" -xf -
}

# Xvfb, started by an ordinary user, cannot make its socket directory itself.
made_x11_dir=
prepare_x_sockets() {
  if [ ! -d /tmp/.X11-unix ]; then
    mkdir -m 1777 /tmp/.X11-unix
    made_x11_dir=1
  fi
}

remove_x_sockets() {
  if [ -n "$made_x11_dir" ]; then rmdir /tmp/.X11-unix 2>/dev/null || true; fi
}

total=$SECONDS
if [ "$(id -u)" -eq 0 ]; then
  [ -z "${ZAM_TEST_AS_USER:-}" ] || { echo "test.sh: the tests never run as root" >&2; exit 1; }
  choose_user
  # Root makes nothing in a tree that belongs to the user.
  if [ "$tree" = "$PWD" ]; then as_user "$user" mkdir -p "$TMPDIR"; else mkdir -p "$TMPDIR"; fi
  sweep_dead_runs
  stage "install dependencies" bash scripts/install-deps.sh
  stage "generate locales" generate_locales
  prepare_x_sockets
  trap remove_x_sockets EXIT
  if [ "$tree" != "$PWD" ]; then stage "copy the checkout for $user" copy_checkout; fi
  echo "=== building and testing as $user in $tree"
  status=0
  as_user "$user" env ZAM_TEST_AS_USER=1 bash "$tree/scripts/test.sh" </dev/null || status=$?
  echo "=== all stages: $((SECONDS - total)) s"
  exit $status
fi

mkdir -p "$TMPDIR"
sweep_dead_runs
if [ -z "${ZAM_TEST_AS_USER:-}" ]; then
  stage "install dependencies" bash scripts/install-deps.sh
  if ! locale -a 2>/dev/null | grep -ix 'de_DE\.utf-\?8' >/dev/null; then
    echo "the locale de_DE.UTF-8 is missing (as root: localedef -i de_DE -f UTF-8 de_DE.UTF-8); its test will fail"
  fi
fi
stage "plain build and tests" build_and_test dev
stage "ASan+UBSan build and tests" build_and_test asan
stage "TSan build and tests" build_and_test tsan
stage "optimised build with benchmarks" build_and_run_benchmarks
stage "end-to-end tests on the optimised program" bash scripts/test-e2e.sh
stage "Debian package" bash scripts/test-package.sh
stage "fuzzing" run_fuzzers
report_test_share
echo "=== all stages: $((SECONDS - total)) s"

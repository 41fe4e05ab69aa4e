#!/usr/bin/env bash
# Runs every test: installs what is missing, then builds and tests the plain,
# ASan+UBSan and TSan builds, builds the optimised program and benchmarks, and
# runs each fuzz target for a short while. Any compiler warning fails the run.
# Exits non-zero on the first failure and prints how long each stage took.
#
#   ZAM_FUZZ_SECONDS  seconds per fuzz target (default 30)
set -euo pipefail
cd "$(dirname "$0")/.."

fuzz_seconds=${ZAM_FUZZ_SECONDS:-30}
jobs=$(nproc 2>/dev/null || echo 2)
# The sanitizers must fail the run, not only print.
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
export TSAN_OPTIONS=${TSAN_OPTIONS:-halt_on_error=1:second_deadlock_stack=1}

stage() {
  local name=$1; shift
  local start=$SECONDS
  echo "=== $name"
  "$@"
  echo "=== $name: $((SECONDS - start)) s"
}

# Builds a preset; a warning from the compiler fails the stage.
build_checked() {
  local preset=$1 log
  log=$(mktemp)
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

build_and_test() {
  local preset=$1
  build_checked "$preset"
  ctest --preset "$preset" -j "$jobs"
}

run_fuzzers() {
  build_checked fuzz
  local found=0 target corpus
  for target in build/fuzz/fuzz/*Fuzz; do
    [ -x "$target" ] || continue
    corpus=$(mktemp -d)
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

# The initialisation tests load translations under a real German locale; as
# root they fail when it is missing, so make it here when it is not there yet.
generate_locales() {
  if [ "$(id -u)" -eq 0 ] && ! locale -a 2>/dev/null | grep -ix 'de_DE\.utf-\?8' >/dev/null; then
    localedef -i de_DE -f UTF-8 de_DE.UTF-8
  fi
}

total=$SECONDS
stage "install dependencies" bash scripts/install-deps.sh
stage "generate locales" generate_locales
stage "plain build and tests" build_and_test dev
stage "ASan+UBSan build and tests" build_and_test asan
stage "TSan build and tests" build_and_test tsan
stage "optimised build with benchmarks" build_checked release
stage "fuzzing" run_fuzzers
echo "=== all stages: $((SECONDS - total)) s"

#!/usr/bin/env bash
# Prints how much of the code is tests: non-blank lines of .cpp/.h under tests/
# and fuzz/ against all other .cpp/.h of the checkout (bench/ included), build
# trees left out. The tests are meant to stay at most a third of the whole.
set -euo pipefail
cd "$(dirname "$0")/.."

count() {
  find "$@" \( -name '*.cpp' -o -name '*.h' \) -print0 | xargs -0 -r cat | grep -cv '^[[:space:]]*$' || true
}

tests=$(count tests fuzz)
program=$(count . \( -path ./build -o -path ./.git -o -path ./tests -o -path ./fuzz \) -prune -o)
total=$((tests + program))
awk -v t="$tests" -v p="$program" -v all="$total" 'BEGIN {
  printf "tests and fuzz targets: %d lines; program and benchmarks: %d lines; tests are %.1f %% of %d\n",
         t, p, all ? 100 * t / all : 0, all
}'

#!/usr/bin/env bash
# The end-to-end stage: builds the optimised program, the sample client, the
# end-to-end tests and the soak's driver (preset e2e: Release with tests), runs
# the tests labelled e2e, then a one-minute soak (scripts/soak.sh). They start
# their own Xvfb, so no display is needed, and they write only inside their own
# temporary directories, so any user can run them. A compiler warning fails the
# stage.
set -euo pipefail
cd "$(dirname "$0")/.."

jobs=$(nproc 2>/dev/null || echo 2)
log=$(mktemp)
trap 'rm -f "$log"' EXIT

cmake --preset e2e >/dev/null
cmake --build --preset e2e -j "$jobs" --target ZAMClientUI zam-client EndToEndTest ActionDialogFlowsTest DialogFlowsTest \
  ConsentFlowsTest KeyboardFlowsTest LongWaitTest WindowManagerTest MonitorFlowsTest SoakDriver 2>&1 | tee "$log"
if grep -q 'warning:' "$log"; then
  echo "compiler warnings in the e2e build:"
  grep 'warning:' "$log"
  exit 1
fi
# The tests mostly wait for the program's one-second ticks: twice as many run
# at once as there are cores.
env -u DISPLAY ctest --preset e2e -j "$((jobs * 2))"
bash scripts/soak.sh 1

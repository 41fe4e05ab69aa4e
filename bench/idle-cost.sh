#!/usr/bin/env bash
# Idle cost of the program after its initialisation, with nothing pending:
# how often it wakes (voluntary context switches) and how much CPU it uses.
# Starts a private Xvfb and the program, initialises it through a small
# client on its pipe, then samples /proc over a window and prints per minute.
#
#   bench/idle-cost.sh [path/to/ZAMClientUI] [seconds]
#
# Defaults: build/release/ZAMClientUI, 30 s. Goal: about one wake a second
# (the tick) and under 0.1 % of a core.
set -euo pipefail
cd "$(dirname "$0")/.."

binary=${1:-build/release/ZAMClientUI}
seconds=${2:-30}
[ -x "$binary" ] || { echo "no program at $binary (build it first)" >&2; exit 1; }

work=$(mktemp -d /tmp/zam-idle-XXXXXX)
xvfb_pid=
cleanup() {
  if [ -n "$xvfb_pid" ]; then
    kill -TERM "$xvfb_pid" 2>/dev/null || true
    wait "$xvfb_pid" 2>/dev/null || true
  fi
  # Only our own temporary directory, and only what the program made in it.
  case "$work" in
    /tmp/zam-idle-??????) rm -rf -- "$work" ;;
  esac
}
trap cleanup EXIT

# The server picks its own display number and tells it through a descriptor.
Xvfb -nolisten tcp -noreset -screen 0 1024x768x24 -displayfd 3 3>"$work/display" >/dev/null 2>&1 &
xvfb_pid=$!
for _ in $(seq 200); do
  grep -q . "$work/display" 2>/dev/null && break
  sleep 0.05
done
display=":$(tr -d '\n' <"$work/display")"
[ "$display" != ":" ] || { echo "Xvfb did not start" >&2; exit 1; }

env -i DISPLAY="$display" PATH=/usr/bin:/bin LANG=C python3 - "$binary" "$work/base" "$seconds" <<'PY'
import os, struct, subprocess, sys, time

binary, base, seconds = sys.argv[1], sys.argv[2], float(sys.argv[3])
init = f"""<?xml version="1.0" encoding="UTF-8"?>
<ClientToUI><InitializationInfo><BaseDirectory>{base}</BaseDirectory>
<InitialUISettings><RemindInterval>PT0S</RemindInterval><HistoryMode>0</HistoryMode>
<TechHistoryMode>0</TechHistoryMode><BalloonMode>1</BalloonMode><TrayMode>2</TrayMode>
<HasMainDialog>true</HasMainDialog><AllowSnooze>true</AllowSnooze><AlwaysTopmost>false</AlwaysTopmost>
<DisplaySingleActionSummary>true</DisplaySingleActionSummary><UseLocale>false</UseLocale>
<IdleThreshold>PT0S</IdleThreshold><UseActivityTracking>false</UseActivityTracking>
<ActionRunningTray>false</ActionRunningTray></InitialUISettings></InitializationInfo></ClientToUI>""".encode()

program = subprocess.Popen([binary], stdin=subprocess.PIPE, stdout=subprocess.PIPE)

def read_frame():
    header = program.stdout.read(4)
    (length,) = struct.unpack("<I", header)
    return program.stdout.read(length)

read_frame()  # ReadyForData
program.stdin.write(struct.pack("<I", len(init)) + init)
program.stdin.flush()
time.sleep(5)  # initialisation (about a second), the display, the first ticks
if program.poll() is not None:
    sys.exit(f"the program ended early with {program.returncode}")

pid = program.pid
ticks_per_second = os.sysconf("SC_CLK_TCK")

def sample():
    switches = {}
    for task in os.listdir(f"/proc/{pid}/task"):
        with open(f"/proc/{pid}/task/{task}/status") as status:
            for line in status:
                if line.startswith("voluntary_ctxt_switches:"):
                    switches[task] = int(line.split()[1])
    with open(f"/proc/{pid}/stat") as stat:
        fields = stat.read().rsplit(")", 1)[1].split()
    cpu = (int(fields[11]) + int(fields[12])) / ticks_per_second  # utime + stime
    return switches, cpu, time.monotonic()

first_switches, first_cpu, start = sample()
time.sleep(seconds)
last_switches, last_cpu, end = sample()
program.stdin.close()  # the client goes away: the program ends itself
program.wait(timeout=10)

minutes = (end - start) / 60
per_thread = {t: last_switches.get(t, 0) - first_switches.get(t, 0) for t in last_switches}
main = per_thread.get(str(pid), 0)
total = sum(per_thread.values())
cpu = last_cpu - first_cpu
print(f"window: {end - start:.1f} s, threads: {len(per_thread)}")
print(f"voluntary context switches per minute: main thread {main / minutes:.0f}, all threads {total / minutes:.0f}")
print(f"CPU time per minute: {cpu / minutes * 1000:.1f} ms ({cpu / (end - start) * 100:.3f} % of a core)")
PY

#!/usr/bin/env bash
# The main job: builds the plug-in and the host simulator with the default preset, then plays
# an incoming call through the real plug-in and prints the timeline of everything that crosses
# each boundary. Extra arguments go to colloq-sim (e.g. --log, --json).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
./scripts/bootstrap.sh
cmake --preset default >/dev/null
cmake --build --preset default --target colloq-sim
exec ./build/default/tools/colloq-sim/colloq-sim "$@" examples/incoming-call.scenario

#!/usr/bin/env bash
# The main job: builds the substitute device runtime and its demo, then plays a softphone
# session against a simulated headset (plug in, answer from the headset, dial, unplug).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
./scripts/bootstrap.sh
cmake --preset default >/dev/null
cmake --build --preset default --target vexil-demo
exec ./build/default/tools/vexil-demo/vexil-demo "$@"

#!/usr/bin/env bash
# Installs what is missing, builds with the given preset (default: "default") and runs the tests.
set -euo pipefail
preset=${1:-default}
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
./scripts/bootstrap.sh
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset"
ctest --preset "$preset" -j"$(nproc)"

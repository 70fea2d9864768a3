#!/usr/bin/env bash
# Builds the benchmarks with the "bench" preset (Release) and runs bql-bench through the real
# plug-in, the test host, the substitute runtime and a hub process; see BENCHMARKS.md.
#
#   ./scripts/run-benchmarks.sh --smoke   small counts, no targets held (CI)
#   ./scripts/run-benchmarks.sh [--full]  the full-size run of BENCHMARKS.md
#
# Further arguments go to bql-bench (e.g. --json figures.json, --phases direct,hub).
set -euo pipefail
mode=()
case "${1:-}" in
  --smoke) mode=(--smoke); shift ;;
  --full) shift ;;
esac
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
./scripts/bootstrap.sh
cmake --preset bench >/dev/null
cmake --build --preset bench --target bql-bench bql-bench-hub -j "$(nproc)"
echo "bql-bench on $(nproc) cores, $(date -u '+%Y-%m-%d %H:%M UTC')"
exec ./build/bench/benchmarks/bql-bench "${mode[@]}" "$@"

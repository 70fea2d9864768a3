#!/usr/bin/env bash
# Builds the libFuzzer targets (preset "fuzz": clang, ASan+UBSan) and runs each for a bounded
# time on a scratch copy of its committed seed corpus, so the corpus in the repository does not
# grow. Any sanitizer report, crash, time-out or broken property aborts the fuzzer; the script
# then prints the end of its output, keeps the failing input and fails.
#
#   scripts/run-fuzzers.sh [seconds-per-fuzzer]      (default 60)
#
# BQL_FUZZ_BUILD_DIR overrides the build folder (default: the preset's build/fuzz). Failing
# inputs are kept in <build folder>/fuzz-artifacts; replay one with
#   <build folder>/fuzz/<fuzzer> <input>
set -euo pipefail

seconds=${1:-60}
if ! [[ "$seconds" =~ ^[1-9][0-9]*$ ]]; then
  echo "usage: $0 [seconds-per-fuzzer]" >&2
  exit 2
fi
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
build=${BQL_FUZZ_BUILD_DIR:-build/fuzz}
fuzzers=(fuzz_hub_records fuzz_client_calls fuzz_device_ids fuzz_text)

./scripts/bootstrap.sh
cmake --preset fuzz -B "$build" >/dev/null
cmake --build "$build" -j"$(nproc)" --target fuzzers

scratch=$(mktemp -d "${TMPDIR:-/tmp}/bql-fuzz-run.XXXXXX")
trap 'rm -rf "$scratch"' EXIT
artifacts="$build/fuzz-artifacts"
mkdir -p "$artifacts"

export ASAN_OPTIONS="abort_on_error=1:detect_leaks=1:strict_string_checks=1:detect_stack_use_after_return=1"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
export LSAN_OPTIONS="suppressions=$root/tests/sanitizers/lsan.supp"

failed=()
for fuzzer in "${fuzzers[@]}"; do
  corpus="$scratch/corpus/$fuzzer"
  mkdir -p "$corpus" "$scratch/tmp/$fuzzer"
  cp "fuzz/corpus/$fuzzer/"* "$corpus/"
  options=(-max_total_time="$seconds" -timeout=30 -rss_limit_mb=4096 -print_final_stats=1
           -artifact_prefix="$artifacts/$fuzzer-")
  dictionary="fuzz/dictionaries/$fuzzer.dict"
  [ -f "$dictionary" ] && options+=(-dict="$dictionary")
  log="$scratch/$fuzzer.log"
  echo "== $fuzzer: ${seconds} s"
  # The plug-in's fuzzers keep their own scratch folders (logs, ports, a stand-in ps) in TMPDIR.
  if TMPDIR="$scratch/tmp/$fuzzer" "$build/fuzz/$fuzzer" "${options[@]}" "$corpus" >"$log" 2>&1; then
    grep -E '^#[0-9]+[[:space:]]+DONE' "$log" | tail -n 1 || true
  else
    echo "!! $fuzzer failed; the end of its output:"
    tail -n 60 "$log"
    failed+=("$fuzzer")
  fi
done

if [ ${#failed[@]} -ne 0 ]; then
  echo "fuzzers that failed: ${failed[*]} (inputs in $artifacts)"
  exit 1
fi
echo "all ${#fuzzers[@]} fuzzers ran ${seconds} s each without a finding"

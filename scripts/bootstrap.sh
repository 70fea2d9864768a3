#!/usr/bin/env bash
# Installs the Debian packages this project builds and tests with. Safe to run again:
# nothing is installed when every package is already present.
set -euo pipefail

packages=(
  g++ clang libclang-rt-14-dev cmake ninja-build make pkg-config
  libboost-thread-dev libboost-system-dev libboost-chrono-dev libboost-locale-dev libboost-dev
  liblog4cxx-dev libre2-dev
  libgtest-dev libgmock-dev googletest libbenchmark-dev
  procps
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

sudo_cmd=()
[ "$(id -u)" -eq 0 ] || sudo_cmd=(sudo)
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -q
"${sudo_cmd[@]}" apt-get install -y -q --no-install-recommends "${missing[@]}"

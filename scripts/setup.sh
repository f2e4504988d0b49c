#!/usr/bin/env bash
# Installs whatever the build needs (Debian 12, run as root or with sudo) and
# builds the library, the tool, the tests and the benchmarks into build/.
# Usage: scripts/setup.sh [BUILD_DIR [extra cmake arguments...]]
set -euo pipefail
cd "$(dirname "$0")/.."

packages=(g++ make cmake pkg-config libpoco-dev libgtest-dev libgmock-dev libbenchmark-dev)
# A fuzzing build (-DKORVO_BUILD_FUZZ=ON, see scripts/fuzz.sh) needs clang and its libFuzzer runtime.
case " $* " in *KORVO_BUILD_FUZZ=ON*) packages+=(clang libclang-rt-14-dev) ;; esac
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "== installing: ${missing[*]}"
  sudo_cmd=""
  [ "$(id -u)" -eq 0 ] || sudo_cmd="sudo"
  export DEBIAN_FRONTEND=noninteractive
  $sudo_cmd apt-get update -qq
  $sudo_cmd apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

build_dir=${1:-build}
shift || true
cmake -S . -B "$build_dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" >/dev/null
cmake --build "$build_dir" -j "$(nproc)"

#!/usr/bin/env bash
# Sets everything up, then builds and runs the whole test suite twice:
# a plain build, and one under AddressSanitizer + UndefinedBehaviorSanitizer;
# then fuzzes each libFuzzer target briefly (clang, about a minute in all).
set -euo pipefail
cd "$(dirname "$0")/.."
jobs=$(nproc)

# The size of the suite against the code it tests, in non-blank lines: the
# tests (tests/, without its data) against the C++ of the library, the tool,
# the benchmarks, the examples and the fuzz targets.
lines() { find "$@" -type f | xargs cat | grep -c -v -E '^[[:space:]]*$'; }
test_lines=$(lines tests -not -path 'tests/data/*')
code_lines=$(lines src include tools bench examples fuzz \( -name '*.h' -o -name '*.cpp' \))
awk -v t="$test_lines" -v c="$code_lines" 'BEGIN { printf "== tests: %d lines, code: %d lines, tests are %.2f of the code\n", t, c, t / c }'

echo "== plain build"
scripts/setup.sh build
(cd build && ctest --output-on-failure -j "$jobs")

echo "== sanitizer build (address, undefined)"
scripts/setup.sh build-asan -DKORVO_SANITIZE=ON -DKORVO_BUILD_BENCH=OFF -DCMAKE_BUILD_TYPE=Debug
export ASAN_OPTIONS=halt_on_error=1:detect_leaks=1
export UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
(cd build-asan && ctest --output-on-failure -j "$jobs")

echo "== fuzzing smoke run (libFuzzer)"
scripts/fuzz.sh smoke


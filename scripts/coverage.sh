#!/usr/bin/env bash
# Line coverage of the library (src/) by the test suite, with gcov and lcov:
# builds build-cov/, runs every test, prints the summary and writes an HTML
# report into build-cov/coverage/.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh build-cov -DKORVO_COVERAGE=ON -DCMAKE_BUILD_TYPE=Debug -DKORVO_BUILD_BENCH=OFF >/dev/null
command -v lcov >/dev/null || {
  sudo_cmd=""
  [ "$(id -u)" -eq 0 ] || sudo_cmd="sudo"
  $sudo_cmd apt-get install -y -qq --no-install-recommends lcov
}
lcov --quiet --zerocounters --directory build-cov
(cd build-cov && ctest -j "$(nproc)" --output-on-failure >/dev/null)
lcov --quiet --capture --directory build-cov --output-file build-cov/all.info 2>/dev/null
lcov --quiet --extract build-cov/all.info "$(pwd)/src/*" --output-file build-cov/src.info
genhtml --quiet --output-directory build-cov/coverage build-cov/src.info
lcov --summary build-cov/src.info 2>&1 | grep -E 'lines|functions'

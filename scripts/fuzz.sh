#!/usr/bin/env bash
# Coverage-guided fuzzing with libFuzzer (clang), into build-fuzz/.
#
#   scripts/fuzz.sh TARGET SECONDS [libFuzzer options...]
#       runs one target (parse, reencode, writer, convert, algorithms) for
#       SECONDS on one core
#   scripts/fuzz.sh smoke [SECONDS]
#       runs every target for SECONDS (default 12), as the test command does
#   scripts/fuzz.sh long [TARGET...]
#       the long run: 10 million inputs of parse, 1 million of each other
#       target, up to 4 KB each (most faults need few octets, and small
#       inputs run ten times faster), then 3 minutes per target of inputs up
#       to 64 KB (about 50 min on one core)
#   scripts/fuzz.sh seeds
#       writes the seed corpus fuzz/corpus/ anew (needs the plain build in build/)
#
# Inputs that find something land in build-fuzz/findings/TARGET/; reproduce
# one with build-fuzz/fuzz/fuzz_TARGET FILE, and keep it, once fixed, in
# fuzz/regressions/TARGET/, which the test suite replays. New inputs that
# widen the coverage collect in build-fuzz/corpus/TARGET/.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$(pwd)
targets=(parse reencode writer convert algorithms)

build() {
  scripts/setup.sh build-fuzz -DCMAKE_CXX_COMPILER=clang++ -DKORVO_BUILD_FUZZ=ON \
    -DKORVO_BUILD_TESTS=OFF -DKORVO_BUILD_BENCH=OFF -DKORVO_BUILD_EXAMPLES=OFF >/dev/null
}

# run TARGET libFuzzer-options...
run() {
  local target=$1
  shift
  local dict=()
  case $target in
    parse|reencode|algorithms) dict=(-dict="$root/fuzz/fastinfoset.dict") ;;
    convert) dict=(-dict="$root/fuzz/xml.dict") ;;
  esac
  mkdir -p "build-fuzz/corpus/$target" "build-fuzz/findings/$target" "fuzz/regressions/$target"
  # An empty working directory and no input: documents may name files
  # (external vocabularies) relative to it, and none should exist.
  local work status=0
  work=$(mktemp -d)
  # A small quarantine keeps freed memory poisoned long enough for one input
  # and makes the runs twice as fast.
  export ASAN_OPTIONS="quarantine_size_mb=16:detect_leaks=1${ASAN_OPTIONS:+:$ASAN_OPTIONS}"
  export UBSAN_OPTIONS="print_stacktrace=1${UBSAN_OPTIONS:+:$UBSAN_OPTIONS}"
  # The limits of the library: 64 KB inputs within a second, and memory a
  # small multiple of the input (no single allocation above 64 MB; the
  # sanitizers' own share of the resident memory is about 100 MB).
  (cd "$work" && "$root/build-fuzz/fuzz/fuzz_$target" \
    -max_len=65536 -timeout=1 -rss_limit_mb=1024 -malloc_limit_mb=64 \
    -artifact_prefix="$root/build-fuzz/findings/$target/" -print_final_stats=1 "${dict[@]}" "$@" \
    "$root/build-fuzz/corpus/$target" "$root/fuzz/corpus/$target" "$root/fuzz/regressions/$target" </dev/null) || status=$?
  rm -rf "$work"
  return $status
}

case ${1:-} in
  smoke)
    build
    for target in "${targets[@]}"; do
      log=build-fuzz/findings/$target.log
      mkdir -p build-fuzz/findings
      if run "$target" -max_total_time="${2:-12}" >"$log" 2>&1; then
        echo "== fuzzed $target: $(grep -E '^#[0-9]+.*DONE' "$log" | tail -1)"
      else
        grep -E '==FINDING==|ERROR|SUMMARY|Test unit written' "$log" || tail -20 "$log"
        echo "fuzzing $target found a fault: see $log"
        exit 1
      fi
    done
    ;;
  long)
    build
    shift
    [ $# -eq 0 ] || targets=("$@")
    for target in "${targets[@]}"; do
      runs=1000000
      [ "$target" = parse ] && runs=10000000
      echo "== fuzzing $target for $runs inputs up to 4 KB"
      run "$target" -runs=$runs -max_len=4096
      echo "== fuzzing $target for 180 s with inputs up to 64 KB"
      run "$target" -max_total_time=180
    done
    ;;
  seeds)
    [ -x build/fuzz/MakeSeeds ] || scripts/setup.sh build
    rm -rf fuzz/corpus
    build/fuzz/MakeSeeds fuzz/corpus
    ;;
  parse|reencode|writer|convert|algorithms)
    [ $# -ge 2 ] || { echo "usage: $0 TARGET SECONDS [libFuzzer options...]" >&2; exit 2; }
    target=$1
    seconds=$2
    shift 2
    build
    run "$target" -max_total_time="$seconds" "$@"
    ;;
  *)
    sed -n '2,18p' "$0" >&2
    exit 2
    ;;
esac

#!/usr/bin/env bash
# Installs what the tests need if missing, builds, and runs the tests.
#
#   scripts/test.sh          every test in an optimised build and in a build under
#                            AddressSanitizer and UndefinedBehaviorSanitizer, the
#                            damaged-file tests on a fixed sample of their cases,
#                            then each fuzz target for 10 seconds
#   scripts/test.sh --long   the same with the full damaged-file sets, then the
#                            end-to-end tests' programs under valgrind and each
#                            fuzz target for 5 minutes
set -euo pipefail
cd "$(dirname "$0")/.."

long=0
case "${1:-}" in
  "") ;;
  --long) long=1 ;;
  *) echo "usage: scripts/test.sh [--long]" >&2; exit 2 ;;
esac

scripts/install-deps.sh --tests

# Each stage's header, and at the end the time each took.
timings=()
stage_name=""
stage_start=$SECONDS
stage() {
  [[ -n $stage_name ]] && timings+=("$(printf '%-34s %5d s' "$stage_name" $((SECONDS - stage_start)))")
  stage_name=$1
  stage_start=$SECONDS
  [[ -n $1 ]] && echo "== $1"
  return 0
}

jobs=$(nproc 2>/dev/null || echo 2)
fuzz_seconds=10
if [[ $long == 1 ]]; then
  # The damaged-file tests read it and run their full sets.
  export PELKRIN_LONG=1
  fuzz_seconds=300
fi

stage "optimised build and tests"
# Tests and benchmark tools on, whatever an earlier configuring (scripts/example.sh) chose.
cmake -S . -B out/release -G Ninja -DCMAKE_BUILD_TYPE=Release -DPELKRIN_TESTS=ON -DPELKRIN_BENCH=ON >/dev/null
cmake --build out/release -j "$jobs"
ctest --test-dir out/release --output-on-failure -j "$jobs"

stage "sanitizer build and tests"
cmake -S . -B out/sanitize -G Ninja -DCMAKE_BUILD_TYPE=Debug -DPELKRIN_SANITIZE=ON -DPELKRIN_TESTS=ON -DPELKRIN_BENCH=OFF >/dev/null
cmake --build out/sanitize -j "$jobs"
ASAN_OPTIONS=detect_leaks=1:abort_on_error=0 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
  ctest --test-dir out/sanitize --output-on-failure -j "$jobs"

if [[ $long == 1 ]]; then
  stage "end-to-end tests under valgrind"
  PELKRIN_TEST_WRAPPER="valgrind --error-exitcode=1 -q" out/release/tests/pelkrin_tests \
    --gtest_filter='CliTexts*:RunWorkedExample*:OutputFilesEdge*:RunEdge*:RunMessages*:RealAssemblies*:ViewTool*'
fi

if [[ $long == 1 && -x out/release/Pelkrin-bam ]]; then
  stage "IGV shows Pelkrin-bam's files"
  igv=$(mktemp -d)
  out/release/Pelkrin-bam -o "$igv/example" example/example.ace example/example.sff >/dev/null
  scripts/igv-snapshot.sh "$igv/example.fa" "$igv/example.bam" Contig1:40-140 "$igv/example.png"
  rm -rf "$igv"
fi

stage "fuzz targets, ${fuzz_seconds} s each"
fuzz/run-fuzzers.sh "$fuzz_seconds"
stage ""
echo "== all passed; times:"
printf '   %s\n' "${timings[@]}"
echo "   $(printf '%-34s %5d s' total "$SECONDS")"

#!/usr/bin/env bash
# Installs what the tests need if missing, then builds and runs every test twice
# (an optimised build, and a build under AddressSanitizer and
# UndefinedBehaviorSanitizer), runs the end-to-end tests' programs under
# valgrind, then runs every fuzz target for 30 seconds.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh --tests

jobs=$(nproc 2>/dev/null || echo 2)

echo "== optimised build"
cmake -S . -B out/release -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build out/release -j "$jobs"
ctest --test-dir out/release --output-on-failure -j "$jobs"

echo "== sanitizer build"
cmake -S . -B out/sanitize -G Ninja -DCMAKE_BUILD_TYPE=Debug -DPELKRIN_SANITIZE=ON -DPELKRIN_BENCH=OFF >/dev/null
cmake --build out/sanitize -j "$jobs"
ASAN_OPTIONS=detect_leaks=1:abort_on_error=0 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
  ctest --test-dir out/sanitize --output-on-failure -j "$jobs"

echo "== end-to-end tests under valgrind"
PELKRIN_TEST_WRAPPER="valgrind --error-exitcode=1 -q" out/release/tests/pelkrin_tests \
  --gtest_filter='CliTexts*:RunWorkedExample*:OutputFilesEdge*:RunEdge*:RunMessages*:RealAssemblies*:ViewTool*'

echo "== fuzz targets, 30 s each"
fuzz/run-fuzzers.sh 30

#!/usr/bin/env bash
# Builds Pelkrin (and Pelkrin-view) and runs Pelkrin on the example assembly that
# ships in example/.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
# The tests and the benchmark tools are not needed here (scripts/test.sh builds them).
cmake -S . -B out/release -G Ninja -DCMAKE_BUILD_TYPE=Release -DPELKRIN_TESTS=OFF -DPELKRIN_BENCH=OFF >/dev/null
cmake --build out/release --target Pelkrin Pelkrin-view -j "$(nproc 2>/dev/null || echo 2)" >/dev/null
out/release/Pelkrin -f example/example.ace example/example.sff
echo "== head of example/example.qdx"
head -n 5 example/example.qdx
echo "== head of example/example.reads (lines cut at 100 characters)"
head -n 8 example/example.reads | cut -c1-100

#!/usr/bin/env bash
# Times Pelkrin-view -m report on the 200,000-read benchmark assembly against
# Pelkrin on the same files, run in turn (a report, then a Pelkrin run, RUNS
# times each; page cache warm), and gives the medians and the largest file of
# the report. The report reads PREFIX.reads and PREFIX.qdx that Pelkrin -f
# wrote, so it is timed with them (against Pelkrin -f) and without them
# (against Pelkrin without -f).
#
#   bench/report-bench.sh [WORK_DIR] [RUNS]
#
# Needs about 3.5 GB in WORK_DIR (default /tmp/pelkrin-bench).
set -euo pipefail
cd "$(dirname "$0")/.."
work=${1:-/tmp/pelkrin-bench}
runs=${2:-5}
mkdir -p "$work"
cmake -S . -B out/release -G Ninja -DCMAKE_BUILD_TYPE=Release -DPELKRIN_BENCH=ON >/dev/null
cmake --build out/release --target Pelkrin Pelkrin-view make_assembly >/dev/null
prefix=$work/asm200000
[[ -s $prefix.sff && -s $prefix.ace ]] || out/release/bench/make_assembly "$prefix" 200000 800 100 99 1

wall() { /usr/bin/time -f '%e' "$@" 2>&1 >/dev/null | tail -n 1; }
median() { sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }

for flags in "-f" ""; do
  out/release/Pelkrin $flags "$prefix.ace" "$prefix.sff" >/dev/null
  [[ -n $flags ]] || rm -f "$prefix.qdx"  # a report without flowgrams
  report=() pelkrin=()
  # The first run writes a new folder, the others write over it: on a file
  # system where many files were just deleted, creating the report's
  # thousands of files costs the first run a good deal more.
  rm -rf "$work/report"
  for ((i = 0; i < runs; ++i)); do
    report+=("$(wall out/release/Pelkrin-view -m report -o "$work/report" "$prefix.ace")")
    if [[ -n $flags ]]; then
      pelkrin+=("$(wall out/release/Pelkrin -f "$prefix.ace" "$prefix.sff")")
    else
      pelkrin+=("$(wall out/release/Pelkrin "$prefix.ace" "$prefix.sff")")
      rm -f "$prefix.qdx"
    fi
  done
  r=$(printf '%s\n' "${report[@]}" | median)
  p=$(printf '%s\n' "${pelkrin[@]}" | median)
  largest=$(find "$work/report" -type f -printf '%s %f\n' | sort -n | tail -n 1)
  page=$(find "$work/report" -type f -name '*.html' -printf '%s %f\n' | sort -n | tail -n 1)
  total=$(du -sm "$work/report" | cut -f 1)
  printf 'Pelkrin %-3s median %5.2f s | report median %5.2f s | ratio %.2f | largest page %s B, largest file %s B, %s MB in all\n' \
    "${flags:-   }" "$p" "$r" "$(awk "BEGIN { print $r / $p }")" "$page" "$largest" "$total"
  echo "  report runs (the first into a new folder): ${report[*]}; Pelkrin runs: ${pelkrin[*]}"
done
rm -rf "$work/report"

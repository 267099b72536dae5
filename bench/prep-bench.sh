#!/usr/bin/env bash
# Times Pelkrin-prep on the generated assembly of 200,000 reads of 800 flows
# (bench/make_assembly, as bench/run-bench.sh makes it):
#   - `Pelkrin-prep sff OUT IN` against `cat IN > OUT`, the floor of copying the file,
#     on the file as generated and on a little-endian copy of it (whose records
#     are all converted);
#   - `Pelkrin-prep check ACE SFF` against a Pelkrin run on the same pair.
# The two commands of a pair run in turn, A B A B ..., page cache warm, each
# writing a new output file; prints the median wall seconds of each and the
# ratio of the medians.
#
#   bench/prep-bench.sh [WORK_DIR] [RUNS]
#
# Needs about 2 GB in WORK_DIR (default /tmp/pelkrin-bench).
set -euo pipefail
cd "$(dirname "$0")/.."
work=${1:-/tmp/pelkrin-bench}
runs=${2:-5}
reads=200000
mkdir -p "$work"

cmake -S . -B out/release -G Ninja -DCMAKE_BUILD_TYPE=Release -DPELKRIN_BENCH=ON >/dev/null
cmake --build out/release -j 2 --target Pelkrin Pelkrin-prep make_assembly >/dev/null
prep=$PWD/out/release/Pelkrin-prep
pelkrin=$PWD/out/release/Pelkrin
prefix=$work/asm$reads
[[ -s $prefix.sff && -s $prefix.ace ]] || out/release/bench/make_assembly "$prefix" "$reads" 800 100 99 1
cat "$prefix.sff" "$prefix.ace" >/dev/null

# Wall seconds of one run of "$@".
wall() {
  local start end
  start=$(date +%s.%N)
  "$@" >/dev/null 2>&1 || true
  end=$(date +%s.%N)
  awk "BEGIN { printf \"%.3f\", $end - $start }"
}

median() { sort -n | awk '{ a[NR] = $1 } END { print a[int((NR + 1) / 2)] }'; }

# pair LABEL_A LABEL_B -- A ... -- B ...: RUNS alternating runs after one warm-up of each.
pair() {
  local label_a=$1 label_b=$2
  shift 3
  local a=() b=()
  while [[ $1 != -- ]]; do a+=("$1"); shift; done
  shift
  b=("$@")
  wall "${a[@]}" >/dev/null
  wall "${b[@]}" >/dev/null
  local ta=() tb=()
  for ((i = 0; i < runs; ++i)); do
    # Each run writes a new file: freeing the last run's pages is left out of both.
    rm -f "$work/merged.sff" "$work/copy.sff"
    ta+=("$(wall "${a[@]}")")
    rm -f "$work/merged.sff" "$work/copy.sff"
    tb+=("$(wall "${b[@]}")")
  done
  local ma mb
  ma=$(printf '%s\n' "${ta[@]}" | median)
  mb=$(printf '%s\n' "${tb[@]}" | median)
  printf '%-42s %8s s\n%-42s %8s s\n%-42s %8s\n' "$label_a" "$ma" "$label_b" "$mb" "ratio" \
    "$(awk "BEGIN { printf \"%.2f\", $ma / $mb }")"
}

echo "$reads reads, $(du -mL "$prefix.sff" | cut -f1) MB SFF file, $(du -mL "$prefix.ace" | cut -f1) MB ACE file; medians of $runs runs"
pair "Pelkrin-prep sff OUT IN" "cat IN > OUT" -- "$prep" sff "$work/merged.sff" "$prefix.sff" -- \
  sh -c "cat '$prefix.sff' > '$work/copy.sff'"
[[ -s $work/le$reads.sff ]] || python3 bench/sff_to_little_endian.py "$prefix.sff" "$work/le$reads.sff"
pair "Pelkrin-prep sff OUT IN (little-endian)" "cat IN > OUT" -- "$prep" sff "$work/merged.sff" "$work/le$reads.sff" -- \
  sh -c "cat '$work/le$reads.sff' > '$work/copy.sff'"
pair "Pelkrin-prep check ACE SFF" "Pelkrin ACE SFF" -- "$prep" check "$prefix.ace" "$prefix.sff" -- \
  "$pelkrin" "$prefix.ace" "$prefix.sff"
rm -f "$work/merged.sff" "$work/copy.sff"

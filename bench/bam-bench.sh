#!/usr/bin/env bash
# Times Pelkrin-bam on the 200,000-read benchmark pair, in turn with, in one
# run:
#   ace2sam   what a user would run instead: samtools' ace2sam, its header
#             joined back, through samtools sort -@2 and samtools index (it
#             writes no base qualities and no flow signals);
#   floor     the floor of Pelkrin-bam's own job: reading both inputs once,
#             and samtools view -@2 -b compressing again the BAM file
#             Pelkrin-bam wrote.
# Each case runs RUNS times, the cases in turn within each round, with the
# page cache warm; the medians are printed, with Pelkrin-bam's peak anonymous
# memory (bench/run_measured) and its budget: 100 MB + 100 bytes a SFF read +
# the records of the largest contig.
#
#   bench/bam-bench.sh [WORK_DIR] [RUNS]
#
# Needs samtools (with ace2sam) and about 2 GB in WORK_DIR (default
# /tmp/pelkrin-bench).
set -euo pipefail
cd "$(dirname "$0")/.."
work=${1:-/tmp/pelkrin-bench}
runs=${2:-5}
mkdir -p "$work"
command -v ace2sam >/dev/null || { echo "bam-bench.sh: needs samtools' ace2sam (Debian samtools)" >&2; exit 2; }
cmake -S . -B out/release -G Ninja -DCMAKE_BUILD_TYPE=Release -DPELKRIN_BENCH=ON >/dev/null
cmake --build out/release --target Pelkrin-bam make_assembly run_measured >/dev/null
measured=$PWD/out/release/bench/run_measured
prefix=$work/asm200000
[[ -s $prefix.sff && -s $prefix.ace ]] || out/release/bench/make_assembly "$prefix" 200000 800 100 99 1

bam() { out/release/Pelkrin-bam --threads 2 -o "$work/bench" "$prefix.ace" "$prefix.sff" >/dev/null; }
ace2sam_pipeline() {
  ace2sam "$prefix.ace" >"$work/ace2sam.sam" 2>"$work/ace2sam.header"
  { sed -n 's/^H //p' "$work/ace2sam.header"; cat "$work/ace2sam.sam"; } |
    samtools sort -@2 -o "$work/ace2sam.bam" - 2>/dev/null
  samtools index -@2 "$work/ace2sam.bam"
}
floor() {
  cat "$prefix.ace" "$prefix.sff" >/dev/null
  samtools view -@2 -b -o "$work/floor.bam" "$work/bench.bam"
}
# Wall seconds (and, for Pelkrin-bam, peak anonymous kB) of one run.
timed() { /usr/bin/time -f '%e' "$@" 2>&1 >/dev/null | tail -n 1; }
median() { sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }

bam  # the floor compresses the file Pelkrin-bam writes
ours=() theirs=() floors=() memory=()
for ((i = 0; i < runs; ++i)); do
  line=$("$measured" out/release/Pelkrin-bam --threads 2 -o "$work/bench" "$prefix.ace" "$prefix.sff" 2>&1 >/dev/null | tail -n 1)
  ours+=("$(echo "$line" | awk '{print $1}')")
  memory+=("$(echo "$line" | awk '{print $4}')")
  theirs+=("$(timed bash -c "$(declare -f ace2sam_pipeline); prefix='$prefix' work='$work'; ace2sam_pipeline")")
  floors+=("$(timed bash -c "$(declare -f floor); prefix='$prefix' work='$work'; floor")")
done
m_ours=$(printf '%s\n' "${ours[@]}" | median)
m_theirs=$(printf '%s\n' "${theirs[@]}" | median)
m_floor=$(printf '%s\n' "${floors[@]}" | median)
m_memory=$(printf '%s\n' "${memory[@]}" | median)
reads=$(grep -c '^RD ' "$prefix.ace" || true)
largest=$(awk '/^CO /{ if ($4 > m) m = $4 } END { print m }' "$prefix.ace")
echo "Pelkrin-bam on 200,000 reads of 800 flows ($runs runs, medians, 2 threads):"
printf '  Pelkrin-bam                   %6.2f s\n' "$m_ours"
printf '  ace2sam | sort | index        %6.2f s   Pelkrin-bam faster by %.2f\n' "$m_theirs" "$(awk -v a="$m_theirs" -v b="$m_ours" 'BEGIN { print a / b }')"
printf '  floor (read + recompress)     %6.2f s   Pelkrin-bam / floor %.2f\n' "$m_floor" "$(awk -v a="$m_ours" -v b="$m_floor" 'BEGIN { print a / b }')"
echo "  peak anonymous memory ${m_memory} kB; budget 100 MB + 100 bytes x $reads reads + the records of the largest contig ($largest reads)"
ls -l "$work/bench.bam" "$work/ace2sam.bam" | awk '{print "  " $5 " bytes  " $9}'

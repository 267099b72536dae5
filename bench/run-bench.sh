#!/usr/bin/env bash
# Times Pelkrin on generated assemblies (reads of 800 flows, the ACE file using
# 99% of them) against the floor of the job and against vsearch.
#
#   bench/run-bench.sh [-n RUNS] [-s "SIZES"] [WORK_DIR]
#
#   -n RUNS    timed rounds per size (default 7), after one warm-up round
#   -s SIZES   read counts, space separated (default "200000 1000000")
#   WORK_DIR   where the pairs are generated and kept (default /tmp/pelkrin-bench)
#
# Disk: a pair takes about 3.6 kB per read (the 1,000,000-read pair 3.6 GB),
# and the runs write about 5 kB per read more (the -f reads file and its copy),
# so the default sizes need about 14 GB in WORK_DIR. Pass -s 200000 for a run
# that needs under 3 GB.
#
# Run as root, the script empties the page cache before each run (drop_caches)
# and then reads the run's inputs, so that every run finds them freshly cached:
# on a machine that had been running for hours, what the page cache held moved
# Pelkrin's times by up to 60 % (0.21 s to 0.34 s for the same binary).
# Cases, run in turn within each round (A, B, C, ... A, B, C, ...), each after
# a sync and a reading of the files it reads (page cache warm):
#   Pelkrin            Pelkrin ACE SFF
#   floor              the job's own reading and writing done once:
#                      cat SFF ACE > /dev/null; cat PREFIX.reads > copy
#   Pelkrin -f, floor -f   the same with flowgrams (the -f reads file)
#   vsearch            vsearch --sff_convert SFF --sff_clip --fastqout FILE
# Per case: median wall, user and sys seconds of the rounds, and the largest
# peak RssAnon (anonymous memory the process allocated, sampled every 10 ms;
# pages of mapped input files are page cache and are not counted).
set -euo pipefail
cd "$(dirname "$0")/.."

runs=7
sizes="200000 1000000"
while getopts "n:s:" option; do
  case $option in
    n) runs=$OPTARG ;;
    s) sizes=$OPTARG ;;
    *) sed -n '2,12p' "$0" >&2; exit 2 ;;
  esac
done
shift $((OPTIND - 1))
work=${1:-/tmp/pelkrin-bench}
mkdir -p "$work"

scripts/install-deps.sh
command -v vsearch >/dev/null 2>&1 || {
  sudo=""; [[ $(id -u) -eq 0 ]] || sudo="sudo"
  $sudo apt-get install -y -qq vsearch >/dev/null
}
cmake -S . -B out/release -G Ninja -DCMAKE_BUILD_TYPE=Release -DPELKRIN_BENCH=ON >/dev/null
cmake --build out/release --target Pelkrin make_assembly run_measured >/dev/null
pelkrin=$PWD/out/release/Pelkrin
measured=$PWD/out/release/bench/run_measured

# Puts what the runs before wrote on the disk, then reads the files given, so
# that every run starts alike: its inputs in the page cache, no writing of
# another run's pages pending (cat leaves them dirty; the next run would pay),
# and, as root, nothing else cached.
settle() {
  sync
  if [[ $(id -u) -eq 0 ]]; then echo 3 >/proc/sys/vm/drop_caches; fi
  cat "$@" >/dev/null
}

# Appends "wall user sys peak_kB" of one run of "$@" to the file $1.
sample() {
  local into=$1
  shift
  "$measured" "$@" 2>>"$into" >/dev/null
  # vsearch's output is not kept. The floors' copies are: each floor replaces
  # a copy of the same size, as each Pelkrin run replaces its output of the
  # run before (a file written anew would take pages from memory the system
  # handed back, which on some virtual machines costs a second a gigabyte).
  rm -f "$work/out.fq"
}

# median wall, user, sys and largest peak (MB, 10^6 bytes) of a samples file
summary() {
  awk '
    { wall[NR] = $1; user[NR] = $2; sys[NR] = $3; if ($4 > peak) peak = $4 }
    function median(a, n,   i, j, t) {
      for (i = 1; i <= n; ++i) for (j = i + 1; j <= n; ++j) if (a[j] < a[i]) { t = a[i]; a[i] = a[j]; a[j] = t }
      return n % 2 ? a[(n + 1) / 2] : (a[n / 2] + a[n / 2 + 1]) / 2
    }
    END { printf "%.3f %.3f %.3f %.1f\n", median(wall, NR), median(user, NR), median(sys, NR), peak * 1024 / 1e6 }' "$1"
}

calc() { awk "BEGIN { printf \"%.2f\", $1 }"; }
row() { printf '%-9s %-36s %8s %8s %8s %11s  %s\n' "$@"; }

declare -A plain_wall
row reads case wall_s user_s sys_s RssAnon_MB ""
for reads in $sizes; do
  pair=$work/asm$reads
  [[ -s $pair.sff && -s $pair.ace ]] || out/release/bench/make_assembly "$pair" "$reads" 800 100 99 1
  # Each flag writes beside its own link to the ACE file, so the runs never share an output.
  mkdir -p "$work/plain" "$work/flows"
  ln -sf "$pair.ace" "$work/plain/asm$reads.ace"
  ln -sf "$pair.ace" "$work/flows/asm$reads.ace"
  plain=$work/plain/asm$reads
  flows=$work/flows/asm$reads
  samples=$work/samples.$reads
  rm -rf "$samples"
  mkdir -p "$samples"
  for ((round = 0; round <= runs; ++round)); do
    # Round 0 warms the page cache and makes the reads files the floors copy.
    into=$samples
    ((round > 0)) || { into=$samples/warm-up; mkdir -p "$into"; }
    settle "$pair.sff" "$pair.ace"
    sample "$into/pelkrin" "$pelkrin" "$plain.ace" "$pair.sff"
    settle "$pair.sff" "$pair.ace" "$plain.reads"
    sample "$into/floor" sh -c "cat '$pair.sff' '$pair.ace' > /dev/null; cat '$plain.reads' > '$work/copy.plain'"
    settle "$pair.sff" "$pair.ace"
    sample "$into/pelkrin-f" "$pelkrin" -f "$flows.ace" "$pair.sff"
    settle "$pair.sff" "$pair.ace" "$flows.reads"
    sample "$into/floor-f" sh -c "cat '$pair.sff' '$pair.ace' > /dev/null; cat '$flows.reads' > '$work/copy.flows'"
    settle "$pair.sff"
    sample "$into/vsearch" vsearch --sff_convert "$pair.sff" --sff_clip --fastqout "$work/out.fq" --quiet
  done
  rm -f "$work/copy.plain" "$work/copy.flows"

  read -r wall user sys peak < <(summary "$samples/pelkrin")
  read -r fwall fuser fsys _ < <(summary "$samples/floor")
  read -r xwall xuser xsys xpeak < <(summary "$samples/pelkrin-f")
  read -r gwall guser gsys _ < <(summary "$samples/floor-f")
  read -r vwall vuser vsys vpeak < <(summary "$samples/vsearch")
  plain_wall[$reads]=$wall
  row "$reads" "Pelkrin" "$wall" "$user" "$sys" "$peak" "$(calc "$wall / $fwall") x floor"
  row "$reads" "floor" "$fwall" "$fuser" "$fsys" - ""
  row "$reads" "Pelkrin -f" "$xwall" "$xuser" "$xsys" "$xpeak" "$(calc "$xwall / $gwall") x floor -f"
  row "$reads" "floor -f" "$gwall" "$guser" "$gsys" - ""
  row "$reads" "vsearch --sff_convert --sff_clip" "$vwall" "$vuser" "$vsys" "$vpeak" \
    "Pelkrin $(calc "$vwall / $wall") x faster; $(calc "$vwall / $fwall") x floor"
  row "$reads" "memory budget (60 MB + 120 B/read)" - - - "$(calc "60 + 120 * $reads / 1000000")" ""
done
if [[ -n ${plain_wall[200000]:-} && -n ${plain_wall[1000000]:-} ]]; then
  echo "1,000,000 reads take $(calc "${plain_wall[1000000]} / ${plain_wall[200000]}") times as long as 200,000 (linear: 5)"
fi
echo "$runs rounds per size; $(nproc) cores; $(grep -m1 'model name' /proc/cpuinfo | cut -d: -f2 | sed 's/^ //')"

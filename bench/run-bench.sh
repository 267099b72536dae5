#!/usr/bin/env bash
# Times Pelkrin on generated assemblies of 50,000 and 200,000 reads of 800 flows
# (the ACE file uses 99% of them) against the floor of the job: reading both
# inputs once (cat sff ace > /dev/null) plus writing the output once
# (cat PREFIX.reads > copy). Also times `vsearch --sff_convert` (a C++ SFF
# reader) on the same SFF file. Page cache warm; medians of RUNS runs.
#
#   bench/run-bench.sh [WORK_DIR] [RUNS]
#
# Needs about 2.5 GB in WORK_DIR (default /tmp/pelkrin-bench).
set -euo pipefail
cd "$(dirname "$0")/.."
work=${1:-/tmp/pelkrin-bench}
runs=${2:-5}
mkdir -p "$work"

scripts/install-deps.sh
for tool in time vsearch; do
  command -v "$([[ $tool == time ]] && echo /usr/bin/time || echo "$tool")" >/dev/null 2>&1 || {
    sudo=""; [[ $(id -u) -eq 0 ]] || sudo="sudo"
    $sudo apt-get install -y -qq "$tool" >/dev/null
  }
done
cmake -S . -B out/release -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build out/release --target Pelkrin make_assembly >/dev/null
pelkrin=$PWD/out/release/Pelkrin

# median wall seconds, median user, median sys, largest peak KB of RUNS runs of "$@"
measure() {
  local samples=()
  "$@" >/dev/null 2>&1  # warm-up
  for ((i = 0; i < runs; ++i)); do
    samples+=("$(/usr/bin/time -f '%e %U %S %M' "$@" 2>&1 >/dev/null | tail -n 1)")
  done
  printf '%s\n' "${samples[@]}" | awk '
    { wall[NR] = $1; user[NR] = $2; sys[NR] = $3; if ($4 > peak) peak = $4 }
    function median(a, n,   i, j, t) {
      for (i = 1; i <= n; ++i) for (j = i + 1; j <= n; ++j) if (a[j] < a[i]) { t = a[i]; a[i] = a[j]; a[j] = t }
      return a[int((n + 1) / 2)]
    }
    END { printf "%.2f %.2f %.2f %d\n", median(wall, NR), median(user, NR), median(sys, NR), peak }'
}

calc() { awk "BEGIN { printf \"%.2f\", $1 }"; }

printf '%-8s %-22s %8s %8s %8s %10s\n' reads case wall_s user_s sys_s peak_MB
for reads in 50000 200000; do
  prefix=$work/asm$reads
  [[ -s $prefix.sff && -s $prefix.ace ]] || out/release/bench/make_assembly "$prefix" "$reads" 800 100 99 1
  cat "$prefix.sff" "$prefix.ace" >/dev/null
  for flags in "" "-f"; do
    label="pelkrin ${flags:-(no -f)}"
    read -r wall user sys peak < <(measure "$pelkrin" $flags "$prefix.ace" "$prefix.sff")
    read -r fwall fuser fsys fpeak < <(measure sh -c "cat '$prefix.sff' '$prefix.ace' > /dev/null; cat '$prefix.reads' > '$work/copy.reads'")
    printf '%-8s %-22s %8s %8s %8s %10.1f\n' "$reads" "$label" "$wall" "$user" "$sys" "$(calc "$peak / 1024")"
    printf '%-8s %-22s %8s %8s %8s %10s   ratio %.2f\n' "$reads" "floor ${flags:-(no -f)}" "$fwall" "$fuser" "$fsys" "-" \
      "$(calc "$wall / $fwall")"
  done
  read -r wall user sys peak < <(measure vsearch --sff_convert "$prefix.sff" --fastqout "$work/out.fq" --quiet)
  printf '%-8s %-22s %8s %8s %8s %10.1f\n' "$reads" "vsearch --sff_convert" "$wall" "$user" "$sys" "$(calc "$peak / 1024")"
  printf '%-8s %-22s %8s %8s %8s %10.1f\n' "$reads" "memory budget" - - - "$(calc "60 + 150 * $reads / 1048576")"
done
rm -f "$work/copy.reads" "$work/out.fq"

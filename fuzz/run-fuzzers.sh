#!/usr/bin/env bash
# Builds the libFuzzer targets with clang and runs each for SECONDS of fuzzing.
#
#   fuzz/run-fuzzers.sh SECONDS [TARGET ...]      targets: ace_reader sff_reader whole_run contig_views
#                                                 reads_file prep_ace prep_sff
#   fuzz/run-fuzzers.sh --merge [TARGET ...]      rewrites the committed corpus (below)
#
# Seeds come from the example assembly, the real files of tests/data, the
# committed corpus (fuzz/corpus/TARGET) and the regression inputs
# (fuzz/regressions/ace, sff, run, views, reads, prep_ace or prep_sff). The growing corpus is kept in
# out/fuzz-corpus, failing inputs in out/fuzz-artifacts: minimise one
# (-minimize_crash=1), copy it into the target's regression folder, which the
# test suite replays, and say what it is in fuzz/regressions/README.md. Exits
# non-zero when a target finds a crash, a leak, a hang (over 5 s) or an
# allocation over 64 MB. Prints each target's executions and CPU seconds.
#
# --merge keeps, of out/fuzz-corpus/TARGET and fuzz/corpus/TARGET, the smallest
# set of inputs that reaches code the seed files do not (libFuzzer's -merge=1,
# counting edges only, not how often each runs: a few dozen inputs a target
# instead of hundreds), and writes it to fuzz/corpus/TARGET.
set -euo pipefail
cd "$(dirname "$0")/.."
mode=${1:?usage: fuzz/run-fuzzers.sh SECONDS|--merge [TARGET ...]}
shift
targets=("$@")
[[ ${#targets[@]} -gt 0 ]] || targets=(ace_reader sff_reader whole_run contig_views reads_file prep_ace prep_sff bam_records)
data=tests/data

CXX=clang++ cmake -S . -B out/fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DPELKRIN_FUZZ=ON \
  -DPELKRIN_TESTS=OFF -DPELKRIN_BENCH=OFF >/dev/null
cmake --build out/fuzz -j "$(nproc 2>/dev/null || echo 2)" >/dev/null

# An ACE file and an SFF file as one run input: the ACE file's length (4 bytes,
# little-endian), the ACE file, the SFF file.
pack_run() {
  local ace=$1 sff=$2 out=$3 n
  n=$(stat -c %s "$ace")
  printf "$(printf '\\x%02x\\x%02x\\x%02x\\x%02x' $((n & 255)) $(((n >> 8) & 255)) $(((n >> 16) & 255)) $(((n >> 24) & 255)))" >"$out"
  cat "$ace" "$sff" >>"$out"
}

# The regression folder of each target.
regressions() {
  case $1 in
    ace_reader) echo fuzz/regressions/ace ;;
    sff_reader) echo fuzz/regressions/sff ;;
    whole_run) echo fuzz/regressions/run ;;
    contig_views) echo fuzz/regressions/views ;;
    reads_file) echo fuzz/regressions/reads ;;
    prep_ace) echo fuzz/regressions/prep_ace ;;
    prep_sff) echo fuzz/regressions/prep_sff ;;
    bam_records) echo fuzz/regressions/bam_records ;;
  esac
}

# The seed files of a target, made from the example and tests/data, in out/fuzz-seeds/TARGET.
seed_files() {
  local target=$1 dir=out/fuzz-seeds/$1
  rm -rf "$dir" && mkdir -p "$dir"
  case $target in
    ace_reader | contig_views) cp example/example.ace "$data"/*.ace "$dir"/ ;;
    sff_reader) cp example/example.sff "$data"/*.sff "$dir"/ ;;
    prep_ace) cp example/example.ace "$data"/*.ace "$data"/mira/*.ace "$dir"/ ;;
    prep_sff) cp example/example.sff "$data"/*.sff "$dir"/ ;;
    bam_records)
      pack_run example/example.ace example/example.sff "$dir/example"
      pack_run "$data/mira/sim454_out.ace" "$data/mira/sim454.sff" "$dir/mira"
      ;;
    whole_run)
      pack_run example/example.ace example/example.sff "$dir/example"
      pack_run "$data/contig1.ace" "$data/greek.sff" "$dir/contig1"
      pack_run "$data/consed_sample.ace" "$data/E3MFGYR02_random_10_reads.sff" "$dir/consed"
      ;;
    reads_file)
      mkdir -p "$dir/made" && cp example/example.ace example/example.sff "$dir/made"/
      out/fuzz/Pelkrin -f "$dir/made/example.ace" "$dir/made/example.sff" >/dev/null
      pack_run "$dir/made/example.qdx" "$dir/made/example.reads" "$dir/example"
      rm -r "$dir/made"
      ;;
  esac
  echo "$dir"
}

if [[ $mode == --merge ]]; then
  for target in "${targets[@]}"; do
    seeds=$(seed_files "$target")
    merged=out/fuzz-merged/$target
    rm -rf "$merged" && mkdir -p "$merged" "out/fuzz-corpus/$target" "fuzz/corpus/$target"
    cp "$seeds"/* "$merged"/
    out/fuzz/fuzz/fuzz_"$target" -merge=1 -use_counters=0 -max_len=131072 -timeout=5 -rss_limit_mb=1024 -malloc_limit_mb=64 \
      "$merged" "fuzz/corpus/$target" "out/fuzz-corpus/$target" >"out/fuzz-merge-$target.log" 2>&1
    for f in "$seeds"/*; do rm -f "$merged/$(basename "$f")"; done
    rm -rf "fuzz/corpus/$target" && mkdir -p "fuzz/corpus/$target" && cp "$merged"/* "fuzz/corpus/$target"/
    echo "$target: $(ls "fuzz/corpus/$target" | wc -l) inputs, $(du -sk "fuzz/corpus/$target" | cut -f1) KB"
  done
  exit 0
fi
seconds=$mode

status=0
failed=()
for target in "${targets[@]}"; do
  # Pelkrin-bam's target is built only where htslib is.
  if [[ ! -x out/fuzz/fuzz/fuzz_$target ]]; then
    echo "== $target: not built (no htslib), left out"
    continue
  fi
  corpus=out/fuzz-corpus/$target
  artifacts=out/fuzz-artifacts/$target
  mkdir -p "$corpus" "$artifacts"
  seeds=$(seed_files "$target")
  cp fuzz/corpus/"$target"/* "$(regressions "$target")"/* "$seeds"/ 2>/dev/null || true
  echo "== $target: ${seconds}s"
  if ! /usr/bin/time -f "cpu seconds: %U user + %S system" -o "out/fuzz-$target.cpu" \
      out/fuzz/fuzz/fuzz_"$target" "$corpus" "$seeds" -max_total_time="$seconds" -timeout=5 \
      -rss_limit_mb=1024 -malloc_limit_mb=64 -max_len=131072 -artifact_prefix="$artifacts/" \
      -print_final_stats=1 >"out/fuzz-$target.log" 2>&1; then
    echo "!! $target failed: see out/fuzz-$target.log and $artifacts"
    tail -n 30 "out/fuzz-$target.log"
    status=1
    failed+=("$target")
  fi
  grep -E '^stat::(number_of_executed_units|peak_rss_mb)|Done [0-9]+ runs' "out/fuzz-$target.log" || true
  cat "out/fuzz-$target.cpu" 2>/dev/null || true
  echo "corpus: $(ls "$corpus" | wc -l) inputs"
done
# Said again last: whoever reads only the end of a long log sees which failed and how.
for target in "${failed[@]}"; do
  echo "!! $target failed ($(ls "out/fuzz-artifacts/$target" | head -n 3 | tr '\n' ' ')):"
  grep -m 3 -E 'ERROR|SUMMARY|deadly|timeout|out-of-memory|malloc' "out/fuzz-$target.log" | sed 's/^/   /'
done
exit $status

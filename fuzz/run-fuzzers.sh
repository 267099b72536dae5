#!/usr/bin/env bash
# Builds the libFuzzer targets with clang and runs each for SECONDS of fuzzing.
#
#   fuzz/run-fuzzers.sh SECONDS [TARGET ...]      targets: ace_reader sff_reader whole_run contig_views
#
# Seeds come from the example assembly, tests/data, a committed corpus when
# there is one (fuzz/corpus/TARGET, a minimised result of earlier runs) and the
# regression inputs; the growing corpus is kept in out/fuzz-corpus, crashing inputs in
# out/fuzz-artifacts (copy them into fuzz/regressions/TARGET, which the test
# suite replays). Exits non-zero when a target finds a crash, a leak, a hang
# (over 5 s) or an allocation over 64 MB. Prints each target's executions and
# CPU seconds.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:?usage: fuzz/run-fuzzers.sh SECONDS [TARGET ...]}
shift
targets=("$@")
[[ ${#targets[@]} -gt 0 ]] || targets=(ace_reader sff_reader whole_run contig_views)
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

seed() {
  local target=$1 dir=out/fuzz-seeds/$1
  rm -rf "$dir" && mkdir -p "$dir"
  case $target in
    ace_reader | contig_views) cp example/example.ace "$data"/*.ace "$dir"/ 2>/dev/null || true ;;
    sff_reader) cp example/example.sff "$data"/*.sff "$dir"/ 2>/dev/null || true ;;
    whole_run)
      pack_run example/example.ace example/example.sff "$dir/example"
      [[ -f $data/contig1.ace ]] && pack_run "$data/contig1.ace" "$data/greek.sff" "$dir/contig1"
      [[ -f $data/consed_sample.ace ]] && pack_run "$data/consed_sample.ace" "$data/E3MFGYR02_random_10_reads.sff" "$dir/consed"
      ;;
  esac
  cp fuzz/corpus/"$target"/* fuzz/regressions/"$target"/* "$dir"/ 2>/dev/null || true
  echo "$dir"
}

status=0
for target in "${targets[@]}"; do
  corpus=out/fuzz-corpus/$target
  artifacts=out/fuzz-artifacts/$target
  mkdir -p "$corpus" "$artifacts"
  seeds=$(seed "$target")
  echo "== $target: ${seconds}s"
  if ! /usr/bin/time -f "cpu seconds: %U user + %S system" -o "out/fuzz-$target.cpu" \
      out/fuzz/fuzz/fuzz_"$target" "$corpus" "$seeds" -max_total_time="$seconds" -timeout=5 \
      -rss_limit_mb=1024 -malloc_limit_mb=64 -max_len=131072 -artifact_prefix="$artifacts/" \
      -print_final_stats=1 >"out/fuzz-$target.log" 2>&1; then
    echo "!! $target failed: see out/fuzz-$target.log and $artifacts"
    tail -n 30 "out/fuzz-$target.log"
    status=1
  fi
  grep -E '^stat::(number_of_executed_units|peak_rss_mb)|Done [0-9]+ runs' "out/fuzz-$target.log" || true
  cat "out/fuzz-$target.cpu" 2>/dev/null || true
  echo "corpus: $(ls "$corpus" | wc -l) inputs"
done
exit $status

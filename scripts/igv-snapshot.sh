#!/usr/bin/env bash
# Opens a reference and a BAM file in IGV (Debian igv) on a virtual screen,
# goes to REGION and writes a snapshot: what a user does to look at
# Pelkrin-bam's files, run in batch mode. Fails when IGV reports an error
# about the files or writes no snapshot.
#
#   scripts/igv-snapshot.sh FASTA BAM REGION OUT.png
#
# IGV gets a home of its own, whose preferences name FASTA as the default
# genome: otherwise it fetches one from the network before the batch runs.
set -euo pipefail
[[ $# -eq 4 ]] || { echo "usage: scripts/igv-snapshot.sh FASTA BAM REGION OUT.png" >&2; exit 2; }
cd "$(dirname "$0")/.."
scripts/install-deps.sh --igv
fasta=$(realpath "$1") bam=$(realpath "$2") region=$3
out=$(realpath -m "$4")
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
mkdir -p "$home/igv" "$home/shots"
echo "DEFAULT_GENOME_KEY=$fasta" >"$home/igv/prefs.properties"
cat >"$home/batch.txt" <<BATCH
new
genome $fasta
load $bam
goto $region
snapshotDirectory $home/shots
snapshot shot.png
exit
BATCH
JAVA_TOOL_OPTIONS="-Duser.home=$home" timeout 300 \
  xvfb-run -a -s "-screen 0 1280x900x24" igv -b "$home/batch.txt" >"$home/igv.log" 2>&1 || true
# IGV's own network look-ups fail on a closed machine; anything else is an error.
errors=$(grep -E 'SEVERE|ERROR|Exception' "$home/igv.log" | grep -vE 'UnknownHost|OAuth|oAuth|genome list' || true)
if [[ -n $errors || ! -s $home/shots/shot.png ]]; then
  echo "igv-snapshot.sh: IGV did not show $bam:" >&2
  echo "$errors" | head -n 20 >&2
  exit 1
fi
cp "$home/shots/shot.png" "$out"
echo "$out written"

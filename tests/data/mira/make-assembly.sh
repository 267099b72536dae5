#!/usr/bin/env bash
# Remakes the MIRA assembly of this folder: simulated 454 reads of a random
# genome (simulate_454.py), assembled by the real MIRA assembler (Debian's
# mira-assembler, 4.9.6 when these files were made).
#
#   tests/data/mira/make-assembly.sh
#
# Writes sim454.sff and sim454_out.ace here; the run's other files stay in a
# temporary folder.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
command -v mira >/dev/null || { echo "mira is not installed: apt-get install mira-assembler" >&2; exit 1; }
cd "$work"
python3 "$here/simulate_454.py" .
cat > manifest.conf <<'CONF'
project = sim454
job = genome,denovo,accurate
parameters = -GE:not=1 -OUT:output_result_ace=yes
readgroup = sim454
technology = 454
data = sim454_in.454.fastq
CONF
mira manifest.conf > mira.log 2>&1 || { tail -n 30 mira.log >&2; exit 1; }
cp sim454.sff "$here/sim454.sff"
cp sim454_assembly/sim454_d_results/sim454_out.ace "$here/sim454_out.ace"

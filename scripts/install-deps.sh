#!/usr/bin/env bash
# Installs the Debian packages that building (and, with --tests, testing) needs,
# only those that are missing.
#
#   scripts/install-deps.sh           building Pelkrin, Pelkrin-view and Pelkrin-prep
#   scripts/install-deps.sh --tests   that, and everything the tests use
#   scripts/install-deps.sh --igv     that, and IGV on a virtual screen (the long tier)
set -euo pipefail

# zlib (zlib1g-dev) for the gzip input of Pelkrin-prep and Pelkrin-bam, and
# htslib (libhts-dev, with pkg-config to find it) for Pelkrin-bam's BAM files:
# Pelkrin and Pelkrin-view link neither.
packages=(cmake g++ ninja-build make zlib1g-dev libhts-dev pkg-config)
if [[ "${1:-}" == "--tests" ]]; then
  # GoogleTest; clang and its libFuzzer runtime for the fuzz targets; a browser
  # and a fixed-width font for the test that renders the HTML page; valgrind;
  # GNU time for the fuzzers' CPU figures; pkg-config for the test that builds
  # a program against the installed library through pelkrin.pc; git for the
  # date of the source in the man pages; samtools (with ace2sam) and Picard to
  # check Pelkrin-bam's files
  packages+=(libgtest-dev clang libclang-rt-14-dev chromium fonts-dejavu-core valgrind time git samtools picard-tools)
fi

if [[ "${1:-}" == "--igv" ]]; then
  # IGV on a virtual screen, for the long tier's look at Pelkrin-bam's files
  packages+=(igv xvfb xauth)
fi

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[[ ${#missing[@]} -eq 0 ]] && exit 0

sudo=""
[[ $(id -u) -eq 0 ]] || sudo="sudo"
echo "Installing: ${missing[*]}"
$sudo apt-get update -qq
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${missing[@]}" >/dev/null

#!/usr/bin/env bash
# Installs the Debian packages that building (and, with --tests, testing) needs,
# only those that are missing.
#
#   scripts/install-deps.sh           building Pelkrin, Pelkrin-view and Pelkrin-prep
#   scripts/install-deps.sh --tests   that, and everything the tests use
set -euo pipefail

# zlib (zlib1g-dev) for Pelkrin-prep's gzip input: only Pelkrin-prep links it.
packages=(cmake g++ ninja-build make zlib1g-dev)
if [[ "${1:-}" == "--tests" ]]; then
  # GoogleTest; clang and its libFuzzer runtime for the fuzz targets; a browser
  # and a fixed-width font for the test that renders the HTML page; valgrind;
  # GNU time for the fuzzers' CPU figures; pkg-config for the test that builds
  # a program against the installed library through pelkrin.pc; git for the
  # date of the source in the man pages
  packages+=(libgtest-dev clang libclang-rt-14-dev chromium fonts-dejavu-core valgrind time pkg-config git)
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

#!/bin/sh
# Installs the project from the build folder BUILD into a fresh prefix, then
# builds the consumer program against it twice, through find_package(Pelkrin)
# and through pkg-config, and runs both on an ACE file: both must print the
# same lines, one per contig.
#
#   check-install.sh BUILD WORK ACE_FILE EXPECTED_CONTIGS [EXTRA_FLAGS]
#
# EXTRA_FLAGS go to the compiler and the linker of both builds (the
# sanitizers, when the library was built with them).
set -eu
build=$1 work=$2 ace=$3 contigs=$4 flags=${5:-}
here=$(cd "$(dirname "$0")" && pwd)
rm -rf "$work"
mkdir -p "$work"
prefix=$work/prefix

cmake --install "$build" --prefix "$prefix" >/dev/null
test -n "$(find "$prefix" -name libpelkrin.a)" || { echo "no libpelkrin.a installed"; exit 1; }
test -f "$prefix/include/pelkrin/ace/ace_reader.h" || { echo "public header missing"; exit 1; }
for private in driver view_tool prep; do
  test ! -e "$prefix/include/pelkrin/$private" || { echo "a program's headers installed: $private"; exit 1; }
done
# Every installed header finds what it includes there: one file including
# them all compiles against the prefix alone.
(cd "$prefix/include" && find pelkrin -name '*.h' | sort | sed 's/.*/#include <&>/') >"$work/all-headers.cpp"
for header in common/output_file.h ace/ace_reader.h sff/reader.h views/flow_space.h reads_format/qdx_index.h; do
  grep -qx "#include <pelkrin/$header>" "$work/all-headers.cpp" || { echo "$header is not installed"; exit 1; }
done
# shellcheck disable=SC2086
${CXX:-c++} -std=c++20 -fsyntax-only $flags -I"$prefix/include" "$work/all-headers.cpp" ||
  { echo "the installed headers do not compile on their own"; exit 1; }

# Through CMake.
cmake -S "$here/consumer" -B "$work/cmake-build" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" \
  -DCMAKE_CXX_FLAGS="$flags" -DCMAKE_EXE_LINKER_FLAGS="$flags" >/dev/null
cmake --build "$work/cmake-build" >/dev/null
"$work/cmake-build/consumer" "$ace" >"$work/cmake.out"

# Through pkg-config.
pc_dir=$(dirname "$(find "$prefix" -name pelkrin.pc)")
pc_flags=$(PKG_CONFIG_PATH=$pc_dir pkg-config --cflags --libs pelkrin)
# shellcheck disable=SC2086
${CXX:-c++} -std=c++20 $flags -o "$work/pc-consumer" "$here/consumer/main.cpp" $pc_flags
"$work/pc-consumer" "$ace" >"$work/pkg-config.out"

cmp "$work/cmake.out" "$work/pkg-config.out" || { echo "the two builds print different lines"; exit 1; }
lines=$(wc -l <"$work/cmake.out")
test "$lines" -eq "$contigs" || { echo "expected $contigs contig lines, got $lines"; cat "$work/cmake.out"; exit 1; }
cat "$work/cmake.out"

#!/bin/sh
# The source package (cpack --config CPackSourceConfig.cmake) holds the
# source and nothing of builds or scratch work: every file git tracks, and
# none that git ignores (build folders, Pelkrin's outputs beside the
# example, editors' backups).
#
#   check-source-package.sh SOURCE_DIR BUILD_DIR WORK
set -eu
src=$(cd "$1" && pwd -P) build=$2 work=$3
rm -rf "$work"
mkdir -p "$work"
cpack --config "$build/CPackSourceConfig.cmake" -B "$work" >/dev/null
package=$(ls "$work"/*-source.tar.gz)
tar tzf "$package" | sed -n 's|^[^/]*/||p' | grep -v '/$' | grep -v '^$' | sort >"$work/packed"
grep -qx 'src/common/input_file.h' "$work/packed" || { echo "no src/common/input_file.h in $package"; exit 1; }
# The build folder, wherever it lies inside the source.
build_real=$(cd "$build" && pwd -P)
case "$build_real/" in
  "$src"/*)
    inside=${build_real#"$src"/}
    if grep -q "^$inside/" "$work/packed"; then echo "the build folder $inside is packed"; exit 1; fi ;;
esac
if ! git -C "$src" rev-parse --show-toplevel >/dev/null 2>&1; then
  echo "not a git checkout: only the build folder was checked"
  exit 0
fi
cd "$src"
git ls-files | sort >"$work/tracked"
missing=$(comm -23 "$work/tracked" "$work/packed")
[ -z "$missing" ] || { echo "tracked files not packed:"; echo "$missing" | head -n 20; exit 1; }
git ls-files --others --ignored --exclude-standard | sort >"$work/ignored"
packed_ignored=$(comm -12 "$work/ignored" "$work/packed")
[ -z "$packed_ignored" ] || { echo "files git ignores were packed:"; echo "$packed_ignored" | head -n 20; exit 1; }
echo "$(wc -l <"$work/packed") files packed, $(wc -l <"$work/ignored") ignored files left out"

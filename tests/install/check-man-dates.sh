#!/bin/sh
# The man pages' headings carry the date of the source: the last commit's
# (in UTC) in a git checkout, and SOURCE_DATE_EPOCH's when that is set.
#
#   check-man-dates.sh SOURCE_DIR MAN_DIR
set -eu
src=$1 man=$2
here=$(cd "$(dirname "$0")" && pwd)
date_of() { sed -n '1s/^\.TH [^ ]* 1 "\([^"]*\)".*/\1/p' "$1"; }

for page in "$man"/*.1; do
  date=$(date_of "$page")
  echo "$date" | grep -qx '[0-9]\{4\}-[0-9][0-9]-[0-9][0-9]' || { echo "$page: no date in: $(head -n 1 "$page")"; exit 1; }
  if git -C "$src" rev-parse --show-toplevel >/dev/null 2>&1 &&
     [ "$(cd "$(git -C "$src" rev-parse --show-toplevel)" && pwd -P)" = "$(cd "$src" && pwd -P)" ]; then
    commit=$(TZ=UTC0 git -C "$src" log -1 --date=format-local:%Y-%m-%d --format=%cd)
    [ "$date" = "$commit" ] || { echo "$page: dated $date, the last commit $commit"; exit 1; }
  fi
done
# The date as the build takes it, with SOURCE_DATE_EPOCH set: 1,000,000,000
# seconds is 2001-09-09 in UTC.
date=$(SOURCE_DATE_EPOCH=1000000000 cmake -DSOURCE_DIR="$src" -P "$here/../../cmake/SourceDate.cmake" 2>&1)
[ "$date" = "2001-09-09" ] || { echo "with SOURCE_DATE_EPOCH=1000000000: $date"; exit 1; }
echo "man pages dated $(date_of "$man/Pelkrin.1")"

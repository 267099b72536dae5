#!/usr/bin/env bash
# Remakes the screenshots of the README and the man page (doc/report-*.png):
# the report of the example assembly, with Pelkrin's -f output beside it,
# opened in headless Chromium.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh --tests
cmake -S . -B out/release -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build out/release --target Pelkrin Pelkrin-view >/dev/null
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp example/example.ace example/example.sff "$work"/
out/release/Pelkrin -f "$work/example.ace" "$work/example.sff" >/dev/null
out/release/Pelkrin-view -m report -o "$work/report" "$work/example.ace" >/dev/null

shot() {  # FILE WIDTH HEIGHT URL
  chromium --headless --no-sandbox --disable-gpu --hide-scrollbars --user-data-dir="$work/profile" \
    --window-size="$2,$3" --virtual-time-budget=5000 --screenshot="$PWD/$1" "$4" 2>/dev/null
}
shot doc/report-contig.png 1150 1080 "file://$work/report/contig-1.html#pos=61"
# The flowgram sits low on its page: a frame shows that part of it.
cat >"$work/report/flowgram-shot.html" <<'HTML'
<!DOCTYPE html><html><body style="margin:0;overflow:hidden">
<iframe src="contig-1.html#pos=61&read=E3MFGYR0201P3Q" scrolling="no"
  style="position:absolute;top:-1170px;left:0;width:1150px;height:2300px;border:0"></iframe>
</body></html>
HTML
shot doc/report-flowgram.png 1150 560 "file://$work/report/flowgram-shot.html"
echo "doc/report-contig.png and doc/report-flowgram.png written"

#!/usr/bin/env bash
# Remakes the screenshots of the README (doc/report-*.png): the report of the
# MIRA assembly of tests/data/mira (its ACE file put in Pelkrin's layout by
# Pelkrin-prep, Pelkrin's -f output beside it), opened in headless Chromium.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh --tests
cmake -S . -B out/release -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build out/release --target Pelkrin Pelkrin-view Pelkrin-prep >/dev/null
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
out/release/Pelkrin-prep ace tests/data/mira/sim454_out.ace "$work/mira.ace" >/dev/null
cp tests/data/mira/sim454.sff "$work/mira.sff"
out/release/Pelkrin -f "$work/mira.ace" "$work/mira.sff" >/dev/null
out/release/Pelkrin-view -m report -o "$work/report" "$work/mira.ace" >/dev/null

shot() {  # FILE WIDTH HEIGHT URL
  chromium --headless --no-sandbox --disable-gpu --hide-scrollbars --user-data-dir="$work/profile" \
    --window-size="$2,$3" --virtual-time-budget=5000 --screenshot="$PWD/$1" "$4" 2>/dev/null
}
# A section low on its page is shown alone: a copy of the page moves it to
# the top and hides the rest.
section_shot() {  # FILE WIDTH HEIGHT FRAGMENT SECTION_ID
  local page=$work/report/shot-$5.html
  sed '$d' "$work/report/contig-1.html" | sed '$d' >"$page"  # without </body> and </html>
  cat >>"$page" <<HTML
<script>
(function () {
  var part = document.getElementById('$5'), body = document.body;
  Array.prototype.slice.call(body.children).forEach(function (e) { if (e.tagName !== 'SCRIPT') e.style.display = 'none'; });
  part.style.display = '';
  body.insertBefore(part, body.firstChild);
})();
</script>
</body>
</html>
HTML
  shot "$1" "$2" "$3" "file://$page$4"
}
# The window over a run of five C's (positions 333 to 337, consensus flow 256).
shot doc/report-contig.png 1500 1400 "file://$work/report/contig-1.html#pos=280&width=140"
section_shot doc/report-column.png 900 330 "#pos=280&width=140&column=256" column
section_shot doc/report-flowgram.png 1500 640 "#pos=280&width=140&read=SIM454R01X0053" flowgram
echo "doc/report-contig.png, doc/report-column.png and doc/report-flowgram.png written"

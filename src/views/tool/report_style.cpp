#include "views/tool/report_assets.h"

namespace pelkrin {

// Shared by every page of the report.
std::string_view report_style() {
    return R"css(
body { font-family: sans-serif; margin: 1.2em 1.5em; color: #222; }
h1 { font-size: 1.35em; } h2 { font-size: 1.15em; margin-top: 1.4em; } h3 { font-size: 1em; }
.facts { color: #444; } .hint { color: #666; font-size: 0.9em; }
svg.plot { width: 100%; max-width: 1100px; height: auto; display: block; font-size: 12px; }
svg.plot .axis { stroke: #555; } svg.plot text { fill: #333; }
svg.plot .depth { fill: #8fb3d9; stroke: #3a6ea5; stroke-width: 0.5; }
svg.plot .lengths { fill: #9ccc9c; stroke: #3d8b3d; stroke-width: 0.5; }
#depth-window { fill: rgba(255, 165, 0, 0.35); stroke: #c47a00; }
#depth-plot { cursor: pointer; }
table#contigs { border-collapse: collapse; }
#contigs th, #contigs td { padding: 0.2em 0.8em; border-bottom: 1px solid #ddd; text-align: right; }
#contigs th:first-child, #contigs td:first-child { text-align: left; }
#contigs th { cursor: pointer; user-select: none; background: #f3f3ee; }
#contigs th[aria-sort=ascending]::after { content: " \25B2"; }
#contigs th[aria-sort=descending]::after { content: " \25BC"; }
.controls { display: flex; flex-wrap: wrap; gap: 0.3em; align-items: center; position: sticky; top: 0;
  background: #fff; padding: 0.4em 0; z-index: 1; }
.controls #slider { flex: 1 1 20em; }
.controls input[type=number] { width: 6em; }
pre.view, code { font-family: "DejaVu Sans Mono", "Liberation Mono", "Courier New", monospace;
  font-variant-ligatures: none; font-kerning: none; letter-spacing: 0; }
pre.view { font-size: 14px; line-height: 1.2; white-space: pre; overflow-x: auto; padding: 0.5em;
  background: #fbfbf8; border: 1px solid #ddd; max-height: 32em; overflow-y: auto; }
pre.view .head { font-weight: bold; }
pre.view .read { cursor: pointer; }
pre.view .read:hover, pre.view .read.open { background: #ffe9a8; }
#read-list { font-size: 0.9em; padding-left: 0; list-style: none; }
#read-list li { cursor: pointer; color: #1a55a0; display: inline-block; margin: 0 1.2em 0.2em 0; }
#read-list li:hover { text-decoration: underline; }
#flowgram { border-top: 2px solid #ccc; margin-top: 1em; }
#flowgram-plot { overflow-x: auto; border: 1px solid #ddd; background: #fdfdfb; }
#flowgram-plot svg { display: block; font-family: "DejaVu Sans Mono", monospace; }
#flowgram-plot .grid { stroke: #ddd; } #flowgram-plot .label { fill: #666; font-size: 10px; }
#flowgram-plot .called { font-size: 12px; }
#flowgram-plot .quality { fill: #555; font-size: 8px; }
.bases code { word-break: break-all; white-space: normal; }
)css";
}

}  // namespace pelkrin

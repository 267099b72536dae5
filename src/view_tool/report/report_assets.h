#pragma once
// The style sheet and the script that every page of the report shares,
// written once into the report's folder as pelkrin-report.css and
// pelkrin-report.js. Hand-written, with nothing fetched from elsewhere; they
// are report.css and report.js beside this file, built into the program.
//
// The script sorts the index page's columns, and draws the contig page's
// window over the alignment and its flowgrams. The contig page draws only the
// window it shows, from the data file of the contig (pelkrinContig) and, when
// a read is opened, the flowgram file that holds it (pelkrinFlowgrams). The
// window is drawn as Pelkrin-view draws a span: base space as the align mode,
// flow space as the flow-html mode (one column per flow), so the text is the
// same.
#include <string_view>

namespace pelkrin {

std::string_view report_style();
std::string_view report_script();

}  // namespace pelkrin

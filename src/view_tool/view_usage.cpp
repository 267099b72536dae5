#include "view_tool/view_usage.h"

#include "view_tool/view_modes.h"

namespace pelkrin {

std::string view_usage() {
    return std::string(
        "Usage: Pelkrin-view [-m MODE] [-s START] [-w WIDTH] [-c COLOURS] [-r READS] [-p] aceFile contigName\n"
        "       Pelkrin-view -m report -o DIR [-c COLOURS] aceFile\n"
        "       Pelkrin-view -h | --help | --version\n"
        "\n"
        "Shows one view of the contig contigName of the ACE file aceFile, or writes\n"
        "a report of all its contigs for a browser.\n"
        "\n"
        "  -m MODE     the view, default ")
        .append(default_view_mode().name)
        .append(
            ":\n"
            "                align, align-html      the span in base space, plain or HTML\n"
            "                flow, flow-html        the span in flow space, plain or HTML\n"
            "                flow-html-space        the span in flow space, HTML, two columns a flow\n"
            "                contig, contig-html    the whole contig in base space\n"
            "                flow-table, seq-table  the span as tables of flows or of bases\n"
            "                flow-consensus         the consensus in flow space\n"
            "                layout                 the display rows and the read lengths\n"
            "                report                 pages of every contig for a browser, into DIR\n"
            "  -s START    first position of the span, from 1, default 1\n"
            "  -w WIDTH    number of positions of the span, default up to the end of the consensus\n"
            "  -c COLOURS  colour file: lines of a character, a tab and a colour text\n"
            "              (default A green, C blue, G orange, T red, N gray, * gray)\n"
            "  -r READS    write the names of the reads drawn in the span to READS, one a line\n"
            "  -p          wrap HTML output in a complete page for a browser\n"
            "  -o DIR      the folder of the report (with -m report only); flowgrams are\n"
            "              shown when PREFIX.reads and PREFIX.qdx of Pelkrin -f stand\n"
            "              beside aceFile\n"
            "  -h, --help  show this text and exit\n"
            "  --version   show the version and exit\n");
}

}  // namespace pelkrin

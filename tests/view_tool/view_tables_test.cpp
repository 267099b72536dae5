// The four table formats of Pelkrin-view, and its page around HTML views.
#include <gtest/gtest.h>

#include "view_fixture.h"
#include "view_tool/html_page.h"
#include "view_tool/table_writers.h"

namespace pelkrin::test {
namespace {

TEST(ViewTables, FlowTableColumnsThenRows) {
    const std::vector<std::vector<int16_t>> flows = {{1, 2}, {}, {-1, 12}};
    const std::vector<std::map<int32_t, fRead>> rows = {{{2, fRead{"r1", -1, 2}}, {0, fRead{"r0", 0, 0}}}, {}};
    EXPECT_EQ(flow_table_text(flows, rows), "C\t0\t1\t2\nC\t1\nC\t2\t-1\t12\nR\t0\t0:r0:0:0\t2:r1:-1:2\nR\t1\n");
}

TEST(ViewTables, SeqTableColumnsHoldTheirCharactersInOneField) {
    const std::vector<std::vector<char>> columns = {{'A', '0', 'c'}, {}, {'*'}};
    const std::vector<std::map<int32_t, std::string>> rows = {{{5, "r1"}, {1, "r0"}}, {}};
    EXPECT_EQ(seq_table_text(columns, rows), "C\t0\tA0c\nC\t1\t\nC\t2\t*\nR\t0\t1:r0\t5:r1\nR\t1\n");
}

TEST(ViewTables, EmptyTables) {
    EXPECT_EQ(flow_table_text({}, {}), "");
    EXPECT_EQ(seq_table_text({}, {}), "");
}

TEST(ViewTables, FlowConsensusLettersThenEveryPosition) {
    contig c = make_contig("AT", {{"r1", 1, "AT"}, {"r2", 2, "A"}});
    c.create_flow_concensus();
    EXPECT_EQ(flow_consensus_text(c), "flow_consensus\tAT\n0\tA=0\n1\tA=1\tT=1\n");
    EXPECT_EQ(flow_consensus_text(contig{}), "flow_consensus\t\n");
}

TEST(ViewTables, LayoutStatsRowsAndIds) {
    contig c = make_contig(std::string(10, 'A'), {plain_read("A", 1, 5), plain_read("B", 3, 4),
                                                 plain_read("C", 6, 3), plain_read("D", 3, 2)});
    c.create_print_map();
    std::vector<std::string> ids;
    c.get_read_ids(ids);
    EXPECT_EQ(layout_text(c, ids),
              "stats\t5\t2\t3.0\nrow\t0\t1:A\t6:C\nrow\t1\t3:B\nrow\t2\t3:D\nids\tA\tC\tB\tD\n");
}

TEST(ViewTables, LayoutOfAContigWithoutReads) {
    const contig c;
    EXPECT_EQ(layout_text(c, {}), "stats\t0\t5000\t0.0\nids\n");
}

TEST(ViewTables, LayoutMeanWithOneDecimal) {
    contig c = make_contig("A", {plain_read("a", 1, 400), plain_read("b", 1, 401), plain_read("c", 1, 403)});
    c.create_pos_map();
    EXPECT_EQ(layout_text(c, {}).substr(0, 20), "stats\t403\t400\t401.0\n");
}

TEST(ViewHtmlPage, CompletePageAroundTheViewUnchanged) {
    const std::string view = "<font color=red>T</font>A\nTA\n";
    const std::string page =
        html_page(view, page_facts{"Con<tig>&1", "align-html", "positions 1 to 2 of 2", false}, {{'T', "red"}});
    EXPECT_EQ(page.rfind("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n", 0), 0u);
    EXPECT_NE(page.find("<title>Con&lt;tig&gt;&amp;1, positions 1 to 2 of 2 (align-html)</title>"),
              std::string::npos);
    EXPECT_NE(page.find("<pre class=\"view\">\n" + view + "</pre>\n"), std::string::npos);
    EXPECT_NE(page.find("monospace"), std::string::npos);
    EXPECT_NE(page.find("<code><font color=red>T</font></code> red"), std::string::npos);
    EXPECT_EQ(page.substr(page.size() - 16), "</body>\n</html>\n");
}

TEST(ViewHtmlPage, LegendNamesLettersWithoutColourAndFlowCounts) {
    const std::string page = html_page("", page_facts{"c", "flow-html", "positions 1 to 1 of 1", true},
                                       {{'<', "blue"}, {'C', ""}});
    EXPECT_NE(page.find("<code><font color=blue>&lt;</font></code> blue"), std::string::npos);
    EXPECT_NE(page.find("<code><font color=>C</font></code> no colour"), std::string::npos);
    EXPECT_NE(page.find("A for 10"), std::string::npos);
}

TEST(ViewHtmlPage, EscapesMarkup) { EXPECT_EQ(html_escape("a<b>&\"c'"), "a&lt;b&gt;&amp;&quot;c'"); }

}  // namespace
}  // namespace pelkrin::test

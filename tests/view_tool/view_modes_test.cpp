// Pelkrin-view's table of modes.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "view_tool/view_modes.h"
#include "view_tool/view_options.h"
#include "view_tool/view_usage.h"

namespace pelkrin::test {
namespace {

// The mode names that the usage text lists under -m, in its order: the first
// column of each line up to the -s line, names separated by ", ".
std::vector<std::string> usage_mode_names() {
    std::istringstream usage(view_usage());
    std::vector<std::string> names;
    std::string line;
    while (std::getline(usage, line) && line.rfind("  -m MODE", 0) != 0) {
    }
    while (std::getline(usage, line) && line.rfind("  -s ", 0) != 0) {
        const std::size_t first = line.find_first_not_of(' ');
        std::string column = line.substr(first, line.find("  ", first) - first);
        for (std::size_t comma; (comma = column.find(", ")) != std::string::npos;) {
            names.push_back(column.substr(0, comma));
            column.erase(0, comma + 2);
        }
        names.push_back(column);
    }
    return names;
}

struct expected_mode {
    const char* name;
    bool html;
    bool span;
    bool flow_space;
    bool read_list;
    view_operation operation;
};

constexpr expected_mode expected[] = {
    {"align", false, true, false, true, view_align},
    {"align-html", true, true, false, true, view_align_html},
    {"flow", false, true, true, true, view_flow},
    {"flow-html", true, true, true, true, view_flow_html},
    {"flow-html-space", true, true, true, true, view_flow_html_space},
    {"contig", false, false, false, false, view_contig},
    {"contig-html", true, false, false, false, view_contig_html},
    {"flow-table", false, true, true, false, view_flow_table},
    {"seq-table", false, true, false, false, view_seq_table},
    {"flow-consensus", false, false, true, false, view_flow_consensus},
    {"layout", false, false, false, false, view_layout},
    {"report", true, false, true, false, nullptr},
};

TEST(ViewModes, TheTableHoldsTheModesOfTheUsageTextInItsOrder) {
    const std::vector<std::string> names = usage_mode_names();
    ASSERT_EQ(names.size(), 12u);
    ASSERT_EQ(view_modes().size(), names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        EXPECT_EQ(view_modes()[i].name, names[i]);
        const view_mode* found = find_view_mode(names[i]);
        ASSERT_NE(found, nullptr) << names[i];
        EXPECT_EQ(found, &view_modes()[i]) << names[i];
    }
}

// The default is align; the usage text and the command line take it from the table.
TEST(ViewModes, TheDefaultIsTheTablesAlignMode) {
    EXPECT_EQ(default_view_mode().name, "align");
    EXPECT_EQ(&default_view_mode(), find_view_mode("align"));
    EXPECT_NE(view_usage().find("  -m MODE     the view, default align:\n"), std::string::npos);
    EXPECT_EQ(parse_view_options({"a.ace", "Contig1"}).options.mode, default_view_mode().name);
}

TEST(ViewModes, EachModeHasItsPropertiesAndOperation) {
    for (const expected_mode& e : expected) {
        const view_mode* m = find_view_mode(e.name);
        ASSERT_NE(m, nullptr) << e.name;
        EXPECT_EQ(m->html, e.html) << e.name;
        EXPECT_EQ(m->span, e.span) << e.name;
        EXPECT_EQ(m->flow_space, e.flow_space) << e.name;
        EXPECT_EQ(m->read_list, e.read_list) << e.name;
        EXPECT_EQ(m->operation, e.operation) << e.name;
    }
}

TEST(ViewModes, OnlyAModeWithASpanListsItsReads) {
    for (const view_mode& m : view_modes()) {
        EXPECT_TRUE(m.span || !m.read_list) << m.name;
    }
}

TEST(ViewModes, AnUnknownNameIsNotFound) {
    for (const char* name : {"", "html", "Align", "align ", " align", "flow-", "table", "contig-html-space"}) {
        EXPECT_EQ(find_view_mode(name), nullptr) << '"' << name << '"';
    }
}

}  // namespace
}  // namespace pelkrin::test

#include "view_tool/view_modes.h"

namespace pelkrin {
namespace {

// The first mode is the default.
constexpr view_mode modes[] = {
    // name              html   span   flow   reads  operation
    {"align",            false, true,  false, true,  view_align},
    {"align-html",       true,  true,  false, true,  view_align_html},
    {"flow",             false, true,  true,  true,  view_flow},
    {"flow-html",        true,  true,  true,  true,  view_flow_html},
    {"flow-html-space",  true,  true,  true,  true,  view_flow_html_space},
    {"contig",           false, false, false, false, view_contig},
    {"contig-html",      true,  false, false, false, view_contig_html},
    {"flow-table",       false, true,  true,  false, view_flow_table},
    {"seq-table",        false, true,  false, false, view_seq_table},
    {"flow-consensus",   false, false, true,  false, view_flow_consensus},
    {"layout",           false, false, false, false, view_layout},
    {"report",           true,  false, true,  false, nullptr},
};

}  // namespace

std::span<const view_mode> view_modes() { return modes; }

const view_mode& default_view_mode() { return modes[0]; }

const view_mode* find_view_mode(std::string_view name) {
    for (const view_mode& mode : modes) {
        if (mode.name == name) return &mode;
    }
    return nullptr;
}

}  // namespace pelkrin

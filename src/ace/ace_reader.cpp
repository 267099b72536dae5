#include "ace/ace_reader.h"

#include <algorithm>
#include <array>
#include <ostream>
#include <string_view>
#include <utility>

#include "common/fatal_error.h"

namespace pelkrin {
namespace {

// The order in which a contig's records must come.
constexpr std::array<std::string_view, 5> record_tags = {"CO", "BQ", "AF", "BS", "RD"};
constexpr std::size_t co_index = 0;
constexpr std::size_t bq_index = 1;
constexpr std::size_t af_index = 2;
constexpr std::size_t bs_index = 3;
constexpr std::size_t rd_index = 4;

[[noreturn]] void wrong_tag(const std::string& tag) {
    throw fatal_error(1, "Error: tag '" + tag + "' should be not in the ACE file!\n");
}

}  // namespace

aceReader::aceReader(std::string name, console messages) : file_name(std::move(name)), messages_(messages) {
    if (!ace_in.open(file_name)) throw fatal_error(1, "The file: " + file_name + " can not be opened\n");
    read_header();
}

aceReader::aceReader(std::string name, std::string_view text, console messages)
    : file_name(std::move(name)), messages_(messages) {
    if (!ace_in.open_memory(text)) throw fatal_error(1, "The file: " + file_name + " can not be opened\n");
    read_header();
}

bool aceReader::open_file(const char* name) {
    ace_in.close();
    header_unusable_ = false;
    unannounced_contigs_ = false;
    contig_num = 0;
    read_total = 0;
    file_name = name;
    // This message has no line end.
    if (!ace_in.open(file_name)) throw fatal_error(1, "the file: " + file_name + " can not be opened");
    read_header();
    return true;
}

void aceReader::close_file() {
    ace_in.close();
    header_unusable_ = false;
    unannounced_contigs_ = false;
    contig_num = 0;
    read_total = 0;
}

void aceReader::read_header() {
    std::string word;
    ace_in.read_word(word);
    if (word != "AS") throw fatal_error(1, "Error: the input file " + file_name + " does not like an ACE file\n");
    // A count that cannot be read leaves the stream failed, which ends the
    // reading of contigs before it starts.
    ace_in.read_number(contig_num);
    ace_in.read_number(read_total);
    header_unusable_ = contig_num == 0 || ace_in.failed();
}

bool aceReader::holds_unannounced_contigs() {
    if (!header_unusable_ || file_name.empty() || !ace_in.is_open()) return unannounced_contigs_;
    header_unusable_ = false;  // the rest of the file is read once
    ace_in.clear_failure();
    std::string word;
    std::string_view line;
    while (!unannounced_contigs_ && ace_in.next_line(line)) {
        line_scanner scanner(line);
        word.clear();
        scanner.word(word);
        unannounced_contigs_ = word == "CO";
    }
    return unannounced_contigs_;
}

bool aceReader::skip_block() {
    std::string_view line;
    while (ace_in.next_line(line)) {
        if (line.empty()) return true;
    }
    return false;
}

bool aceReader::read_text_block(std::vector<char>& buffer) {
    buffer.clear();
    return ace_in.append_block(buffer);
}

bool aceReader::skip_brace_block() {
    std::string_view line;
    while (ace_in.next_line(line)) {
        if (!line.empty() && line.front() == '}') return true;
    }
    return false;
}

bool aceReader::read_af_lines(contig& target, std::string_view first_line, std::string& tag) {
    std::string_view line = first_line;
    af_order_.clear();
    for (int32_t i = 1; i <= target.read_num; ++i) {
        // The count comes from the file, so the end of input must end the loop.
        if (i > 1 && !ace_in.next_line(line)) return false;
        line_scanner scanner(line);
        scanner.word(tag);
        READ read;
        char direction = 0;
        scanner.word(read.name);
        scanner.character(direction);
        scanner.number(read.pos);
        read.uncomplemented = direction == 'C' ? 0 : 1;
        if (names_ != nullptr) {
            af_names_ += read.name;
            af_ends_.push_back(af_names_.size());
        } else {
            af_order_.push_back(target.reads.insert_or_assign(read.name, std::move(read)).first);
        }
    }
    if (names_ != nullptr) gather_names();
    return true;
}

void aceReader::gather_names() {
    std::vector<std::string_view> sorted;
    sorted.reserve(af_ends_.size());
    for (std::size_t i = 0, begin = 0; i < af_ends_.size(); begin = af_ends_[i++]) {
        sorted.push_back(std::string_view(af_names_).substr(begin, af_ends_[i] - begin));
    }
    // The order and the uniqueness of contig::reads' keys.
    std::sort(sorted.begin(), sorted.end());
    sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
    names_->names.clear();
    names_->names.reserve(af_names_.size());
    names_->name_ends.clear();
    names_->name_ends.reserve(sorted.size());
    for (std::string_view name : sorted) {
        names_->names += name;
        names_->name_ends.push_back(names_->names.size());
    }
}

READ& aceReader::read_named(contig& target, const std::string& name, int32_t i) {
    // RD records mostly come in the order of the AF lines: the AF line in the
    // RD record's place is tried first, then the others.
    const auto at = static_cast<std::size_t>(i - 1);
    if (names_ == nullptr) {
        if (at < af_order_.size() && af_order_[at]->first == name) return af_order_[at]->second;
        const auto found = target.reads.find(name);
        if (found == target.reads.end()) throw fatal_error(1, "Error: AF tag for read " + name + " is missing\n");
        return found->second;
    }
    if (at < af_ends_.size()) {
        const std::size_t begin = at == 0 ? 0 : af_ends_[at - 1];
        if (std::string_view(af_names_).substr(begin, af_ends_[at] - begin) == name) return unkept_read_;
    }
    // Else among the sorted names.
    std::size_t low = 0;
    std::size_t high = names_->reads();
    while (low < high) {
        const std::size_t middle = low + (high - low) / 2;
        if (names_->read_name(middle) < name) {
            low = middle + 1;
        } else {
            high = middle;
        }
    }
    if (low < names_->reads() && names_->read_name(low) == name) return unkept_read_;
    throw fatal_error(1, "Error: AF tag for read " + name + " is missing\n");
}

bool aceReader::read_rd_section(contig& target, line_scanner& scanner, std::string& tag) {
    if (target.read_num <= 0) return true;
    std::string name;
    std::string held_rest;
    std::string_view line;
    for (int32_t i = 1; i <= target.read_num; ++i) {
        while (tag != "RD") {
            if (!ace_in.next_line(line)) return false;
            scanner = line_scanner(line);
            scanner.word(tag);
        }
        name.clear();
        scanner.word(name);
        READ& read = read_named(target, name, i);
        scanner.number(read.len);

        bool block_ended = false;
        if (names_ == nullptr) {
            // Most reads hold as many bases as their padded length; one that
            // holds far fewer (a damaged file) gives the room back.
            read.seq.reserve(static_cast<std::size_t>(std::max<int16_t>(read.len, 0)));
            block_ended = read_text_block(read.seq);
            if (read.seq.capacity() > 2 * read.seq.size() + 64) read.seq.shrink_to_fit();
        } else {
            block_ended = skip_block();
        }
        if (!block_ended) return false;

        // The QA line: its first word becomes the tag, the quality clip range is dropped.
        do {
            if (!ace_in.next_line(line)) return false;
        } while (line.empty());
        scanner = line_scanner(line);
        scanner.word(tag);
        int32_t dropped = 0;
        scanner.number(dropped);
        scanner.number(dropped);
        scanner.number(read.align_start);
        scanner.number(read.align_end);
        // A QA line headed "RD" names the next read itself; keep its rest past the DS line.
        if (tag == "RD") scanner.move_rest_to(held_rest);

        ace_in.next_line(line);  // the DS line, whatever it holds
    }
    return true;
}

bool aceReader::next_contig_names(contig_names& target) {
    target = contig_names{};
    af_names_.clear();
    af_ends_.clear();
    contig c;
    names_ = &target;
    bool whole = false;
    try {
        whole = next_contig(c);
    } catch (...) {
        names_ = nullptr;
        throw;
    }
    names_ = nullptr;
    target.name = std::move(c.name);
    return whole;
}

bool aceReader::next_contig(contig& target) {
    contig_begun_ = false;
    const bool whole = read_contig(target);
    ended_inside_contig_ = !whole && contig_begun_;
    return whole;
}

bool aceReader::read_contig(contig& target) {
    if (file_name.empty()) {
        messages_.err << "Error: there is no ACE file open!" << std::endl;
        return false;
    }
    if (contig_num == 0 || ace_in.at_end()) return false;

    std::size_t expected = co_index;
    std::string tag;  // kept across lines: a line of blanks does not change it
    std::string_view line;
    while (ace_in.next_line(line)) {
        if (line.empty()) continue;
        line_scanner scanner(line);
        scanner.word(tag);
        if (tag.find('{') != std::string::npos && skip_brace_block()) tag.clear();
        if (tag.empty()) continue;
        if (tag != record_tags[expected]) wrong_tag(tag);

        switch (expected) {
            case co_index: {
                contig_begun_ = true;
                co_line_had_cr_ = !line.empty() && line.back() == '\r';
                scanner.word(target.name);
                begun_name_ = target.name;
                scanner.number(target.base_num);
                scanner.number(target.read_num);
                scanner.number(target.seg_num);
                char direction = 0;
                if (scanner.character(direction) && direction == 'U') target.uncomplemented = 1;
                if (names_ == nullptr) {
                    read_text_block(target.consensus);
                } else {
                    skip_block();
                }
                break;
            }
            case bq_index:
            case bs_index:
                skip_block();
                break;
            case af_index:
                if (!read_af_lines(target, line, tag)) return false;
                break;
            case rd_index:
                return read_rd_section(target, scanner, tag);
        }
        ++expected;
    }
    return false;
}

int32_t aceReader::next_contig(std::vector<contig>& out, int16_t max_count) {
    if (max_count <= 0) return 0;
    int32_t count = 0;
    for (;;) {
        contig fresh;
        if (!next_contig(fresh)) return count;
        out.push_back(std::move(fresh));
        if (++count >= max_count) return max_count;
    }
}

}  // namespace pelkrin

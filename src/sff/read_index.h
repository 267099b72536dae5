#pragma once
// The index of an SFF file's reads: read name to the byte offset of its record.
// Held as one array rather than a tree: the walk that fills it appends (a later
// record of a name wins). Iterating sorts the array by name on first use.
// position_of, the run's look-up, never sorts: it goes through a hash table of
// array slots built over the array as it stands, since with millions of reads
// every step of a tree or a binary search misses the cache.
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pelkrin {

class read_index {
public:
    using value_type = std::pair<std::string, std::int64_t>;
    using const_iterator = std::vector<value_type>::const_iterator;
    using const_reverse_iterator = std::vector<value_type>::const_reverse_iterator;

    // Sets the entry of `name`; a later call for the same name wins.
    void set(std::string name, std::int64_t position);
    // The entry of `name`, made with position 0 when there is none. Making one
    // moves the entries after it: not for a loop over many missing names.
    std::int64_t& operator[](const std::string& name);
    // What the subscript gives, without making an entry: the position of `name`,
    // or 0 when there is none.
    std::int64_t position_of(std::string_view name) const;
    // position_of for many names, out[i] for names[i]: the memory each look-up
    // needs is asked for ahead, so that their cache misses overlap.
    void positions_of(std::span<const std::string_view> names, std::span<std::int64_t> out) const;
    // The entry of `name`; throws std::out_of_range when there is none.
    std::int64_t at(const std::string& name) const;
    std::size_t count(const std::string& name) const;
    std::size_t size() const;
    bool empty() const { return entries_.empty(); }
    void reserve(std::size_t n) { entries_.reserve(n); }

    const_iterator begin() const;
    const_iterator end() const;
    const_reverse_iterator rbegin() const;
    const_reverse_iterator rend() const;

    friend bool operator==(const read_index& a, const read_index& b);

private:
    // Sorts what was appended since the last look-up into place, keeping the
    // last entry of every name.
    void settle() const;
    // The first entry not before `name`, once sorted.
    std::vector<value_type>::iterator lower(const std::string& name) const;
    const value_type* find(const std::string& name) const;
    void build_slots() const;
    // The slot where a probe for `hash` starts; false when the index must be searched instead.
    bool slots_ready() const;
    std::int64_t probe(std::string_view name, std::size_t hash) const;

    mutable std::vector<value_type> entries_;
    mutable std::size_t sorted_ = 0;  // entries_[0, sorted_) are sorted and unique
    // Open addressing over entries_. A slot keeps part of the name's hash, so
    // that a probe rarely has to look at an entry that is not the one sought.
    struct slot {
        std::uint32_t entry = 0;  // entry index + 1, or 0 for a free slot
        std::uint32_t tag = 0;    // the hash's upper bits
    };
    mutable std::vector<slot> slots_;
    mutable bool slots_current_ = false;
};

}  // namespace pelkrin

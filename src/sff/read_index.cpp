#include "sff/read_index.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <stdexcept>

namespace pelkrin {
namespace {

bool by_name(const read_index::value_type& a, const read_index::value_type& b) { return a.first < b.first; }

}  // namespace

void read_index::set(std::string name, std::int64_t position) {
    entries_.emplace_back(std::move(name), position);
    slots_current_ = false;
}

void read_index::settle() const {
    if (sorted_ == entries_.size()) return;
    slots_current_ = false;
    const auto middle = entries_.begin() + static_cast<std::ptrdiff_t>(sorted_);
    // Stable throughout, so among equal names the order of setting is kept...
    std::stable_sort(middle, entries_.end(), by_name);
    std::inplace_merge(entries_.begin(), middle, entries_.end(), by_name);
    // ...and the last of each run of equal names is the one that stays.
    std::size_t out = 0;
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        if (i + 1 < entries_.size() && entries_[i + 1].first == entries_[i].first) continue;
        if (out != i) entries_[out] = std::move(entries_[i]);
        ++out;
    }
    entries_.resize(out);
    sorted_ = out;
}

std::vector<read_index::value_type>::iterator read_index::lower(const std::string& name) const {
    settle();
    return std::lower_bound(entries_.begin(), entries_.end(), name,
                            [](const value_type& e, const std::string& key) { return e.first < key; });
}

const read_index::value_type* read_index::find(const std::string& name) const {
    const auto it = lower(name);
    return (it != entries_.end() && it->first == name) ? &*it : nullptr;
}

std::int64_t& read_index::operator[](const std::string& name) {
    auto it = lower(name);
    if (it == entries_.end() || it->first != name) {
        it = entries_.insert(it, value_type(name, 0));
        ++sorted_;
        slots_current_ = false;
    }
    return it->second;
}

namespace {

std::uint32_t tag_of(std::size_t hash) { return static_cast<std::uint32_t>(static_cast<std::uint64_t>(hash) >> 32); }

}  // namespace

void read_index::build_slots() const {
    std::size_t size = 16;
    while (size < entries_.size() * 2) size *= 2;
    slots_.assign(size, slot{});
    const std::size_t mask = size - 1;
    // In array order: the sorted part holds names set before everything after
    // it, and the rest is in order of setting, so the last entry of a name is
    // the one its slot keeps. The slots of a batch of names are asked for
    // before any of them is filled, so that their cache misses overlap.
    constexpr std::size_t batch = 16;
    std::size_t hashes[batch];
    for (std::size_t first = 0; first < entries_.size(); first += batch) {
        const std::size_t n = std::min(batch, entries_.size() - first);
        for (std::size_t k = 0; k < n; ++k) {
            hashes[k] = std::hash<std::string_view>{}(entries_[first + k].first);
            __builtin_prefetch(&slots_[hashes[k] & mask], 1);
        }
        for (std::size_t k = 0; k < n; ++k) {
            const std::size_t i = first + k;
            const std::string_view name = entries_[i].first;
            const std::uint32_t tag = tag_of(hashes[k]);
            std::size_t s = hashes[k] & mask;
            while (slots_[s].entry != 0 && !(slots_[s].tag == tag && entries_[slots_[s].entry - 1].first == name))
                s = (s + 1) & mask;
            slots_[s] = slot{static_cast<std::uint32_t>(i + 1), tag};
        }
    }
    slots_current_ = true;
}

bool read_index::slots_ready() const {
    // More entries than 32-bit slots can name cannot come from a file walk; search instead.
    if (entries_.size() >= std::numeric_limits<std::uint32_t>::max() / 2) return false;
    if (!slots_current_) build_slots();
    return true;
}

std::int64_t read_index::probe(std::string_view name, std::size_t hash) const {
    const std::size_t mask = slots_.size() - 1;
    const std::uint32_t tag = tag_of(hash);
    for (std::size_t s = hash & mask; slots_[s].entry != 0; s = (s + 1) & mask) {
        if (slots_[s].tag != tag) continue;
        const value_type& e = entries_[slots_[s].entry - 1];
        if (e.first == name) return e.second;
    }
    return 0;
}

std::int64_t read_index::position_of(std::string_view name) const {
    if (!slots_ready()) {
        const value_type* e = find(std::string(name));
        return e != nullptr ? e->second : 0;
    }
    return probe(name, std::hash<std::string_view>{}(name));
}

void read_index::positions_of(std::span<const std::string_view> names, std::span<std::int64_t> out) const {
    if (!slots_ready()) {
        for (std::size_t i = 0; i < names.size(); ++i) out[i] = position_of(names[i]);
        return;
    }
    constexpr std::size_t batch = 16;
    const std::size_t mask = slots_.size() - 1;
    std::size_t hashes[batch];
    for (std::size_t first = 0; first < names.size(); first += batch) {
        const std::size_t n = std::min(batch, names.size() - first);
        // Ask for every name's first slot, then for the entry it names, then probe.
        for (std::size_t k = 0; k < n; ++k) {
            hashes[k] = std::hash<std::string_view>{}(names[first + k]);
            __builtin_prefetch(&slots_[hashes[k] & mask]);
        }
        for (std::size_t k = 0; k < n; ++k) {
            const slot& s = slots_[hashes[k] & mask];
            if (s.entry != 0) __builtin_prefetch(&entries_[s.entry - 1]);
        }
        for (std::size_t k = 0; k < n; ++k) out[first + k] = probe(names[first + k], hashes[k]);
    }
}

std::int64_t read_index::at(const std::string& name) const {
    const value_type* e = find(name);
    if (e == nullptr) throw std::out_of_range("read_index::at: " + name);
    return e->second;
}

std::size_t read_index::count(const std::string& name) const { return find(name) != nullptr ? 1 : 0; }

std::size_t read_index::size() const {
    settle();
    return entries_.size();
}

read_index::const_iterator read_index::begin() const {
    settle();
    return entries_.cbegin();
}

read_index::const_iterator read_index::end() const {
    settle();
    return entries_.cend();
}

read_index::const_reverse_iterator read_index::rbegin() const {
    settle();
    return entries_.crbegin();
}

read_index::const_reverse_iterator read_index::rend() const {
    settle();
    return entries_.crend();
}

bool operator==(const read_index& a, const read_index& b) {
    a.settle();
    b.settle();
    return a.entries_ == b.entries_;
}

}  // namespace pelkrin

#pragma once
// Sizing and filling the columns of a span table.
#include <cstdint>
#include <stdexcept>
#include <vector>

namespace pelkrin {

// Resizes `table` to `count` columns; a negative count cannot be a size, and
// fails as a resize to that count taken as unsigned would.
template <typename Column>
void resize_columns(std::vector<Column>& table, int64_t count) {
    if (count < 0) throw std::length_error("vector::resize");
    table.resize(static_cast<std::size_t>(count));
}

// Sets entry `row` of column `col`, first lengthening the column with `filler`
// to row + 1 entries. A column outside the table drops the value.
template <typename Value>
void set_cell(std::vector<std::vector<Value>>& table, int64_t col, std::size_t row, Value value, Value filler) {
    if (col < 0 || col >= static_cast<int64_t>(table.size())) return;
    auto& column = table[static_cast<std::size_t>(col)];
    if (column.size() < row + 1) column.resize(row + 1, filler);
    column[row] = value;
}

}  // namespace pelkrin

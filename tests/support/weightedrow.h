// A row of a table by chance.
#pragma once

#include <cstddef>
#include <iterator>
#include <numeric>
#include <random>

/// Draws a row, each as often as its `weight` says.
template<typename Row, std::size_t count>
const Row& drawRow(const Row (&rows)[count], std::mt19937& random)
{
    const int total = std::accumulate(std::begin(rows), std::end(rows), 0,
                                      [](int sum, const Row& row) { return sum + row.weight; });
    int at = std::uniform_int_distribution<int>(0, total - 1)(random);
    const Row* row = rows;
    while ((at -= row->weight) >= 0)
        ++row;
    return *row;
}

#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace veltrane::detail {

/// Sorts entries by their 64-bit number `key`, keeping equal ones in order, in a time that grows with their count
/// alone: byte by byte from the lowest, passing over bytes in which all keys agree.
template <class Entry>
void SortByKey(std::vector<Entry>& entries) {
    constexpr std::size_t BYTES = 8;
    constexpr std::size_t FEW = 256;  // fewer are in order before the counters are
    if (entries.size() < FEW) {
        std::stable_sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a.key < b.key; });
        return;
    }
    const auto byteOf = [](const Entry& entry, std::size_t byte) { return entry.key >> 8 * byte & 0xFF; };
    std::array<std::array<std::size_t, 256>, BYTES> counts{};
    for (const Entry& entry : entries) {
        for (std::size_t byte = 0; byte < BYTES; ++byte) ++counts[byte][byteOf(entry, byte)];
    }
    std::vector<Entry> sorted(entries.size());
    for (std::size_t byte = 0; byte < BYTES; ++byte) {
        auto& places = counts[byte];
        if (places[byteOf(entries.front(), byte)] == entries.size()) continue;
        std::size_t next = 0;
        for (std::size_t& place : places) next += std::exchange(place, next);
        for (const Entry& entry : entries) sorted[places[byteOf(entry, byte)]++] = entry;
        entries.swap(sorted);
    }
}

}  // namespace veltrane::detail

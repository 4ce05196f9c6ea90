#pragma once

#include <bit>
#include <cstddef>
#include <vector>

namespace veltrane::detail {

/// The places of a row, some of them taken: tells the place of the n-th taken one while more are being taken, both in a
/// time that grows with the logarithm of the row. A binary indexed tree.
/// @code
/// TakenPlaces taken{10};
/// for (const std::size_t place : {7, 2, 5}) taken.Take(place);
/// taken.Nth(1);  // 5
/// @endcode
class TakenPlaces {
public:
    explicit TakenPlaces(std::size_t places) : m_Counts(std::bit_ceil(places + 1)) {}

    int Count() const noexcept { return m_nCount; }

    /// Takes a place that is free.
    void Take(std::size_t place) noexcept {
        ++m_nCount;
        for (std::size_t at = place + 1; at < m_Counts.size(); at += at & (~at + 1)) ++m_Counts[at];
    }

    /// @param n  from 0, less than Count
    std::size_t Nth(int n) const noexcept {
        std::size_t at = 0;
        for (std::size_t step = m_Counts.size() / 2; step > 0; step /= 2) {
            if (m_Counts[at + step] > n) continue;
            at += step;
            n -= m_Counts[at];
        }
        return at;
    }

private:
    std::vector<int> m_Counts;  // of the taken places in a stretch that ends at an index
    int m_nCount = 0;
};

}  // namespace veltrane::detail

#pragma once

#include <bit>
#include <cstddef>
#include <iterator>
#include <span>
#include <vector>

#include "veltrane/collections/setorder.h"

namespace veltrane::detail {

/// A row of places, some of them taken: gives the place of the n-th taken one while more are added, both in logarithmic
/// time. A binary indexed tree.
/// @code
/// XTakenPlaces taken{10};
/// for (const std::size_t place : {7, 2, 5}) taken.Add(place);
/// taken.Nth(1);  // 5
/// @endcode
class XTakenPlaces {
public:
    explicit XTakenPlaces(std::size_t places) : m_Counts(std::bit_ceil(places + 1)) {}

    int Count() const noexcept { return m_nCount; }

    /// Adds a place that is free.
    void Add(std::size_t place) noexcept {
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
    std::vector<int> m_Counts;  // of the taken places in a range that ends at an index
    int m_nCount = 0;
};

/// Appends, in ascending order, all values of a and, once each, the values of b that are not in a. For a known order.
template <class Element, class Append>
void MergeUnion(std::span<const Element> a, std::span<const Element> b, Append append) {
    const auto first = InOrder(a);
    const auto second = InOrder(b);
    auto next = first.begin();
    for (auto entry = second.begin(); entry != second.end(); ++entry) {
        if (entry != second.begin() && !(*std::prev(entry) < *entry)) continue;  // again the same value
        for (; next != first.end() && *next < *entry; ++next) append(next->element->GetValue());
        if (next == first.end() || *entry < *next) append(entry->element->GetValue());
    }
    for (; next != first.end(); ++next) append(next->element->GetValue());
}

/// The union by a comparison that need not follow the order of the values. It is defined by steps: each element of b is
/// looked up in the sorted set by binary search, is inserted if it is not found, and the set is sorted again. Here no
/// element moves: all are sorted beforehand, and the set at each step is the row of those added so far.
/// @param elements  those of a, in front, and of b
/// @param find      find(probe, size, elementAt): position of what the comparison finds equal, or -1
/// @return the elements of the union in ascending order
template <class Element, class Find>
std::vector<Element*> LookUpUnion(std::span<Element> elements, std::size_t sizeOfA, Find find) {
    const std::vector<XEntry<Element>> sorted = InOrder(elements);
    std::vector<std::size_t> places(sorted.size());  // of each element in the order
    for (std::size_t place = 0; place < sorted.size(); ++place) {
        places[static_cast<std::size_t>(sorted[place].element - elements.data())] = place;
    }
    XTakenPlaces taken{sorted.size()};
    const auto elementAt = [&](int n) -> Element& { return *sorted[taken.Nth(n)].element; };
    for (std::size_t i = 0; i < sorted.size(); ++i) {
        if (i < sizeOfA || find(elements[i], taken.Count(), elementAt) < 0) taken.Add(places[i]);
    }
    std::vector<Element*> kept;
    kept.reserve(static_cast<std::size_t>(taken.Count()));
    for (int n = 0; n < taken.Count(); ++n) kept.push_back(&elementAt(n));
    return kept;
}

}  // namespace veltrane::detail

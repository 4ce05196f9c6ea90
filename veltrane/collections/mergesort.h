#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace veltrane::detail {

/// Sorts pointers by a relation between them that nobody vouches for. Which pointer is read is bounded by the borders
/// of the runs alone, and each pass puts every pointer of the one before in exactly one place: a relation that
/// contradicts itself costs the order and nothing else (std::sort and the heaps may run out of the array then). Keeps
/// equal ones in order.
/// @throws what the relation throws; nothing has been changed by then, as the result is a new array
template <class P, class Less>
std::vector<P> MergeSorted(std::vector<P> order, Less less) {
    const std::size_t size = order.size();
    std::vector<P> merged(size);
    for (std::size_t width = 1; width < size; width *= 2) {
        for (std::size_t begin = 0; begin < size; begin += 2 * width) {
            const std::size_t middle = std::min(begin + width, size);
            const std::size_t end = std::min(middle + width, size);
            std::size_t left = begin;
            std::size_t right = middle;
            for (std::size_t out = begin; out < end; ++out) {
                const bool takeRight = left == middle || (right < end && less(order[right], order[left]));
                merged[out] = order[takeRight ? right++ : left++];
            }
        }
        order.swap(merged);
    }
    return order;
}

}  // namespace veltrane::detail

#pragma once

#include <vector>

namespace veltrane::detail {

/// Positions in the first of two sorted sequences, grouped by whether the second one also holds the value.
struct XMatch {
    std::vector<int> onlyFirst;
    std::vector<int> both;
};

/// Walks two sorted sequences together and matches equal values one to one. compare(i, j) compares the value at i of
/// the first with that at j of the second: negative, 0 or positive.
template <class Compare>
XMatch MatchSorted(int firstSize, int secondSize, Compare compare) {
    XMatch match;
    int j = 0;
    for (int i = 0; i < firstSize; ++i) {
        int order = -1;
        while (j < secondSize && (order = compare(i, j)) > 0) ++j;
        const bool isBoth = j < secondSize && order == 0;
        (isBoth ? match.both : match.onlyFirst).push_back(i);
        if (isBoth) ++j;
    }
    return match;
}

}  // namespace veltrane::detail

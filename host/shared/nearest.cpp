#include "nearest.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <utility>

namespace veltrane::detail {

namespace {

constexpr int LONGEST_NAME = 64;  // nothing longer is near to any name

using Row = std::vector<int>;

// Number of elements to insert, delete, change or swap with their neighbour until one text is the other.
int EditDistance(const CString& left, const CString& right) {
    const int width = right.GetLength();
    Row before;
    Row last;
    Row row(static_cast<std::size_t>(width) + 1);
    std::iota(row.begin(), row.end(), 0);
    for (int i = 0; i < left.GetLength(); ++i) {
        before = std::exchange(last, row);
        row[0] = i + 1;
        for (int j = 0; j < width; ++j) {
            const auto at = static_cast<std::size_t>(j) + 1;
            const int change = last[at - 1] + (left[i] == right[j] ? 0 : 1);
            row[at] = std::min({last[at] + 1, row[at - 1] + 1, change});
            const bool isSwap = i > 0 && j > 0 && left[i] == right[j - 1] && left[i - 1] == right[j];
            if (isSwap) row[at] = std::min(row[at], before[at - 2] + 1);
        }
    }
    return row.back();
}

}  // namespace

CString Nearest(const CString& name, const std::vector<CString>& texts) {
    CString nearest;
    if (name.GetLength() > LONGEST_NAME) return nearest;
    const CString folded = CString{name}.MakeLower();
    int best = std::min(3, name.GetLength() / 3) + 1;
    for (const CString& text : texts) {
        if (text == name || std::abs(text.GetLength() - name.GetLength()) >= best) continue;
        const int distance = EditDistance(folded, CString{text}.MakeLower());
        if (distance >= best) continue;
        best = distance;
        nearest = text;
    }
    return nearest;
}

}  // namespace veltrane::detail

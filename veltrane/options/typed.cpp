#include "veltrane/options/typed.h"

namespace veltrane::detail {

namespace {

// Tables of two tools may use the same ids, one after the other.
bool IsSame(const XOptionDefinition& row, const XOptionDefinition& known) {
    return row.eOption == known.eOption && std::wstring_view{row.szLongName} == known.szLongName;
}

}  // namespace

const XOptionDefinition* FindKnownRow(const XOptionDefinition& known, std::atomic<int>& place) {
    const XOptionDefinition* row = GetOptionDefinitionAt(place.load(std::memory_order_relaxed));
    if (row && IsSame(*row, known)) return row;
    for (int at = 0; (row = GetOptionDefinitionAt(at)); ++at) {
        if (!IsSame(*row, known)) continue;
        place.store(at, std::memory_order_relaxed);
        return row;
    }
    return nullptr;
}

}  // namespace veltrane::detail

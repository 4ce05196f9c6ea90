#pragma once

#include <unordered_map>
#include <vector>

#include "veltrane/options/xoptionitem.h"
#include "veltrane/options/xoptionorigin.h"

namespace veltrane::detail {

/// A value that an item got, and how.
struct XKeptOrigin {
    OptionOrigin origin;
    CString value = {};
    std::vector<OptionStep> steps = {};
};

/// The origins of the values of a store's items, those overridden in the store included. Costs nothing until somebody
/// wants them.
class XOptionOrigins {
public:
    bool AreKept() const noexcept { return m_bKept; }
    void Keep(bool wanted) noexcept { m_bKept = wanted; }

    void Note(const XOptionItem& item, XKeptOrigin origin);
    void Forget(const XOptionItem& item);

    /// All values that an item has had, the newest last. One that a host has put into the item itself comes from it.
    std::vector<XKeptOrigin> Of(const XOptionItem& item) const;

private:
    bool m_bKept = false;
    std::unordered_map<const XOptionItem*, std::vector<XKeptOrigin>> m_Origins;
};

}  // namespace veltrane::detail

#include "veltrane/options/detail/xoptionorigins.h"

#include <utility>

namespace veltrane::detail {

void XOptionOrigins::Note(const XOptionItem& item, XKeptOrigin origin) {
    if (!m_bKept) return;
    origin.value = item.GetOptionValue();
    m_Origins[&item].push_back(std::move(origin));
}

void XOptionOrigins::Forget(const XOptionItem& item) {
    m_Origins.erase(&item);
}

std::vector<XKeptOrigin> XOptionOrigins::Of(const XOptionItem& item) const {
    const auto found = m_Origins.find(&item);
    if (found == m_Origins.end()) return {};
    std::vector<XKeptOrigin> values = found->second;
    const CString& now = item.GetOptionValue();
    if (values.back().value != now) {
        XKeptOrigin& set = values.emplace_back();
        set.origin.layer = OptionLayer::Host;
        set.origin.text = now;
        set.value = now;
    }
    return values;
}

}  // namespace veltrane::detail

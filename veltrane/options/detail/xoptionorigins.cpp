#include "veltrane/options/detail/xoptionorigins.h"

#include <utility>

namespace veltrane::detail {

namespace {

// Each source answers once: what the same one said before is gone.
void Push(std::vector<XKeptOrigin>& values, XKeptOrigin value) {
    std::erase_if(values, [&](const XKeptOrigin& known) {
        return known.origin.layer == value.origin.layer && known.origin.word == value.origin.word;
    });
    values.push_back(std::move(value));
}

}  // namespace

void XOptionOrigins::Note(const XOptionItem& item, XKeptOrigin origin) {
    if (!m_bKept) return;
    origin.value = item.GetOptionValue();
    Push(m_Origins[&item], std::move(origin));
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
        XKeptOrigin set;
        set.origin.layer = OptionLayer::Host;
        set.origin.text = set.value = now;
        Push(values, std::move(set));
    }
    return values;
}

}  // namespace veltrane::detail

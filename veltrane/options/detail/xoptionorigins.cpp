#include "veltrane/options/detail/xoptionorigins.h"

#include <utility>

namespace veltrane::detail {

namespace {

// Each source has one answer: a new one replaces the one before. On the command line each word is an answer; a word
// that is not after the last one belongs to another command line. Everything that can fail comes first.
void Push(std::vector<XKeptOrigin>& values, XKeptOrigin value) {
    if (values.size() == values.capacity()) values.reserve(2 * values.size() + 1);
    const int last = values.empty() ? -1 : values.back().origin.word;
    const bool isNextWord = last >= 0 && last < value.origin.word;
    const auto isSame = [&](const XKeptOrigin& known) { return known.origin.layer == value.origin.layer; };
    if (!isNextWord) std::erase_if(values, isSame);
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
    if (found == m_Origins.end() || found->second.empty()) return {};  // there was no memory for the origin
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

OptionOrigin XOptionOrigins::LastOf(const XOptionItem& item) const {
    const std::vector<XKeptOrigin> values = Of(item);
    return values.empty() ? OptionOrigin{} : values.back().origin;
}

void XOptionOrigins::NoteRule(enumOption option, int number, OptionOrigin origin) {
    const bool isThere = !m_RulePlaces.empty() && m_RulePlaces.back().layer == origin.layer &&
                         m_RulePlaces.back().section == origin.section && m_RulePlaces.back().file == origin.file;
    if (!isThere) m_RulePlaces.push_back({{std::move(origin.file), 0, std::move(origin.section)}, origin.layer});
    m_Rules.push_back({option, number, origin.line, m_RulePlaces.size() - 1, std::move(origin.key)});
}

void XOptionOrigins::AddOrigins(enumOption option, std::vector<OptionRule>& rules) const {
    for (const RuleOrigin& noted : m_Rules) {
        if (noted.option != option) continue;
        OptionRule& rule = rules[static_cast<std::size_t>(noted.number)];
        rule.origin = m_RulePlaces[noted.place];
        rule.origin.line = noted.line;
        rule.origin.key = noted.key;
        rule.origin.text = rule.newText;
    }
}

}  // namespace veltrane::detail

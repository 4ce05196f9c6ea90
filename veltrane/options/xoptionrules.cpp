// Reads the naming rules of the configuration and tells where they come from.
#include <algorithm>
#include <set>
#include <string_view>
#include <utility>

#include "veltrane/options/detail/xoptionretrieval.h"
#include "veltrane/options/xoption.h"
#include "veltrane/platform/sources/internal/snapshot.h"
#include "veltrane/platform/text/internal/indexformat.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

const XOptionDefinition& RuleDefinition(enumOption option) {
    return option == eOptionTableNameRules ? LibraryRow(eOptionTableNameRules) : LibraryRow(eOptionColumnNameRules);
}

/// Calls visit(field) for each field of a comma-separated list, up to the first empty one.
template <class Visit>
void ForEachField(std::wstring_view list, Visit visit) {
    while (!list.empty() && list.front() != L',') {
        const std::size_t end = std::min(list.find(L','), list.size());
        visit(list.substr(0, end));
        list.remove_prefix(std::min(end + 1, list.size()));
    }
}

/// Calls visit(version, section, key) for each key of the sections of a form, by version and then in the order of the
/// file. A negative version ends the walk.
template <class Visit>
void ForEachRule(XMapInt2CString& names, const CString& format, Visit visit) {
    CString keys;
    for (int version = names.GetFirst(keys); version >= 0; version = names.GetNext(keys)) {
        const CString section = FormatIndex(format, version);
        ForEachField(keys.View(), [&](std::wstring_view key) { visit(version, section, CString{key}); });
    }
}

// The basic file also answers for a key without a text that only the user file has.
void FindEmptyKey(OptionOrigin& origin, const XConfiguration* userFile, const CString& section, const CString& key) {
    SourcePlace place;
    CString empty;
    if (!userFile || !userFile->GetKeyValue(empty, section, key, /*assignEmpty*/ true, &place)) return;
    if (place.line > 0) origin = {place, OptionLayer::UserFile};
}

}  // namespace

void XOption::ReadNamingRules(enumOption option) {
    if (option != eOptionTableNameRules && option != eOptionColumnNameRules) return;
    if (!OptionRegistry::HasLibraryRow(RuleDefinition(option))) return;
    XNamingRules& rules = option == eOptionTableNameRules ? m_TableNameRules : m_ColumnNameRules;
    const CString format = m_pRetrieval->SectionName(RuleDefinition(option).eSection, /*isStoring*/ true);
    XMapInt2CString names;
    if (!m_pSources->GetOptionNameSet(names, format)) return;
    const bool areKept = m_pOrigins->AreKept();
    ForEachRule(names, format, [&](int version, const CString& section, const CString& key) {
        CString value;
        std::vector<OptionPlace> places;
        if (!m_pSources->GetKeyValue(value, section, key, /*assignEmpty*/ true, areKept ? &places : nullptr)) return;
        rules.InsertRule(version, key, value);
        if (!areKept) return;
        OptionOrigin origin = ReleaseOrigin(places);
        if (origin.line == 0) FindEmptyKey(origin, m_pSources->userFile.get(), section, key);
        m_pOrigins->NoteRule(option, rules.Size() - 1, std::move(origin));
    });
}

const XNamingRules& XOption::RulesOf(enumOption option) const {
    return option == eOptionTableNameRules ? m_TableNameRules : m_ColumnNameRules;
}

std::vector<OptionRule> XOption::GetNamingRules(enumOption option) const {
    std::vector<OptionRule> rules;
    for (const XNamingRule& rule : RulesOf(option)) {
        rules.push_back({option, rule.GetVersion(), rule.GetFirst(), rule.GetSecond(), {}});
    }
    m_pOrigins->AddOrigins(option, rules);
    AddHiddenRules(rules, option);
    return rules;
}

// Those of the basic file alone that the section of the same version in the user file leaves out.
void XOption::AddHiddenRules(std::vector<OptionRule>& rules, enumOption option) const {
    if (!m_pSources->basicFile || !m_pSources->userFile) return;
    if (!OptionRegistry::HasLibraryRow(RuleDefinition(option))) return;
    const SourceSnapshot snapshot;
    const CString format = GetSectionName(RuleDefinition(option).eSection);
    std::set<std::pair<int, std::wstring_view>> known;
    for (const XNamingRule& rule : RulesOf(option)) known.emplace(rule.GetVersion(), rule.GetFirst().View());
    XMapInt2CString names;
    m_pSources->basicFile->GetOptionNameSet(names, format);
    ForEachRule(names, format, [&](int version, const CString& section, const CString& key) {
        if (known.contains({version, key.View()})) return;
        CString value;
        SourcePlace place;
        m_pSources->basicFile->GetKeyValue(value, section, key, /*assignEmpty*/ true, &place);
        rules.push_back({option, version, key, value, {place, OptionLayer::BasicFile}, /*isInForce*/ false});
    });
}

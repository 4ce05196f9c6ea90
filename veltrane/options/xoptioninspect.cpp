// What the store tells of itself: where values come from, what else the sources have, where start-up looks.
#include <algorithm>

#include "veltrane/foundation/xpath.h"
#include "veltrane/options/detail/xoptioncandidates.h"
#include "veltrane/options/detail/xoptionretrieval.h"
#include "veltrane/options/xoption.h"
#include "veltrane/platform/files/filesystem.h"
#include "veltrane/platform/sources/winreg.h"
#include "veltrane/platform/text/encoding.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

OptionLocation LocationOf(OptionLocation::Kind kind, const CString& option, const CString& path) {
    return {kind, option, path, FromUtf8(MapPath(path)), FileExists(path)};
}

// Whether start-up makes a folder of the option out.
bool IsFolder(const XOptionDefinition& definition) {
    constexpr std::wstring_view FOLDERS[] = {L"metadata", L"config", L"changefile-root", L"logging"};
    return std::ranges::find(FOLDERS, std::wstring_view{definition.szLongName}) != std::end(FOLDERS);
}

OptionStep GivenStep(const CString& text, std::vector<OptionPlace> places = {}) {
    return {OptionStep::Kind::Given, 0, {}, std::move(places), text};
}

void AddFolderStep(std::vector<OptionStep>& steps, const CString& folder) {
    steps.push_back({OptionStep::Kind::Folder, 0, {}, {}, folder});
}

// The steps of an item: those of what was given and, where start-up put it below a folder, that step.
std::vector<OptionStep> StepsOf(const std::vector<XKeptOrigin>& values) {
    const bool isFolder = values.back().origin.layer == OptionLayer::StartUp;
    const bool isGiven = !isFolder || values.size() > 1;
    const XKeptOrigin& given = isFolder && isGiven ? values[values.size() - 2] : values.back();
    std::vector<OptionStep> steps;
    if (isGiven) steps = given.steps;
    if (isGiven && steps.empty()) steps.push_back(GivenStep(given.origin.text));
    if (isGiven && steps.front().places.empty()) steps.front().places.push_back({given.origin, true});
    if (isFolder) AddFolderStep(steps, values.back().value);
    return steps;
}

// An item has the value that it has; without a known origin the steps may be those of another value.
void TellItem(OptionExplanation& explanation, const XOptionItem& item, bool isKnown) {
    const CString& value = item.GetOptionValue();
    if (!isKnown && (explanation.value != value || !explanation.error.IsEmpty())) {
        explanation.steps = {GivenStep(value)};
        explanation.error.Empty();
    }
    explanation.value = value;
    explanation.hasValue = true;
}

}  // namespace

void XOption::KeepOrigins(bool wanted) {
    m_pOrigins->Keep(wanted);
}

void XOption::LookOnly(bool wanted) {
    m_bLookOnly = wanted;
}

OptionOrigin XOption::GetOptionOrigin(const XOptionItem* item) const {
    const std::vector<XKeptOrigin> values = ValuesOf(item);
    return values.empty() ? OptionOrigin{} : values.back().origin;
}

std::vector<XKeptOrigin> XOption::ValuesOf(const XOptionItem* item) const {
    return item ? m_pOrigins->Of(*item) : std::vector<XKeptOrigin>{};
}

OptionCandidates XOption::GetOptionCandidates(const CString& name, int index) {
    XOptionDefinition* const definition = GetOptionDefinition(name);
    if (!definition) return {};
    const bool withFiles = !IsTooLateForFiles(*definition);
    XOptionCandidates found{ValuesOf(m_pItems->FindExactly(*definition, index))};
    if (definition->eSection == eSectionNone) return found.Take();
    CString section;
    try {
        section = m_pRetrieval->SectionName(definition->eSection, /*isStoring*/ false);
    } catch (const XException&) {  // nothing is asked as long as the section has no name
        return found.Take();
    }
    found.AddSources(definition->IsSingle() ? m_pSources->AskEach(section, definition->szLongName, withFiles)
                                            : m_pSources->AskFamily(section, definition->szLongName, index),
                     IsFolder(*definition));
    return found.Take();
}

OptionExplanation XOption::ExplainOption(const CString& name, int index) {
    OptionExplanation explanation;
    XOptionDefinition* const definition = GetOptionDefinition(name);
    if (!definition) return explanation;
    const XOptionItem* const item = m_pItems->FindExactly(*definition, index);
    const std::vector<XKeptOrigin> values = ValuesOf(item);
    if (!values.empty()) {
        explanation.steps = StepsOf(values);
    } else {
        ExplainRetrieval(explanation, *definition, index);
    }
    for (OptionStep& step : explanation.steps) m_pSources->Complete(step.places);
    if (item) TellItem(explanation, *item, /*isKnown*/ !values.empty());
    if (definition->IsValueOptional() && explanation.value.IsEmpty())
        explanation.value = g_BooleanStrings[item ? 1 : 0];
    if (explanation.error.IsEmpty()) {
        explanation.steps.push_back({OptionStep::Kind::Value, 0, {}, {}, explanation.value});
    }
    return explanation;
}

// What a retrieval would do now.
void XOption::ExplainRetrieval(OptionExplanation& explanation, XOptionDefinition& definition, int index) {
    if (definition.eSection == eSectionNone) return;
    XOptionRetrieval::Notes notes;
    try {
        const CString section = m_pRetrieval->SectionName(definition.eSection, /*isStoring*/ false);
        if (definition.IsSingle()) {
            explanation.value = m_pRetrieval->Value(section, definition.szLongName, &notes);
        } else {
            XMapInt2CString values;
            m_pSources->GetKeyValueSet(values, section, definition.szLongName);
            explanation.value = values.Get(index);
            notes.record.Add(OptionStep::Kind::Given, explanation.value);
            m_pRetrieval->Expand(explanation.value, section, &notes.record);
        }
        explanation.hasValue = !explanation.value.IsEmpty();
    } catch (const XException& error) {
        explanation.value.Empty();
        explanation.error = error.GetMessage();
    }
    explanation.steps = notes.record.Take();
}

CString XOption::GetSectionName(enumCfgSection section) {
    try {
        return m_pRetrieval->SectionName(section, /*isStoring*/ false);
    } catch (const XException&) {
        return {};
    }
}

// The folders are made out before a file is open: "metadata" always, the others when the folder "data" is known by
// then.
bool XOption::IsTooLateForFiles(const XOptionDefinition& definition) {
    if (std::wstring_view{definition.szLongName} == L"metadata") return true;
    if (!IsFolder(definition)) return false;
    if (m_bDataKnown) return *m_bDataKnown;
    const XOptionDefinition& data = *FindOptionDefinition(L"data");
    const XOptionItem* const item = m_pItems->Find(data, -1);
    const OptionLayer layer = GetOptionOrigin(item).layer;
    if (item && layer != OptionLayer::UserFile && layer != OptionLayer::BasicFile) {
        return !item->GetOptionValue().IsEmpty();
    }
    const auto places = m_pSources->AskEach(GetSectionName(data.eSection), data.szLongName, /*withFiles*/ false);
    return std::ranges::any_of(places, [](const OptionPlace& place) { return !place.text.IsEmpty(); });
}

bool XOption::ComesTooLate(const CString& name) {
    const XOptionDefinition* const definition = GetOptionDefinition(name);
    if (!definition) return false;
    const bool isAskedEarly = definition->eOption == eOptionData || definition->eOption == eOptionIni;
    return isAskedEarly || IsTooLateForFiles(*definition);
}

std::vector<OptionLocation> XOption::GetLocations() {
    using enum OptionLocation::Kind;
    std::vector<OptionLocation> locations{LocationOf(Registry, {}, GetRegistryFile())};
    const auto add = [&](OptionLocation::Kind kind, const CString& option) {
        locations.push_back(LocationOf(kind, option, GetOptionString(option, -1)));
    };
    add(MetadataFolder, L"metadata");
    const bool isStarted = m_pItems->Find(*FindOptionDefinition(L"exe-name"), -1);
    locations.push_back(LocationOf(BasicFile, {}, isStarted ? BasicFilePath() : CString{}));
    const CString user = GetOptionString(L"ini", -1);
    if (!user.IsEmpty()) locations.push_back(LocationOf(UserFile, L"ini", user));
    if (!user.IsEmpty() && !IsAbsolutePath(user)) {
        locations.push_back(LocationOf(UserFile, L"ini", BuildFileName(GetOptionString(L"config", -1), user)));
    }
    add(Data, L"data");
    for (const wchar_t* option : {L"config", L"changefile-root", L"logging"}) add(UserFolder, option);
    return locations;
}

std::vector<OptionRenaming> XOption::PreviewTableName(const CString& name, int version, bool keepCase) const {
    return m_TableNameRules.Preview(name, version, keepCase);
}

std::vector<OptionRenaming> XOption::PreviewColumnsName(const CString& name, int version, bool keepCase) const {
    return m_ColumnNameRules.Preview(name, version, keepCase);
}

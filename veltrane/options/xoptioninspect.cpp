// What the store tells about itself: where values come from, what else the sources have, where start-up looks.
#include <algorithm>
#include <exception>
#include <iterator>
#include <utility>

#include "veltrane/foundation/xpath.h"
#include "veltrane/options/detail/startupfolders.h"
#include "veltrane/options/detail/xoptioncandidates.h"
#include "veltrane/options/detail/xoptiongetter.h"
#include "veltrane/options/detail/xoptionretrieval.h"
#include "veltrane/options/detail/xoptionsteps.h"
#include "veltrane/options/xoption.h"
#include "veltrane/platform/files/filesystem.h"
#include "veltrane/platform/sources/internal/snapshot.h"
#include "veltrane/platform/sources/winreg.h"
#include "veltrane/platform/text/encoding.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

OptionLocation LocationOf(OptionLocation::Kind kind, const CString& option, const CString& path) {
    return {kind, option, path, FromUtf8(MapPath(path)), FileExists(path)};
}

// Where the user file is looked for; the first place that has it is in force, unless a file has named it, which is too
// late.
std::vector<OptionLocation> UserFiles(const CString& file, const CString& folder, bool isInTime) {
    std::vector<OptionLocation> places;
    const auto add = [&](const CString& path) {
        places.push_back(LocationOf(OptionLocation::Kind::UserFile, LibraryRow(eOptionIni).szLongName, path));
        places.back().isInForce = false;
    };
    if (file.IsEmpty()) return places;
    add(file);
    if (!IsAbsolutePath(file)) add(BuildFileName(folder, file));
    const auto found = std::ranges::find(places, true, &OptionLocation::exists);
    (found == places.end() ? places.front() : *found).isInForce = isInTime;
    return places;
}

// The value of an item counts; without a known origin the steps may be those of another value.
void DescribeItem(OptionExplanation& explanation, const XOptionItem& item, bool isKnown) {
    const CString& value = item.GetOptionValue();
    if (!isKnown && (explanation.value != value || !explanation.error.IsEmpty())) {
        explanation.steps = {{OptionStep::Kind::Given, 0, {}, {}, value}};
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
    return item ? m_pOrigins->LastOf(*item) : OptionOrigin{};
}

std::vector<XKeptOrigin> XOption::ValuesOf(const XOptionItem* item) const {
    return item ? m_pOrigins->Of(*item) : std::vector<XKeptOrigin>{};
}

OptionCandidates XOption::GetOptionCandidates(const CString& name, int index) const {
    const XOptionDefinition* const definition = KnownOption(name);
    if (!definition) return {};
    const SourceSnapshot snapshot;
    XOptionFamilies families;
    return CandidatesOf(*definition, index, m_pItems->FindExactly(*definition, index), families);
}

std::vector<OptionCandidates> XOption::GetAllOptionCandidates(const CString& name) const {
    std::vector<OptionCandidates> all;
    const SourceSnapshot snapshot;
    XOptionFamilies families;
    const auto& items = m_pItems->ItemsOf(KnownOption(name));
    all.reserve(items.size());
    for (const XOptionItem* item : items) {
        all.push_back(CandidatesOf(XOptionItems::DefinitionOf(*item), item->GetOptionIndex(), item, families));
    }
    return all;
}

// A question for one value of a family reads all of them, so they are kept for the next one.
OptionCandidates XOption::CandidatesOf(const XOptionDefinition& definition, int index, const XOptionItem* item,
                                       XOptionFamilies& families) const {
    OptionCandidates found = GivenCandidates(ValuesOf(item));
    if (definition.eSection == eSectionNone) return found;
    CString section;
    try {
        section = m_pRetrieval->SectionName(definition.eSection, /*isStoring*/ false);
    } catch (const XException&) {  // nothing is asked while the section has no name
        return found;
    }
    const wchar_t* const key = definition.szLongName;
    if (definition.IsSingle()) {
        auto places = m_pSources->AskEach(section, key, /*withFiles*/ !IsTooLateForFiles(definition));
        const bool isEarly = IsEnvironmentEarly(definition, places);
        AddSources(found, std::move(places), isEarly);
        return found;
    }
    const auto [entry, isNew] = families.try_emplace(&definition);
    XOptionFamily& family = entry->second;
    if (isNew) family = m_pSources->ReadFamily(section, key, /*withPlaces*/ true);
    auto places = m_pSources->PlacesIn(family, section, key, index);
    if (family.Gives(index)) {
        AddSources(found, std::move(places), /*isEnvironmentEarly*/ false);
    } else {
        found.places = std::move(places);
    }
    return found;
}

OptionExplanation XOption::ExplainOption(const CString& name, int index) const {
    OptionExplanation explanation;
    const XOptionDefinition* const definition = KnownOption(name);
    if (!definition) return explanation;
    const SourceSnapshot snapshot;
    const XOptionItem* const item = m_pItems->FindExactly(*definition, index);
    const std::vector<XKeptOrigin> values = ValuesOf(item);
    if (!values.empty()) {
        explanation.steps = StepsOf(values);
    } else {
        ExplainRetrieval(explanation, *definition, index);
    }
    for (OptionStep& step : explanation.steps) m_pSources->Complete(step.places);
    if (item) DescribeItem(explanation, *item, /*isKnown*/ !values.empty());
    if (definition->IsValueOptional() && explanation.value.IsEmpty())
        explanation.value = g_BooleanStrings[item ? 1 : 0];
    if (explanation.error.IsEmpty()) {
        explanation.steps.push_back({OptionStep::Kind::Value, 0, {}, {}, explanation.value});
    }
    return explanation;
}

// What a retrieval would do now.
void XOption::ExplainRetrieval(OptionExplanation& explanation, const XOptionDefinition& definition, int index) const {
    if (definition.eSection == eSectionNone) return;
    XKeptOrigin kept;
    try {
        const CString section = m_pRetrieval->SectionName(definition.eSection, /*isStoring*/ false);
        explanation.value = definition.IsSingle() ? m_pRetrieval->Value(section, definition.szLongName, &kept)
                                                  : ExplainFamily(kept, section, definition.szLongName, index);
        explanation.hasValue = !explanation.value.IsEmpty();
    } catch (const XException& error) {
        explanation.error = error.GetMessage();
    }
    explanation.steps = StepsOf(kept, definition.IsSingle() ? definition.szLongName : L"");
}

CString XOption::ExplainFamily(XKeptOrigin& kept, const CString& section, const CString& key, int index) const {
    const XOptionFamily family = m_pSources->ReadFamily(section, key, /*withPlaces*/ true);
    kept.answers = {{{}, m_pSources->PlacesIn(family, section, key, index)}};
    std::vector<OptionPlace>& places = kept.answers.front().places;
    std::ranges::reverse(places);  // the order of the questions
    if (family.fault) std::rethrow_exception(family.fault);
    const auto found = std::ranges::find(places, true, &OptionPlace::found);
    if (found != places.end() && family.Gives(index)) kept.origin = *found;
    CString value = kept.origin.text;
    m_pRetrieval->Expand(value, section, &kept);
    return value;
}

CString XOption::GetSectionName(enumCfgSection section) const {
    try {
        return m_pRetrieval->SectionName(section, /*isStoring*/ false);
    } catch (const XException&) {
        return {};
    }
}

// Start-up determines the folders before a file is open: "metadata" always, the others when "data" is known by then.
bool XOption::IsTooLateForFiles(const XOptionDefinition& definition) const {
    if (definition.eOption == eOptionMetadata) return true;
    if (!IsStartupFolder(definition)) return false;
    if (m_bDataKnown) return *m_bDataKnown;
    const XOptionDefinition& data = LibraryRow(eOptionData);
    const XOptionItem* const item = m_pItems->Find(data, -1);
    const OptionLayer layer = GetOptionOrigin(item).layer;
    if (item && !IsFile(layer)) return !item->GetOptionValue().IsEmpty();
    const auto places = m_pSources->AskEach(GetSectionName(data.eSection), data.szLongName, /*withFiles*/ false);
    return std::ranges::any_of(places, [](const OptionPlace& place) { return !place.text.IsEmpty(); });
}

// Whether start-up asks the environment for the option while no file is open, and gets a value. One whose references
// lead to nothing leaves the option to the files.
bool XOption::IsEnvironmentEarly(const XOptionDefinition& definition, const std::vector<OptionPlace>& places) const {
    const bool isAskedEarly =
        definition.eOption == eOptionData ? m_bDataKnown.has_value() : IsStartupFolder(definition);
    const bool isAnswered = !places.empty() && places.back().layer == OptionLayer::Environment && places.back().found;
    return isAskedEarly && isAnswered && m_pRetrieval->GivesEarly(places.back().text);
}

bool XOption::ComesTooLate(const CString& name) const {
    const XOptionDefinition* const definition = KnownOption(name);
    if (!definition) return false;
    const bool isAskedEarly = definition->eOption == eOptionData || definition->eOption == eOptionIni;
    return isAskedEarly || IsTooLateForFiles(*definition);
}

std::vector<OptionLocation> XOption::GetLocations() const {
    using enum OptionLocation::Kind;
    std::vector<OptionLocation> locations{LocationOf(Registry, {}, GetRegistryFile())};
    const auto stored = [this](const XOptionDefinition& row) -> const CString& {
        return TextOf(m_pItems->Find(row, -1));
    };
    const auto add = [&](OptionLocation::Kind kind, const XOptionDefinition& row) {
        locations.push_back(LocationOf(kind, row.szLongName, stored(row)));
    };
    constexpr XOptionDefinition& metadata = LibraryRow(eOptionMetadata);
    constexpr XOptionDefinition& exeName = LibraryRow(eOptionExeName);
    if (m_pSources->registry) locations.front().key = m_pSources->registry->KeyPath({});
    add(MetadataFolder, metadata);
    const bool isStarted = m_pItems->Find(exeName, -1);
    locations.push_back(
        LocationOf(BasicFile, {}, isStarted ? BasicFilePath(stored(metadata), stored(exeName)) : CString{}));
    std::ranges::move(
        UserFiles(stored(LibraryRow(eOptionIni)), stored(LibraryRow(eOptionConfig)), m_bIniKnown.value_or(true)),
        std::back_inserter(locations));
    add(Data, LibraryRow(eOptionData));
    for (const StartupFolder& folder : USER_FOLDERS) {
        if (OptionRegistry::HasLibraryRow(folder.option)) add(UserFolder, folder.option);
    }
    return locations;
}

std::vector<OptionRenaming> XOption::PreviewTableName(const CString& name, int version, bool keepCase) const {
    return m_TableNameRules.Preview(name, version, keepCase);
}

std::vector<OptionRenaming> XOption::PreviewColumnsName(const CString& name, int version, bool keepCase) const {
    return m_ColumnNameRules.Preview(name, version, keepCase);
}

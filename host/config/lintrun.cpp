#include <algorithm>

#include "lint.h"
#include "nearest.h"
#include "veltrane/config/xconfiguration.h"
#include "veltrane/platform/text/indexformat.h"

namespace veltrane::config {

namespace {

constexpr int SHORTEST_NAME = 4;  // of which a misspelt one can be told

CString Folded(CString text) {
    return text.MakeLower();
}

bool IsBelow(const CString& section, const CString& parent) {
    return section.Left(parent.GetLength() + 1) == parent + L"\\";
}

CString NearestOf(const CString& name, const std::vector<CString>& names) {
    return name.GetLength() < SHORTEST_NAME ? CString{} : Nearest(name, names);
}

}  // namespace

LintRun::LintRun(Startup& started) : startup(started) {
    AddSources();
    AddSections();
    AddOtherDatabases();
    AddReferences();
}

void LintRun::AddSources() {
    std::optional<OptionLocation> user;
    std::optional<OptionLocation> registry;
    for (const OptionLocation& place : startup.options.GetLocations()) {
        using enum OptionLocation::Kind;
        if (place.kind == Registry) registry = place;
        if (place.kind == BasicFile) {
            sources.push_back({OptionLayer::BasicFile, place.path, ReadProfileLines(place.path)});
        }
        if (place.kind == UserFile && (!user || (!user->exists && place.exists))) user = place;
    }
    if (user) sources.push_back({OptionLayer::UserFile, user->path, ReadProfileLines(user->path)});
    if (registry) sources.push_back({OptionLayer::Registry, registry->path, ReadRegistryLines(registry->path)});
}

void LintRun::AddSections() {
    for (int i = 0; const auto* row = GetOptionDefinitionAt(i); ++i) {
        if (row->eOption == eOptionTitle || row->eSection == eSectionNone) continue;
        if (!row->HasOptionNumber()) m_RuleSections.insert(row->eSection);
        const CString name = startup.options.GetSectionName(row->eSection);
        const auto isKnown = [&](const auto& known) { return known.first == row->eSection; };
        if (!name.IsEmpty() && std::ranges::none_of(m_Sections, isKnown)) m_Sections.emplace_back(row->eSection, name);
        Keys& keys = m_Keys[row->eSection];
        if (row->IsSingle()) keys.singles.emplace_back(Folded(row->szLongName), row);
        if (!row->IsSingle()) keys.families.push_back(row);
    }
    for (auto& [section, keys] : m_Keys) std::ranges::sort(keys.singles);
    m_Database = Folded(startup.options.GetSectionName(eSectionDatabase));
}

// A section that is none of the known ones and holds a key of a database is one of another database.
void LintRun::AddOtherDatabases() {
    for (const LintSource& source : sources) {
        if (source.layer == OptionLayer::Registry) continue;
        bool isKnown = false;
        for (const SourceLine& line : source.view.lines) {
            if (line.kind == SourceLine::Kind::Section) isKnown = UseOf(line.section).isKnown;
            if (line.kind != SourceLine::Kind::Entry || isKnown) continue;
            if (UseOf({.section = eSectionDatabase}, line.key).row) m_OtherDatabases.insert(Folded(line.section));
        }
    }
}

void LintRun::AddReferences() {
    const auto add = [this](const CString& value) {
        for (int open = value.Find(L'%'); open >= 0; open = value.Find(L'%', open + 1)) {
            const int close = value.Find(L'%', open + 1);
            if (close > open) m_References.insert(Folded(value.Mid(open + 1, close - open - 1)));
        }
    };
    for (const LintSource& source : sources) {
        for (const SourceLine& line : source.view.lines) add(line.value);
    }
    for (const auto* item = startup.options.GetFirstOptionItem(L""); item;
         item = startup.options.GetNextOptionItem(L"")) {
        add(startup.options.GetOptionOrigin(item).text);
    }
}

SectionUse LintRun::UseOf(const CString& name) const {
    const CString folded = Folded(name);
    for (const auto& [section, full] : m_Sections) {
        const CString own = Folded(full);
        for (const CString& form : {own, FormFor(folded, own)}) {
            int index = 0;
            const bool isIndexed = MatchIndex(folded, form, index);
            if (form.IsEmpty() || (!isIndexed && folded != form)) continue;
            return {section, true, form != own, form, isIndexed ? std::optional{index} : std::nullopt};
        }
    }
    return {};
}

// The form of a section of the database, for the other database that a section belongs to; empty for none.
CString LintRun::FormFor(const CString& section, const CString& form) const {
    const bool isDatabases = !m_Database.IsEmpty() && (form == m_Database || IsBelow(form, m_Database));
    if (!isDatabases) return {};
    const CString below = form.Mid(m_Database.GetLength());
    const int number = below.Find(L"%d");
    const std::size_t end = section.View().rfind((number < 0 ? below : below.Left(number)).View());
    if (end == std::wstring_view::npos) return {};
    const CString database = below.IsEmpty() ? section : section.Left(static_cast<int>(end));
    return m_OtherDatabases.contains(database) ? database + below : CString{};
}

KeyUse LintRun::UseOf(const SectionUse& section, const CString& key) const {
    const auto keys = m_Keys.find(section.section);
    if (keys == m_Keys.end()) return {};
    const CString folded = Folded(key);
    const auto& [singles, families] = keys->second;
    const auto found = std::ranges::lower_bound(singles, folded, {}, [](const auto& single) { return single.first; });
    if (found != singles.end() && found->first == folded) return {found->second, {}};
    for (const XOptionDefinition* row : families) {
        KeyUse use{row, {}};
        if (section.index ? folded == Folded(row->szLongName)
                          : XConfiguration::IsFamilyKey(folded, row->szLongName, use.index)) {
            if (section.index) use.index = section.index;
            return use;
        }
    }
    return {};
}

bool LintRun::IsNearDatabase(const LintSource& source, const CString& section, const CString& own) const {
    if (Nearest(section, {own}).IsEmpty()) return false;
    return std::ranges::none_of(source.view.lines, [&](const SourceLine& line) {
        return line.kind == SourceLine::Kind::Section && line.section.CompareNoCase(own) == 0;
    });
}

CString LintRun::NearestSection(const CString& name) const {
    std::vector<CString> names;
    const CString number = name.Mid(name.ReverseFind(L'\\') + 1);
    for (const auto& [section, full] : m_Sections) {
        CString candidate = full;
        candidate.Replace(L"%d", number);
        names.push_back(candidate);
    }
    return NearestOf(name, names);
}

CString LintRun::NearestKey(const SectionUse& section, const CString& key) const {
    std::vector<CString> here;
    std::vector<CString> all;
    const int hyphen = key.ReverseFind(L'-');
    const CString number = hyphen > 0 ? key.Mid(hyphen) : CString{};
    const bool isIndexed =
        number.GetLength() > 1 && number.Mid(1).View().find_first_not_of(L"0123456789") == number.View().npos;
    for (int i = 0; const auto* row = GetOptionDefinitionAt(i); ++i) {
        if (row->eOption == eOptionTitle || row->eSection == eSectionNone) continue;
        const bool withNumber = isIndexed && !row->IsSingle() && !section.index;
        const CString name = withNumber ? row->szLongName + number : CString{row->szLongName};
        (row->eSection == section.section ? here : all).push_back(name);
    }
    const CString nearest = NearestOf(key, here);
    return nearest.IsEmpty() ? NearestOf(key, all) : nearest;
}

void LintRun::Report(const LintSource& source, const SourceLine& line, Finding finding) {
    const int number = static_cast<int>(&source - sources.data());
    m_Findings.push_back({std::move(finding), number, source.path, line.number, line.section, line.key});
}

void LintRun::Report(const OptionOrigin& place, Finding finding) {
    const auto isOf = [&](const LintSource& source) { return source.layer == place.layer; };
    const auto found = std::ranges::find_if(sources, isOf) - sources.begin();
    const bool isTyped = place.layer < OptionLayer::Registry;
    const int number = static_cast<int>(found) + (isTyped ? 1 : 0);
    const CString file = place.file.IsEmpty() ? CString{LayerName(place.layer)} : place.file;
    m_Findings.push_back({std::move(finding), number, file, place.line, place.section, place.key});
}

}  // namespace veltrane::config

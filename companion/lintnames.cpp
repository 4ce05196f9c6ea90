// The names of sections, keys and databases that were probably meant by misspelt ones.
#include <algorithm>

#include "libraryoption.h"
#include "lint.h"
#include "nametext.h"
#include "veltrane/foundation/nearest.h"
#include "veltrane/platform/text/internal/indexformat.h"
#include "veltrane/platform/text/numbers.h"

namespace veltrane::config {

namespace {

using Kind = SourceLine::Kind;

constexpr int SHORTEST_NAME = 4;  // shortest whose misspelling can be recognised

bool IsBelow(const CString& section, const CString& parent) {
    return section.Left(parent.GetLength() + 1) == parent + L"\\";
}

CString WithoutDigits(const CString& text) {
    std::wstring letters{text.View()};
    std::erase_if(letters, [](wchar_t element) { return element >= L'0' && element <= L'9'; });
    return CString{letters};
}

CString NearestOf(const CString& name, const std::vector<CString>& names) {
    return name.GetLength() < SHORTEST_NAME ? CString{} : Nearest(name, names);
}

}  // namespace

bool IsNeighbour(const CString& left, const CString& right) {
    return WithoutDigits(left).CompareNoCase(WithoutDigits(right)) == 0;
}

// An unknown section is one of another database if it holds a key of a database, or if it has the form of a family and
// its database's name is not near this one.
void LintRun::AddDatabases() {
    for (const StartupSource& source : sources) {
        if (source.layer == OptionLayer::Registry) {
            AddRegistryDatabasesOf(source);
        } else {
            AddDatabasesOf(source);
        }
    }
    for (const StartupSource& source : sources) {
        for (const SourceLine& line : source.view.lines) {
            const bool isIni = line.kind == Kind::Section && source.layer != OptionLayer::Registry;
            const CString database = isIni ? DatabaseOfFamily(line.section) : CString{};
            const bool isSlip = m_IsOwnKnown && IsNearOwn(database) && !IsOtherDatabase(database);
            if (!database.IsEmpty() && !isSlip) AddDatabase(source, database);
        }
    }
}

void LintRun::AddDatabasesOf(const StartupSource& source) {
    SectionUse use;
    for (const SourceLine& line : source.view.lines) {
        if (line.kind == Kind::Section) use = FindSection(line.section);
        if (line.kind == Kind::Section && !m_Database.IsEmpty()) {
            if (use.form == m_Database) m_WithOwn.insert(source.layer);
            if (use.form == m_Database || IsBelow(use.form, m_Database)) m_IsOwnKnown = true;
            if (use.index && !use.isOfOtherDatabase)
                m_FirstSections.try_emplace({source.layer, use.section}, line.section);
        }
        const bool isKey = line.kind == Kind::Entry && FindKey({.section = eSectionDatabase}, line.key).row;
        if (isKey && !use.isKnown && !line.section.IsEmpty()) AddDatabase(source, line.section);
    }
}

// In the registry a database is a key directly below that of the tool.
void LintRun::AddRegistryDatabasesOf(const StartupSource& source) {
    for (const SourceLine& line : source.view.lines) {
        const RegistryKey* const key = FindRegistryKey(line.section);
        if (key && key->section == eSectionDatabase) {
            m_WithOwn.insert(source.layer);
            m_IsOwnKnown = true;
        }
        const std::optional<CString> name = key ? std::nullopt : BelowTool(line.section);
        if (line.kind != Kind::Entry || !name || name->Find(L'\\') >= 0) continue;
        if (FindKey({.section = eSectionDatabase}, line.key).row) AddDatabase(source, *name);
    }
}

void LintRun::AddDatabase(const StartupSource& source, const CString& name) {
    Database& known = m_OtherDatabases[Folded(name)];
    if (known.name.IsEmpty()) known.name = name;
    known.layers.insert(source.layer);
}

bool LintRun::IsOtherDatabase(const CString& section) const {
    return m_OtherDatabases.contains(Folded(section));
}

bool LintRun::IsNearOwn(const CString& database) const {
    return !Nearest(database, {m_Database}).IsEmpty() && !IsNeighbour(database, m_Database);
}

bool LintRun::IsNearOwnDatabase(const StartupSource& source, const CString& section) const {
    const auto known = m_OtherDatabases.find(Folded(section));
    const bool isAlone = known != m_OtherDatabases.end() && known->second.layers.size() == 1;
    return isAlone && IsNearOwn(section) && !m_WithOwn.contains(source.layer) && MeantDatabase().IsEmpty();
}

void LintRun::FindMeantDatabase() {
    if (m_IsOwnKnown || m_Database.IsEmpty()) return;
    const OptionLayer layer = startup.options.GetOptionOrigin(FindItem<"name">(startup.options)).layer;
    if (layer != OptionLayer::CommandLine && layer != OptionLayer::Environment) return;
    std::vector<CString> names;
    for (const auto& [folded, database] : m_OtherDatabases) names.push_back(database.name);
    m_MeantDatabase = Nearest(m_Database, names);
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

CString LintRun::DatabaseOfFamily(const CString& section) const {
    const CString folded = Folded(section);
    for (const auto& [kind, full] : m_Sections) {
        const CString own = Folded(full);
        if (m_Database.IsEmpty() || !IsBelow(own, m_Database)) continue;
        const CString below = own.Mid(m_Database.GetLength());
        const std::size_t end = folded.View().rfind(below.Left(std::max(below.Find(L"%d"), 0)).View());
        if (end == std::wstring_view::npos || end == 0) continue;
        CString database = section.Left(static_cast<int>(end));
        int index = 0;
        if (MatchIndex(folded.Mid(static_cast<int>(end)), below, index) && Folded(database) != m_Database)
            return database;
    }
    return {};
}

CString LintRun::NearestSection(const CString& name) const {
    std::vector<CString> names;
    const CString last = name.Mid(name.ReverseFind(L'\\') + 1);
    for (const auto& [section, full] : m_Sections) {
        CString candidate = full;
        candidate.Replace(L"%d", IsNumber(last) ? last : CString{L"1"});
        names.push_back(candidate);
    }
    return NearestOf(name, names);
}

CString LintRun::NearestKey(const SectionUse& section, const CString& key) const {
    std::vector<CString> here;
    std::vector<CString> all;
    const int hyphen = key.ReverseFind(L'-');
    const bool isIndexed = hyphen > 0 && IsNumber(key.Mid(hyphen + 1));
    for (int i = 0; const auto* row = GetOptionDefinitionAt(i); ++i) {
        if (row->eOption == eOptionTitle || row->eSection == eSectionNone) continue;
        const bool withNumber = isIndexed && !row->IsSingle() && !section.index;
        const CString name = withNumber ? row->szLongName + key.Mid(hyphen) : CString{row->szLongName};
        (row->eSection == section.section ? here : all).push_back(name);
    }
    const CString nearest = NearestOf(key, here);
    return nearest.IsEmpty() ? NearestOf(key, all) : nearest;
}

CString LintRun::SectionFor(const StartupSource& source, const XOptionDefinition& row,
                            const std::optional<int>& index) const {
    const CString form = startup.options.GetSectionName(row.eSection);
    if (index || form.Find(L"%d") < 0) return FormatIndex(form, index.value_or(0));
    const auto first = m_FirstSections.find({source.layer, row.eSection});
    if (first != m_FirstSections.end()) return first->second;
    return FormatIndex(form, 1);
}

}  // namespace veltrane::config

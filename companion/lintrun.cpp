#include <algorithm>
#include <tuple>

#include "lint.h"
#include "nametext.h"
#include "places.h"
#include "veltrane/config/xconfiguration.h"
#include "veltrane/platform/text/internal/indexformat.h"

namespace veltrane::config {

namespace {

// The part that a finding is about on a line that may not be an entry.
LinePart PartOn(const SourceLine& line, LinePart part) {
    const bool isWhole = line.number == 0 || part == LinePart::Line;
    if (!isWhole && line.kind == SourceLine::Kind::Section) return LinePart::Section;
    return !isWhole && line.kind == SourceLine::Kind::Entry ? part : LinePart::Line;
}

LinePart PartAt(const OptionOrigin& place, LinePart part) {
    if (place.line == 0) return LinePart::Line;
    return place.key.IsEmpty() ? LinePart::Section : part;
}

// A line that stops the tool is not also reported as a second one.
Findings WithoutSecondLines(Findings all) {
    std::set<std::pair<int, int>> stopping;
    for (const LintRun::Placed& finding : all) {
        if (finding.code == LintCode::C08) stopping.emplace(finding.source, finding.line);
    }
    std::erase_if(all, [&](const LintRun::Placed& finding) {
        return finding.code == LintCode::C04 && stopping.contains({finding.source, finding.line});
    });
    return all;
}

}  // namespace

LintRun::LintRun(Startup& started, const AskedLine* asked)
    : startup(started),
      sources(ReadSources(startup.options, asked ? KnownLines{asked->layer, &asked->view} : KnownLines{})),
      m_Asked(started.errors.empty() ? asked : nullptr) {
    AddSections();
    if (!m_Asked || HasReference(m_Asked->line.value)) AddReferences();
    if (m_Asked) return;
    AddRegistryKeys();
    AddDatabases();
    FindMeantDatabase();
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

void LintRun::AddRegistryKeys() {
    const CString toolKey = startup.options.GetLocations().front().key;
    m_ToolKey = Folded(toolKey);
    for (const auto& [section, name] : m_Sections) {
        if (!m_Keys[section].singles.empty()) m_RegistryKeys.push_back({toolKey + L"\\" + name, section});
    }
}

// References in words of the command line and in the environment are looked up in [ROOT].
void LintRun::AddReferences() {
    const auto add = [this](const CString& section, const CString& value) {
        for (const CString& name : ReferencesOf(value)) m_References[Folded(name)].insert(Folded(section));
    };
    for (const StartupSource& source : sources) {
        for (const SourceLine& line : source.view.lines) add(SectionOf(source, line).value_or(CString{}), line.value);
    }
    const CString root = startup.options.GetSectionName(eSectionRoot);
    for (const auto* item = startup.options.GetFirstOptionItem(L""); item;
         item = startup.options.GetNextOptionItem(L"")) {
        const OptionOrigin origin = startup.options.GetOptionOrigin(item);
        if (origin.file.IsEmpty()) add(root, origin.text);
    }
}

bool LintRun::IsReferredTo(const CString& section, const CString& key) const {
    const auto found = m_References.find(Folded(key));
    const bool isRoot = section.CompareNoCase(startup.options.GetSectionName(eSectionRoot)) == 0;
    return found != m_References.end() && (isRoot || found->second.contains(Folded(section)));
}

SectionUse LintRun::FindSection(const CString& name) const {
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

KeyUse LintRun::FindKey(const SectionUse& section, const CString& key) const {
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

bool LintRun::IsListed(const SectionUse& section) const {
    const auto keys = m_Keys.find(section.section);
    const bool isFamily = keys != m_Keys.end() && !keys->second.families.empty() && !section.index;
    return isFamily || HoldsRules(section.section);
}

std::optional<CString> LintRun::BelowTool(const CString& path) const {
    const int length = m_ToolKey.GetLength() + 1;
    const bool isBelow = length > 1 && Folded(path).Left(length) == m_ToolKey + L"\\";
    return isBelow ? std::optional{path.Mid(length)} : std::nullopt;
}

const RegistryKey* LintRun::FindRegistryKey(const CString& path) const {
    const auto found =
        std::ranges::find_if(m_RegistryKeys, [&](const RegistryKey& key) { return key.path.CompareNoCase(path) == 0; });
    return found == m_RegistryKeys.end() ? nullptr : &*found;
}

void LintRun::Report(const StartupSource& source, const SourceLine& line, Finding finding) {
    const CString key = line.kind == SourceLine::Kind::Entry ? line.key : CString{};
    finding.part = PartOn(line, finding.part);
    m_Findings.push_back({std::move(finding), SourceNumber(source.layer), source.path, /*isInFile*/ true, line.number,
                          line.section, key});
}

void LintRun::Report(const OptionOrigin& place, Finding finding) {
    const bool isInFile = !place.file.IsEmpty();
    const CString file = isInFile ? place.file : CString{LayerName(place.layer)};
    finding.part = PartAt(place, finding.part);
    m_Findings.push_back(
        {std::move(finding), SourceNumber(place.layer), file, isInFile, place.line, place.section, place.key});
}

int LintRun::SourceNumber(OptionLayer layer) const {
    const auto found = std::ranges::find(sources, layer, &StartupSource::layer) - sources.begin();
    return static_cast<int>(found) + (layer < OptionLayer::Registry ? 1 : 0);
}

CString ShortPlace(const SourcePlace& place) {
    return FormatText(L"%s:%d", DisplayPath(place.file), place.line);
}

Findings FindAll(LintRun& run) {
    const AskedLine* const asked = run.Asked();
    if (!asked) LintFiles(run);
    LintLines(run);
    if (!asked) LintRegistry(run);
    if (!asked || run.HoldsRules(asked->row.eSection)) LintRules(run);
    LintValues(run);
    LintErrors(run);
    LintUnused(run);
    SilenceFindings(run);
    Findings findings = WithoutSecondLines(run.Findings());
    const auto keyOf = [](const LintRun::Placed& finding) {
        return std::tuple(finding.source, finding.line, finding.code, finding.text.View());
    };
    std::ranges::sort(findings, {}, keyOf);
    const auto isSame = [&](const auto& left, const auto& right) { return keyOf(left) == keyOf(right); };
    findings.erase(std::unique(findings.begin(), findings.end(), isSame), findings.end());
    return findings;
}

}  // namespace veltrane::config

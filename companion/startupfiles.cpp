#include "startupfiles.h"

#include <algorithm>
#include <fstream>
#include <functional>
#include <set>

#include "answer.h"
#include "libraryoption.h"
#include "nametext.h"
#include "places.h"
#include "veltrane/config/xconfiguration.h"
#include "veltrane/foundation/nearest.h"
#include "veltrane/platform/files/filesystem.h"
#include "veltrane/platform/files/internal/replacement.h"
#include "veltrane/platform/text/internal/indexformat.h"

namespace veltrane::config {

namespace {

constexpr const wchar_t* READINGS[] = {L"read",         L"missing",       L"is a folder", L"is not a regular file",
                                       L"is too large", L"cannot be read"};

// A configuration begins with ASCII characters, which UTF-16 stores as two bytes, one of them NUL.
bool IsUnmarkedUtf16(const CString& path) {
    std::string bytes(4, ' ');
    if (const std::optional<std::string_view> given = SourceReplacement::Find(path)) {
        bytes = given->substr(0, bytes.size());
    } else {
        std::ifstream{MapPath(path), std::ios::binary}.read(bytes.data(), std::ssize(bytes));
    }
    if (bytes.size() < 4) return false;
    const auto isZero = [&](std::size_t i) { return bytes[i] == '\0'; };
    return (isZero(0) && !isZero(1) && isZero(2) && !isZero(3)) || (!isZero(0) && isZero(1) && !isZero(2) && isZero(3));
}

SourceFileLines ReadLines(OptionLayer layer, const CString& path, const KnownLines& known) {
    if (known.view && known.layer == layer) return *known.view;
    return layer == OptionLayer::Registry ? ReadRegistryLines(path) : ReadProfileLines(path);
}

StartupSource ReadSource(OptionLayer layer, const CString& path, const KnownLines& known) {
    StartupSource source{layer, path, ReadLines(layer, path, known), false};
    const bool hasMark = source.view.encoding != SourceEncoding::Utf8;
    source.isUnmarkedUtf16 = source.view.reading == SourceReading::Done && !hasMark && IsUnmarkedUtf16(path);
    if (source.isUnmarkedUtf16) source.view.lines.clear();
    return source;
}

// Where the name of the database comes from: "command line, word 3".
CString DatabasePlace(XOption& options) {
    const XOptionItem* const item = FindItem<"name">(options);
    return item ? PlaceName(options.GetOptionOrigin(item)) : CString{L"not given"};
}

// The sections whose names the table fixes.
std::set<CString> FixedSections(XOption& options) {
    std::set<CString> names;
    for (int i = 0; const auto* row = GetOptionDefinitionAt(i); ++i) {
        if (row->eSection != eSectionDatabase) names.insert(Folded(options.GetSectionName(row->eSection)));
    }
    return names;
}

}  // namespace

const wchar_t* ReadingName(SourceReading reading) {
    return READINGS[static_cast<std::size_t>(reading)];
}

const SourceLine* FindLine(const SourceFileLines& view, int number) {
    const bool isLine = number > 0 && number <= static_cast<int>(view.lines.size());
    return isLine ? &view.lines[static_cast<std::size_t>(number) - 1] : nullptr;
}

std::vector<StartupSource> ReadSources(const XOption& options, const KnownLines& known) {
    std::vector<StartupSource> sources;
    const auto add = [&](OptionLayer layer, const CString& path) { sources.push_back(ReadSource(layer, path, known)); };
    for (const OptionLocation& location : options.GetLocations()) {
        using enum OptionLocation::Kind;
        if (!location.isInForce) continue;
        if (location.kind == Registry) add(OptionLayer::Registry, location.path);
        if (location.kind == UserFile) add(OptionLayer::UserFile, location.path);
        if (location.kind == BasicFile) add(OptionLayer::BasicFile, location.path);
    }
    std::ranges::sort(sources, std::ranges::greater{}, &StartupSource::layer);
    return sources;
}

bool IsUnreadable(const CString& path, const SourceFileLines& view) {
    return view.reading != SourceReading::Done && view.reading != SourceReading::Missing && path != L"/dev/null";
}

CString UnreadableText(const CString& file, const CString& fault) {
    const CString plain = ReadingName(SourceReading::Failed);
    return plain + L": " + file + (fault == plain ? CString{} : L" (" + fault + L")");
}

CString LossNote(const std::vector<OptionPlace>& places) {
    if (places.size() > 1) return L"given twice: the tool stops here";
    const CString text = L"the tool stops before it reads this value: another index of the option is given twice";
    return places[0].text.Find(L'%') < 0 ? text : text + L"; references in it are not replaced";
}

StartupFiles::StartupFiles(Startup& startup) : m_Startup(startup), m_Sources(ReadSources(startup.options)) {}

CString StartupFiles::FaultOf(OptionLayer layer) const {
    const auto source = std::ranges::find(m_Sources, layer, &StartupSource::layer);
    const bool isFaulty = source != m_Sources.end() && IsUnreadable(source->path, source->view);
    return isFaulty ? CString{ReadingName(source->view.reading)} : CString{};
}

std::vector<CString> StartupFiles::FaultTexts() const {
    std::vector<CString> texts;
    for (const StartupSource& source : m_Sources) {
        const CString fault = FaultOf(source.layer);
        if (!fault.IsEmpty()) texts.push_back(UnreadableText(DisplayPath(source.path), fault));
    }
    return texts;
}

void StartupFiles::AddFaults(Answer& answer) const {
    for (const StartupSource& source : m_Sources) {
        const CString fault = FaultOf(source.layer);
        if (fault.IsEmpty()) continue;
        answer.hasFindings = true;
        answer.document["unreadable"].push_back({{"layer", ToUtf8(LayerName(source.layer))},
                                                 {"file", SpelledPath(source.path)},
                                                 {"reading", ToUtf8(fault)}});
    }
    for (const CString& fault : FaultTexts()) {
        const std::string text = ToUtf8(fault);
        if (answer.text.find(text) == std::string::npos) answer.errorText += text + '\n';
    }
}

CString StartupFiles::SectionHint(const XOptionDefinition& row) const {
    XOption& options = m_Startup.options;
    CString wanted = options.GetSectionName(row.eSection);
    const CString database = options.GetSectionName(eSectionDatabase);
    const bool isDatabase =
        !database.IsEmpty() && (wanted == database || wanted.Left(database.GetLength() + 1) == database + L"\\");
    if (isDatabase) wanted = database;
    const std::set<CString> fixed = isDatabase ? FixedSections(options) : std::set<CString>{};
    std::vector<CString> names;
    std::map<CString, CString> places;
    for (const StartupSource& source : m_Sources) {
        for (const SourceLine& line : source.view.lines) {
            if (source.layer == OptionLayer::Registry || line.kind != SourceLine::Kind::Section) continue;
            if (line.section.CompareNoCase(wanted) == 0) return {};
            if (fixed.contains(Folded(line.section))) continue;
            names.push_back(line.section);
            places.try_emplace(line.section, FormatText(L"%s:%d", DisplayPath(source.path), line.number));
        }
    }
    const CString nearest = wanted.IsEmpty() ? CString{} : Nearest(wanted, names);
    if (nearest.IsEmpty()) return {};
    const CString& place = places[nearest];
    return isDatabase ? FormatText(L"the database '%s' (%s) has no section; did you mean '%s' (%s)?", wanted,
                                   DatabasePlace(options), nearest, place)
                      : FormatText(L"no file has a section [%s]; did you mean [%s] (%s)?", wanted, nearest, place);
}

StartupFiles::Family StartupFiles::LostFamily(const XOptionDefinition& row) const {
    Family family;
    const bool isLost = std::ranges::any_of(m_Startup.errors, [&](const XException& error) {
        const ErrorSubject* const subject = error.GetSubject();
        return subject && subject->option == row.szLongName && subject->reference.IsEmpty();
    });
    if (row.IsSingle() || !isLost) return family;
    for (const StartupSource& source : m_Sources) {
        if (source.layer != OptionLayer::Registry) AddValues(family, source, row);
    }
    return family;
}

void StartupFiles::AddValues(Family& family, const StartupSource& source, const XOptionDefinition& row) const {
    const CString form = Folded(m_Startup.options.GetSectionName(row.eSection));
    for (const SourceLine& line : source.view.lines) {
        const CString section = Folded(line.section);
        const OptionPlace place{{{source.path, line.number, line.section, row.szLongName, line.value}, source.layer},
                                true};
        int number = 0;
        std::optional<int> index;
        if (MatchIndex(section, form, number)) {
            const bool isOwn = line.kind == SourceLine::Kind::Section || line.key.CompareNoCase(row.szLongName) == 0;
            if (isOwn) AddNumbered(family, line, place, number);
        } else if (section == form && line.kind == SourceLine::Kind::Entry && !line.value.IsEmpty() &&
                   line.reason != SourceLine::Reason::DuplicateSection &&
                   XConfiguration::IsFamilyKey(Folded(line.key), row.szLongName, index)) {
            const int next = family.empty() ? 0 : Successor(family.rbegin()->first);
            family[index.value_or(next)].push_back(place);
            family[index.value_or(next)].back().key = line.key;
        }
    }
}

// For an index that has a value already, a further section counts by its header, until its own value replaces that
// place.
void StartupFiles::AddNumbered(Family& family, const SourceLine& line, OptionPlace place, int index) {
    const auto known = family.find(index);
    if (line.kind == SourceLine::Kind::Section) {
        if (known == family.end()) return;
        place.text.Empty();
        known->second.push_back(std::move(place));
    } else if (line.answers && !line.value.IsEmpty()) {
        std::vector<OptionPlace>& places = family[index];
        if (!places.empty() && places.back().text.IsEmpty()) places.pop_back();
        places.push_back(std::move(place));
    }
}

}  // namespace veltrane::config

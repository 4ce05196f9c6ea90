// One basic file that alone brings the values of this start-up.
#include <algorithm>
#include <map>

#include "commands.h"
#include "printable.h"
#include "veltrane/config/xconfiguration.h"
#include "veltrane/platform/process/localtime.h"
#include "veltrane/platform/process/process.h"

namespace veltrane::config {

namespace {

/// The sections that are written, each with its lines, in the order in which they came.
class File {
public:
    void Add(const CString& section, const CString& key, const CString& value) {
        auto at = std::ranges::find(m_Sections, section, &Section::first);
        if (at == m_Sections.end()) at = m_Sections.insert(at, {section, {}});
        at->second.push_back(key + L" = " + Quoted(value));
    }
    void Print(Answer& answer) const {
        for (const auto& [name, lines] : m_Sections) {
            answer.AddLine(L"\n[" + name + L"]");
            for (const CString& line : lines) answer.AddLine(line);
        }
    }

private:
    using Section = std::pair<CString, std::vector<CString>>;

    // A reader takes blanks and then one pair of quotes off.
    static CString Quoted(const CString& value) {
        const bool isPlain = CString{value}.Trim() == value && value[0] != L'"' && value[0] != L'\'';
        return isPlain ? value : L"\"" + value + L"\"";
    }

    std::vector<Section> m_Sections;
};

class Freezing {
public:
    Freezing(Answer& answer, Startup& startup) : m_Answer(answer), m_Options(startup.options) {
        for (const OptionLocation& location : m_Options.GetLocations()) m_Locations[location.option] = location.kind;
    }

    void Run() {
        m_Answer.document["not_carried"] = Json::array();
        for (int i = 0; const auto* row = GetOptionDefinitionAt(i); ++i) {
            if (!row->HasOptionNumber()) continue;
            const CString name = row->szLongName;
            for (const auto* item = m_Options.GetFirstOptionItem(name); item;
                 item = m_Options.GetNextOptionItem(name)) {
                AddItem(*row, *item);
            }
        }
        AddRules(eOptionTableNameRules);
        AddRules(eOptionColumnNameRules);
        m_File.Print(m_Answer);
    }

private:
    void AddItem(const XOptionDefinition& row, const XOptionItem& item) {
        const OptionOrigin origin = m_Options.GetOptionOrigin(&item);
        if (IsOfTool(row, origin)) return;
        const CString& value = item.GetOptionValue();
        const wchar_t* const reason = ReasonAgainst(row, value);
        if (reason) return Leave(LabelOf(row, item.GetOptionIndex()), value, reason);
        CString section = m_Options.GetSectionName(row.eSection);
        CString key = row.szLongName;
        const bool isNumbered = section.Replace(L"%d", FormatText(L"%d", item.GetOptionIndex())) > 0;
        if (!row.IsSingle() && !isNumbered) key += FormatText(L"-%d", item.GetOptionIndex());
        m_File.Add(section, key, value);
    }

    // The tool brings it along, or finds the file by it.
    static bool IsOfTool(const XOptionDefinition& row, const OptionOrigin& origin) {
        return (row.eSection == eSectionNone && origin.layer == OptionLayer::Host) ||
               (row.eOption == eOptionMetadata && origin.layer == OptionLayer::StartUp);
    }

    // Why a file cannot carry a value; null when it can.
    const wchar_t* ReasonAgainst(const XOptionDefinition& row, const CString& value) {
        if (row.eSection == eSectionNone) return L"it is given on the command line alone";
        if (m_Options.GetSectionName(row.eSection).IsEmpty()) return L"the name of its section is not known";
        if (IsTooLate(row)) return L"start-up makes it out before the file is open";
        if (value.Find(L'%') >= 0) return L"a '%' begins a reference in a file";
        return ReasonAgainst(value);
    }

    static const wchar_t* ReasonAgainst(const CString& value) {
        if (value.IsEmpty()) return L"an empty value in a file counts as none";
        if (value.FindOneOf(L"\r\n") >= 0 || value.Find(L'\0') >= 0) return L"it does not fit on one line";
        return value.GetLength() > XConfiguration::MAX_VALUE ? L"it is longer than a value of a file" : nullptr;
    }

    // What names the places of the sources themselves, and the folders that are asked for in no file now.
    bool IsTooLate(const XOptionDefinition& row) {
        const auto location = m_Locations.find(row.szLongName);
        if (location == m_Locations.end() || location->second == OptionLocation::Kind::Data) return false;
        if (location->second == OptionLocation::Kind::UserFile) return true;
        const OptionCandidates found = m_Options.GetOptionCandidates(row.szLongName, -1);
        return std::ranges::none_of(found.places,
                                    [](const OptionPlace& place) { return place.layer == OptionLayer::BasicFile; });
    }

    void AddRules(enumOption option) {
        const CString format =
            m_Options.GetSectionName(option == eOptionTableNameRules ? eSectionTableRules : eSectionColumnRules);
        for (const OptionRule& rule : m_Options.GetNamingRules(option)) {
            if (!rule.isInForce) continue;
            CString section = format;
            section.Replace(L"%d", FormatText(L"%d", rule.version));
            m_File.Add(section, rule.oldText, rule.newText);
        }
    }

    void Leave(const CString& label, const CString& value, const CString& reason) {
        const CString line = FormatText(L"not carried: %s = %s (%s)", label, Printable(value), reason);
        m_Answer.AddLine(L"; " + line);
        m_Answer.talk += ToUtf8(line) + '\n';
        m_Answer.document["not_carried"].push_back(
            {{"name", ToUtf8(label)}, {"value", ToUtf8(value)}, {"reason", ToUtf8(reason)}});
        m_Answer.hasFindings = true;
    }

    Answer& m_Answer;
    XOption& m_Options;
    std::map<CString, OptionLocation::Kind> m_Locations;  // by the option that names them
    File m_File;
};

CString CommandText() {
    CString text;
    for (const CString& argument : GetArguments()) text += (text.IsEmpty() ? L"" : L" ") + Printable(argument);
    return text;
}

}  // namespace

Answer Freeze(const Request& /*request*/, Startup& startup) {
    Answer answer;
    answer.AddLine(FormatText(L"; Values of %s, version %s, on %s", startup.tool,
                              startup.options.GetOptionString(L"version-info", -1),
                              startup.options.GetOptionString(L"datetime", -1)));
    answer.AddLine(L"; started as: " + CommandText());
    Freezing{answer, startup}.Run();
    answer.document["file"] = answer.text;
    return answer;
}

}  // namespace veltrane::config

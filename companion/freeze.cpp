// One basic file that gives the values of this start-up on its own.
#include <algorithm>

#include "askedoption.h"
#include "commands.h"
#include "edit.h"
#include "nametext.h"
#include "places.h"
#include "printable.h"
#include "startupfiles.h"
#include "veltrane/foundation/xstring.h"
#include "veltrane/options/typed.h"
#include "veltrane/platform/process/localtime.h"
#include "veltrane/platform/process/process.h"
#include "veltrane/platform/text/internal/indexformat.h"

namespace veltrane::config {

namespace {

/// The sections to write, each with its lines, in the order of their first use. The section of a database and one whose
/// name differs from it only in case are one.
class File {
public:
    void Add(const CString& section, const CString& key, const CString& value) {
        const auto isSame = [&](const Section& known) { return known.first.CompareNoCase(section) == 0; };
        LinesOf(section, isSame).push_back(key + L" = " + QuotedValue(value));
    }
    // A section may have the form of several families, when the name of the database holds "%d".
    void Add(const CString& form, int index, const CString& key, const CString& value) {
        const CString folded = Folded(form);
        const auto isSame = [&](const Section& known) {
            int number = 0;
            return MatchIndex(Folded(known.first), folded, number) && number == index;
        };
        LinesOf(FormatIndex(form, index), isSame).push_back(key + L" = " + QuotedValue(value));
    }
    void Print(Answer& answer) const {
        for (const auto& [name, lines] : m_Sections) {
            answer.AddLine(L"\n[" + name + L"]");
            for (const CString& line : lines) answer.AddLine(line);
        }
    }

private:
    using Section = std::pair<CString, std::vector<CString>>;

    template <class IsSame>
    std::vector<CString>& LinesOf(const CString& section, IsSame isSame) {
        const auto at = std::ranges::find_if(m_Sections, isSame);
        return at != m_Sections.end() ? at->second : m_Sections.emplace_back(section, std::vector<CString>{}).second;
    }

    std::vector<Section> m_Sections;
};

class Freezing {
public:
    Freezing(Answer& answer, Startup& startup) : m_Answer(answer), m_Options(startup.options), m_Files(startup) {}

    void Run() {
        m_Answer.document["not_carried"] = Json::array();
        for (const CString& text : m_Files.FaultTexts()) AddRemark(text);
        m_Files.AddFaults(m_Answer);
        for (int i = 0; const auto* row = GetOptionDefinitionAt(i); ++i) {
            if (row->eOption == eOptionTitle) continue;
            for (const XOptionItem* const item : m_Options.GetOptionItems(*row)) AddItem(*row, *item);
            AddLost(*row);
        }
        AddRules(eOptionTableNameRules);
        AddRules(eOptionColumnNameRules);
        m_File.Print(m_Answer);
    }

private:
    void AddItem(const XOptionDefinition& row, const XOptionItem& item) {
        const OptionOrigin origin = m_Options.GetOptionOrigin(&item);
        if (IsOfTool(row, origin)) return;
        AddValue(row, item.GetOptionIndex(), item.GetOptionValue());
    }

    void AddValue(const XOptionDefinition& row, int index, const CString& value) {
        const wchar_t* const reason = ReasonAgainst(row, value);
        if (reason) return Leave(LabelOf(row, index), value, reason);
        const CString section = m_Options.GetSectionName(row.eSection);
        const CString key = row.szLongName;
        if (row.IsSingle()) return m_File.Add(section, key, value);
        if (section.Find(L"%d") >= 0) return m_File.Add(section, index, key, value);
        m_File.Add(section, key + FormatText(L"-%d", index), value);
    }

    // Of a family with an index that is given twice: the tool stops before it has any of its values.
    void AddLost(const XOptionDefinition& row) {
        for (const auto& [index, places] : m_Files.LostFamily(row)) {
            if (places.size() == 1) {
                AddValue(row, index, places[0].text);
                continue;
            }
            CString twice;
            for (const OptionPlace& place : places) AddString(twice, PlaceText(place));
            for (const OptionPlace& place : places) {
                if (!place.text.IsEmpty()) Leave(LabelOf(row, index), place.text, L"index given twice: " + twice);
            }
        }
    }

    // The tool has it without a file, or finds the file by it.
    static bool IsOfTool(const XOptionDefinition& row, const OptionOrigin& origin) {
        return (row.eSection == eSectionNone && origin.layer == OptionLayer::Host) ||
               (row.eOption == eOptionMetadata && origin.layer == OptionLayer::StartUp);
    }

    // Why a file cannot carry a value; null when it can.
    const wchar_t* ReasonAgainst(const XOptionDefinition& row, const CString& value) {
        if (row.eSection == eSectionNone || IsRule(row)) return L"it can be given only on the command line";
        if (m_Options.GetSectionName(row.eSection).IsEmpty()) return L"the name of its section is not known";
        if (IsTooLate(row)) return L"start-up determines it before the file is opened";
        if (value.Find(L'%') >= 0) return L"a '%' begins a reference in a file";
        return ReasonAgainstValue(value);
    }

    // Options that name the places of the sources, and folders that are looked up in no file now.
    bool IsTooLate(const XOptionDefinition& row) {
        return row.eOption != eOptionData && m_Options.ComesTooLate(row.szLongName);
    }

    void AddRules(enumOption option) {
        const CString format =
            m_Options.GetSectionName(option == eOptionTableNameRules ? eSectionTableRules : eSectionColumnRules);
        for (const OptionRule& rule : m_Options.GetNamingRules(option)) {
            if (!rule.isInForce) continue;
            m_File.Add(format, rule.version, rule.oldText, rule.newText);
        }
    }

    void Leave(const CString& label, const CString& value, const CString& reason) {
        const CString line = FormatText(L"not carried: %s = %s (%s)", label, Printable(value), reason);
        AddRemark(line);
        m_Answer.document["not_carried"].push_back(
            {{"name", ToUtf8(label)}, {"value", ToUtf8(value)}, {"reason", ToUtf8(reason)}});
        m_Answer.hasFindings = true;
    }

    void AddRemark(const CString& line) {
        m_Answer.AddLine(L"; " + line);
        m_Answer.errorText += ToUtf8(line) + '\n';
    }

    Answer& m_Answer;
    XOption& m_Options;
    StartupFiles m_Files;
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
                              GetText<"version-info">(startup.options), GetText<"datetime">(startup.options)));
    answer.AddLine(L"; started as: " + CommandText());
    Freezing{answer, startup}.Run();
    answer.document["file"] = answer.text;
    return answer;
}

}  // namespace veltrane::config

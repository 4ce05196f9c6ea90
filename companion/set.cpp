// Changes one value in the user file or the basic file.
#include <algorithm>

#include "askedoption.h"
#include "commands.h"
#include "editfile.h"
#include "editoption.h"
#include "lint.h"
#include "places.h"
#include "printable.h"
#include "veltrane/platform/files/internal/replacement.h"
#include "veltrane/platform/sources/internal/snapshot.h"

namespace veltrane::config {

namespace {

struct Target {
    OptionLayer layer = OptionLayer::BasicFile;
    CString path = {};
};

CString PathOf(const XOption& options, OptionLocation::Kind kind) {
    CString path;
    for (const OptionLocation& location : options.GetLocations()) {
        if (location.kind != kind || location.path.IsEmpty()) continue;
        path = location.path;  // for a user file that does not exist, the place below the folder of configurations
        if (location.exists && location.isInForce) break;
    }
    return path;
}

/// @throws Refusal  there is no such file
Target FindTarget(const XOption& options, const std::string& wanted) {
    const CString user = PathOf(options, OptionLocation::Kind::UserFile);
    if (wanted == "user" && user.IsEmpty()) throw Refusal{L"the tool has no user file; its option 'ini' names one"};
    if (wanted != "basic" && !user.IsEmpty()) return {OptionLayer::UserFile, user};
    return {OptionLayer::BasicFile, PathOf(options, OptionLocation::Kind::BasicFile)};
}

/// @throws Refusal  no file can give the option a value
void RequireOption(const AskedOption& asked, const CString& section) {
    const CString name = asked.row->szLongName;
    if (IsRule(*asked.row)) throw Refusal{L"naming rules have sections of their own; change them in an editor"};
    if (asked.row->eSection == eSectionNone)
        throw Refusal{FormatText(L"'%s' can be given only on the command line", name)};
    if (section.IsEmpty())
        throw Refusal{FormatText(L"'%s' belongs in the section of the database, whose name is not known", name)};
    if (!asked.row->IsSingle() && asked.index.value_or(-1) < 0)
        throw Refusal{FormatText(L"'%s' has several values; name one of them: %s[0]", name, name)};
}

/// One change, from the question to the answer.
class Change {
public:
    Change(const Request& request, Startup& startup, const std::string& name)
        : m_Request(request),
          m_Before(startup),
          m_Asked(ParseOption(name)),
          m_Target(FindTarget(startup.options, request.Value("--in"))),
          m_Key(KeyOf()),
          m_File(Opened()),
          m_Edit(m_Target.path, m_File.Bytes()) {}

    Answer Set(const CString& value) {
        const SourceLine* const answer = FindAnswer(m_Edit, m_Key);
        if (answer) m_Old = *answer;
        const int line = SetOption(m_Edit, m_Key, value);
        m_Result = m_Edit.Result();
        const FileEdit after{m_Target.path, m_Result};
        // A name that contains a line end is found by the proof.
        m_Line = after.Line(std::min(line, static_cast<int>(after.View().lines.size())));
        ProveChange(m_Edit, after, m_Key, value, m_Line);
        Restart();
        if (!m_Request.Has("--force")) RequireNoFindings(after);
        Write();
        const CString old = m_Old ? Printable(m_Old->value) + L" -> " : CString{};
        AddLine(FormatText(L"%s: %s = %s%s%s", PlaceOf(m_Line), m_Line.key, old, Printable(value),
                           m_Old ? L"" : L" (new)"));
        ReportWinner();
        Describe("set", Json(ToUtf8(value)));
        return std::move(m_Answer);
    }

    Answer Unset() {
        const std::vector<SourceLine> removed = UnsetOption(m_Edit, m_Key, m_Request.Has("--all"));
        m_Result = m_Edit.Result();
        if (!removed.empty()) {
            m_Old = m_Line = removed.front();
            ProveChange(m_Edit, FileEdit{m_Target.path, m_Result}, m_Key, std::nullopt, m_Line);
        }
        Restart();
        Write();
        ReportRemoved(removed);
        Describe("unset", Json(nullptr));
        return std::move(m_Answer);
    }

private:
    OptionKey KeyOf() const {
        const XOptionDefinition& row = *m_Asked.row;
        OptionKey key{m_Before.options.GetSectionName(row.eSection), row.szLongName, m_Asked.index};
        RequireOption(m_Asked, key.section);
        if (m_Target.layer == OptionLayer::UserFile)
            key.weaker.push_back(PathOf(m_Before.options, OptionLocation::Kind::BasicFile));
        return key;
    }

    EditFile Opened() const {
        if (m_Target.path.IsEmpty()) throw Refusal{L"the path of the basic file is not known"};
        return EditFile{m_Target.path};
    }

    CString PlaceOf(const SourceLine& line) const {
        return PlaceText({m_Target.path, line.number, line.section, line.key, line.value});
    }

    void AddLine(const CString& line) {
        (m_Request.Has("--dry-run") ? m_Answer.errorText : m_Answer.text) += ToUtf8(line) + '\n';
    }

    // The tool as it starts with the changed file.
    void Restart() {
        const SourceReplacement replacement{m_Target.path, m_Result};
        m_Answer.startup = m_Before.Again();
        XOption& options = m_Answer.startup->options;
        m_Found = options.GetOptionCandidates(m_Key.key, m_Key.index.value_or(-1)).candidates;
    }

    Findings FindingsOf(Startup& startup, const FileEdit& file) const {
        const AskedLine asked{m_Target.layer, file.View(), file.Line(m_Line.number), *m_Asked.row};
        LintRun run{startup, &asked};
        Findings findings;
        for (const StartupSource& source : run.sources) {
            if (source.layer == m_Target.layer && source.isUnmarkedUtf16)
                throw Refusal{DisplayPath(m_Target.path) +
                              L" looks like UTF-16 without a byte order mark; save it as UTF-8"};
        }
        for (const LintRun::Placed& finding : FindAll(run)) {
            const bool isHere = finding.source == run.SourceNumber(m_Target.layer) && finding.line == m_Line.number;
            const bool isFault = finding.severity != Severity::Note || finding.code == LintCode::C09;
            if (isHere && isFault) findings.push_back(finding);
        }
        return findings;
    }

    /// @throws Refusal  lint has a new finding about the line
    void RequireNoFindings(const FileEdit& after) const {
        Findings findings;
        {
            const SourceReplacement replacement{m_Target.path, m_Result};
            const SourceSnapshot snapshot;
            findings = FindingsOf(*m_Answer.startup, after);
        }
        if (findings.empty()) return;
        const Findings known = m_Old ? FindingsOf(m_Before, m_Edit) : Findings{};
        for (const LintRun::Placed& finding : findings) {
            const auto isSame = [&](const auto& other) {
                return other.code == finding.code && other.text == finding.text;
            };
            if (std::ranges::any_of(known, isSame)) continue;
            throw Refusal{FormatText(L"%s: %s: %s; --force makes the change anyway",
                                     ShortPlace({m_Target.path, m_Line.number}), FromUtf8(RowOf(finding.code).name),
                                     Printable(finding.text))};
        }
    }

    void Write() {
        if (m_Request.Has("--dry-run")) {
            m_Answer.text = m_Edit.Diff(ToUtf8(DisplayPath(m_Target.path)));
        } else if (m_Result != m_Edit.Bytes()) {
            m_File.Write(m_Result);
        }
    }

    static CString WinnerText(const OptionOrigin& winner, const CString& name) {
        return FormatText(L"%s %s = %s", PlaceName(winner), winner.key.IsEmpty() ? name : winner.key,
                          IsEmptyAnswer(winner) ? CString{EMPTY_ANSWER} : Printable(winner.text));
    }

    void ReportWinner() {
        const bool isTargets = !m_Found.empty() && m_Found[0].layer == m_Target.layer;
        if (isTargets && m_Found[0].line == m_Line.number) return;
        m_Answer.hasFindings = true;
        AddLine(L"not in force: " + (m_Found.empty() ? CString{L"the tool does not read it from there"}
                                                     : WinnerText(m_Found[0], m_Key.key)));
    }

    void ReportRemoved(const std::vector<SourceLine>& removed) {
        const CString rest = m_Found.empty() ? CString{L"no value"}
                             : m_Found[0].file.IsEmpty() || IsEmptyAnswer(m_Found[0])
                                 ? WinnerText(m_Found[0], m_Key.key)
                                 : FormatText(L"%s: %s", ShortPlace(m_Found[0]), Printable(m_Found[0].text));
        for (const SourceLine& line : removed) {
            const CString now = &line == &removed.back() ? L"; now " + rest : CString{};
            AddLine(FormatText(L"%s: %s = %s, removed%s", PlaceOf(line), line.key, Printable(line.value), now));
        }
        const FileEdit after{m_Target.path, m_Result};
        const SourceLine* const next = FindAnswer(after, m_Key);
        const bool isWinner = next && !m_Found.empty() && m_Found[0].layer == m_Target.layer;
        if (next && !isWinner)
            AddLine(FormatText(L"%s: %s = %s is now read there", PlaceOf(*next), next->key, Printable(next->value)));
        if (!removed.empty()) return;
        m_Answer.hasFindings = true;
        AddLine(FormatText(L"%s has no line for '%s'; the tool uses %s", DisplayPath(m_Target.path),
                           LabelOf(*m_Asked.row, m_Asked.index.value_or(-1)), rest));
    }

    void Describe(const char* action, const Json& value) {
        Json change{{"action", action}, {"name", ToUtf8(m_Key.key)}};
        if (m_Key.index) change["index"] = *m_Key.index;
        change["file"] = ToUtf8(m_Target.path);
        change["line"] = m_Line.number;
        change["section"] = ToUtf8(m_Line.section);
        change["key"] = ToUtf8(m_Line.key);
        change["old"] = m_Old ? Json(ToUtf8(m_Old->value)) : Json(nullptr);
        change["new"] = value;
        change["written"] = !m_Request.Has("--dry-run") && m_Result != m_Edit.Bytes();
        change["in_force"] = Json(nullptr);
        if (!m_Found.empty()) {
            change["in_force"] = PlaceJson(m_Found[0]);
            change["in_force"]["raw"] = ToUtf8(m_Found[0].text);
        }
        if (m_Request.Has("--dry-run")) change["diff"] = m_Answer.text;
        m_Answer.document["change"] = std::move(change);
    }

    const Request& m_Request;
    Startup& m_Before;
    AskedOption m_Asked;
    Target m_Target;
    OptionKey m_Key;
    EditFile m_File;
    FileEdit m_Edit;
    std::string m_Result;
    SourceLine m_Line;  // that is changed, as it is afterwards, or the first that is removed
    std::optional<SourceLine> m_Old;
    std::vector<OptionOrigin> m_Found;  // afterwards, the one in force first
    Answer m_Answer;
};

}  // namespace

Answer Set(const Request& request, Startup& startup) {
    std::vector<std::string> words = request.words;
    // "NAME=VALUE" allows a value that begins with a hyphen.
    if (const std::size_t equals = words.size() == 1 ? words[0].find('=') : std::string::npos;
        equals != std::string::npos) {
        words = {words[0].substr(0, equals), words[0].substr(equals + 1)};
    }
    if (words.size() != 2) throw Refusal{L"set needs the name of an option and its value"};
    return Change{request, startup, words[0]}.Set(FromUtf8(words[1]));
}

Answer Unset(const Request& request, Startup& startup) {
    if (request.words.size() != 1) throw Refusal{L"unset needs the name of one option"};
    return Change{request, startup, request.words[0]}.Unset();
}

}  // namespace veltrane::config

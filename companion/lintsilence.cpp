// Comments that silence findings: "; lint: C05" those of the next line, "; lint: file C01,C02" those of the file.

#include "codelist.h"
#include "lint.h"
#include "printable.h"
#include "veltrane/platform/text/encoding.h"

namespace veltrane::config {

namespace {

using Kind = SourceLine::Kind;
using enum LintCode;

constexpr int WHOLE_FILE = 0;
constexpr int NO_LINE = -1;  // after a comment at the end

/// The list of codes of a comment "; lint: LIST"; nothing for any other line.
std::optional<CString> ListOf(const SourceLine& line) {
    if (line.kind != Kind::Comment) return {};
    const CString text = line.key.Mid(1).TrimLeft();
    const CString mark = L"lint:";
    const bool isMarked = text.Left(mark.GetLength()).CompareNoCase(mark) == 0;
    return isMarked ? std::optional{text.Mid(mark.GetLength())} : std::nullopt;
}

/// What one code of a comment silences.
struct Target {
    int source;
    int line;
    LintCode code;

    auto operator<=>(const Target&) const = default;  // NOLINT(modernize-use-nullptr): clang 14 sees a literal
};

class Silencing {
public:
    explicit Silencing(LintRun& run) : m_Run(run) {}

    void Walk() {
        for (const StartupSource& source : m_Run.sources) {
            for (const SourceLine& line : source.view.lines) Look(source, line);
            AddPending(source, NO_LINE);
        }
        m_Run.Remove([this](const LintRun::Placed& finding) { return IsSilenced(finding); });
        for (const auto& [target, comment] : m_Comments) {
            if (!comment.isUsed) ReportUnused(target, comment);
        }
    }

private:
    struct Comment {
        const StartupSource* source;
        const SourceLine* line;
        bool isUsed = false;
    };

    // Several of these comments may be above a line.
    void Look(const StartupSource& source, const SourceLine& line) {
        const std::optional<CString> list = ListOf(line);
        if (!list) return AddPending(source, line.number);
        std::vector<std::string> words = SplitList(ToUtf8(*list));
        const bool isOfFile = !words.empty() && FromUtf8(words[0]).CompareNoCase(L"file") == 0;
        if (isOfFile) words.erase(words.begin());
        if (words.empty()) m_Run.Report(source, line, {C23, L"the comment names no code to silence"});
        for (const std::string& word : words) ReadCode(source, line, FromUtf8(word), isOfFile);
    }

    void ReadCode(const StartupSource& source, const SourceLine& line, const CString& name, bool isOfFile) {
        const LintRow* const row = FindLint(name);
        if (!row) {
            m_Run.Report(source, line,
                         {C23, FormatText(L"'%s' is not a lint code", Printable(name)), NearestCode(name)});
        } else if (const auto code = static_cast<LintCode>(row - LINTS); isOfFile) {
            Add({m_Run.SourceNumber(source.layer), WHOLE_FILE, code}, {&source, &line});
        } else {
            m_Pending.emplace_back(code, &line);
        }
    }

    void AddPending(const StartupSource& source, int number) {
        for (const auto& [code, line] : m_Pending)
            Add({m_Run.SourceNumber(source.layer), number, code}, {&source, line});
        m_Pending.clear();
    }

    void Add(const Target& target, const Comment& comment) {
        if (!m_Comments.emplace(target, comment).second) ReportUnused(target, comment);
    }

    bool IsSilenced(const LintRun::Placed& finding) {
        bool isSilenced = false;
        for (const int line : {finding.line, WHOLE_FILE}) {
            const auto comment = m_Comments.find({finding.source, line, finding.code});
            if (comment != m_Comments.end()) isSilenced = comment->second.isUsed = true;
        }
        return isSilenced;
    }

    void ReportUnused(const Target& target, const Comment& comment) {
        const CString place = target.line == WHOLE_FILE ? L"in this file" : L"on the next line";
        const CString text = FormatText(L"there is no %s to silence %s", CString{RowOf(target.code).name}, place);
        m_Run.Report(*comment.source, *comment.line, Note(C23, text));
    }

    LintRun& m_Run;
    std::map<Target, Comment> m_Comments;
    std::vector<std::pair<LintCode, const SourceLine*>> m_Pending;  // until the line after them comes
};

}  // namespace

void SilenceFindings(LintRun& run) {
    Silencing{run}.Walk();
}

}  // namespace veltrane::config

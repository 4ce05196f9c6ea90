#pragma once

#include <map>
#include <optional>
#include <set>
#include <vector>

#include "startup.h"
#include "veltrane/platform/sources/sourcelines.h"

// What the checks of lint share: the sources with their lines, what their sections are for, and the findings.

namespace veltrane::config {

enum class Severity { Error, Warning, Note };

struct Finding {
    const char* code;
    Severity severity;
    CString text;
    CString suggestion = {};  ///< that may have been meant; the text does not name it
};

/// One source with all its lines.
struct LintSource {
    OptionLayer layer;
    CString path;  ///< as the store asks for it
    SourceFileLines view;
};

/// What a section of a file is for.
struct SectionUse {
    enumCfgSection section = eSectionNone;
    bool isKnown = false;
    bool isOther = false;  ///< of another database than the one that is worked on
    CString form = {};     ///< its full name, with "%d" for an index
    std::optional<int> index = {};
};

/// The row that a key of a section stands for.
struct KeyUse {
    const XOptionDefinition* row = nullptr;  ///< null for none
    std::optional<int> index = {};           ///< none for a single option, and for a bare key of a family
};

/// Everything that the checks look at and report to.
class LintRun {
public:
    explicit LintRun(Startup& started);

    SectionUse UseOf(const CString& section) const;
    KeyUse UseOf(const SectionUse& section, const CString& key) const;
    bool HoldsRules(enumCfgSection section) const { return m_RuleSections.contains(section); }
    /// Whether a section of another database may be meant to be that of this one: nearly its name, which the source has
    /// no section of.
    bool IsNearDatabase(const LintSource& source, const CString& section, const CString& own) const;
    /// Names that a section, or a key in a section, may have been meant to be, the likeliest first.
    CString NearestSection(const CString& section) const;
    CString NearestKey(const SectionUse& section, const CString& key) const;
    /// Whether a value of any source refers to a name.
    bool IsReferredTo(const CString& name) const { return m_References.contains(CString{name}.MakeLower()); }

    void Report(const LintSource& source, const SourceLine& line, Finding finding);
    /// @param place  of a source, of the environment, or a word of the command line
    void Report(const OptionOrigin& place, Finding finding);
    struct Placed : Finding {
        int source;  ///< place among the sources; one more for the environment, two for the command line
        CString file;
        int line;
        CString section;
        CString key;
    };
    const std::vector<Placed>& Findings() const { return m_Findings; }

    Startup& startup;
    std::vector<LintSource> sources;

private:
    void AddSources();
    void AddSections();
    void AddReferences();
    void AddOtherDatabases();
    CString FormFor(const CString& section, const CString& form) const;

    struct Keys {
        std::vector<std::pair<CString, const XOptionDefinition*>> singles;  // folded names, in order
        std::vector<const XOptionDefinition*> families;
    };

    std::vector<std::pair<enumCfgSection, CString>> m_Sections;  // full names; "%d" for an index
    CString m_Database;
    std::set<enumCfgSection> m_RuleSections;
    std::map<enumCfgSection, Keys> m_Keys;
    std::set<CString> m_OtherDatabases;  // folded, as are the references
    std::set<CString> m_References;
    std::vector<Placed> m_Findings;
};

/// Checks the text of a value against the kind of its option.
void LintText(LintRun& run, const LintSource& source, const SourceLine& line, const XOptionDefinition& row);

// The checks.
void LintFiles(LintRun& run);
void LintLines(LintRun& run);
void LintRegistry(LintRun& run);
void LintRules(LintRun& run);
void LintValues(LintRun& run);

}  // namespace veltrane::config

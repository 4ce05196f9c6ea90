#pragma once

#include <map>
#include <optional>
#include <set>
#include <vector>

#include "lintcodes.h"
#include "startupfiles.h"

// What the checks of lint share: the sources with their lines, what their sections are for, and the findings.

namespace veltrane::config {

struct Finding {
    LintCode code;
    CString text;
    CString suggestion = {};  ///< that may have been meant; the text does not name it
    Severity severity = RowOf(code).severity;
    LinePart part = RowOf(code).part;  ///< of an entry; Report sets that of any other line
};

inline Finding Note(LintCode code, const CString& text, const CString& suggestion = {}) {
    return {code, text, suggestion, Severity::Note};
}

/// What a section of a file is for.
struct SectionUse {
    enumCfgSection section = eSectionNone;
    bool isKnown = false;
    bool isOfOtherDatabase = false;  ///< not of the database in use
    CString form = {};               ///< its full name, with "%d" for an index
    std::optional<int> index = {};
};

/// The row that a key of a section means.
struct KeyUse {
    const XOptionDefinition* row = nullptr;  ///< null for none
    std::optional<int> index = {};           ///< none for a single option, and for a bare key of a family
};

/// A key of the registry in which the store looks.
struct RegistryKey {
    CString path;  ///< as the store spells it
    enumCfgSection section;
};

/// One entry of an INI file, when only its findings are wanted.
struct AskedLine {
    OptionLayer layer;
    const SourceFileLines& view;   ///< read already
    const SourceLine& line;        ///< of the view
    const XOptionDefinition& row;  ///< the option that it gives a value
};

/// Everything that the checks look at and report to.
class LintRun {
public:
    /// @param asked  must outlive the run; with errors of start-up, which may be about any line, all lines are checked
    explicit LintRun(Startup& started, const AskedLine* asked = nullptr);

    /// The one entry that is checked, and whose findings alone count; null for all lines.
    const AskedLine* Asked() const { return m_Asked; }
    bool IsLookedAt(OptionLayer layer, int line) const {
        return !m_Asked || (m_Asked->layer == layer && m_Asked->line.number == line);
    }

    /// @param section  of an INI file
    SectionUse FindSection(const CString& section) const;
    KeyUse FindKey(const SectionUse& section, const CString& key) const;
    bool HoldsRules(enumCfgSection section) const { return m_RuleSections.contains(section); }
    /// Whether the store reads the list of the section's keys, which is cut if it is too long.
    bool IsListed(const SectionUse& section) const;

    const std::vector<RegistryKey>& RegistryKeys() const { return m_RegistryKeys; }
    /// Path below the key of the tool; nothing for one of another program.
    std::optional<CString> BelowTool(const CString& path) const;
    /// The section of a line as INI files name it; nothing for a key of the registry that is not the tool's.
    std::optional<CString> SectionOf(const StartupSource& source, const SourceLine& line) const {
        return source.layer == OptionLayer::Registry ? BelowTool(line.section) : line.section;
    }
    const RegistryKey* FindRegistryKey(const CString& path) const;

    bool IsOtherDatabase(const CString& section) const;
    /// The other database of a section that has the form of one of a family; empty for any other section.
    CString DatabaseOfFamily(const CString& section) const;
    /// Whether a section of another database may be a misspelt one of this database: nearly the same name, which no
    /// other source has, in a source without a section of this one.
    bool IsNearOwnDatabase(const StartupSource& source, const CString& section) const;
    bool HasDatabase() const { return !m_Database.IsEmpty(); }
    /// The database that was probably meant, when the one that the command line or the environment names has no section
    /// anywhere; otherwise empty.
    const CString& MeantDatabase() const { return m_MeantDatabase; }

    /// Names that a section, or a key in a section, may have been meant to be, the likeliest first.
    CString NearestSection(const CString& section) const;
    CString NearestKey(const SectionUse& section, const CString& key) const;
    /// The section of an option as it is written, with an index that the source has, unless one is given.
    CString SectionFor(const StartupSource& source, const XOptionDefinition& row,
                       const std::optional<int>& index) const;
    /// Whether a reference reads a key: one in a value of its section or, for [ROOT], of any section.
    /// @param section  as an INI file spells it
    bool IsReferredTo(const CString& section, const CString& key) const;

    void Report(const StartupSource& source, const SourceLine& line, Finding finding);
    /// @param place  of a source, of the environment, or a word of the command line
    void Report(const OptionOrigin& place, Finding finding);
    struct Placed : Finding {
        int source;    ///< position among the sources; after them the environment, then the command line
        CString file;  ///< or the name of the environment or the command line
        bool isInFile;
        int line;
        CString section;
        CString key;
    };
    int SourceNumber(OptionLayer layer) const;
    /// The source of a finding that is in a file.
    const StartupSource& SourceOf(const Placed& finding) const {
        return sources[static_cast<std::size_t>(finding.source)];
    }
    const std::vector<Placed>& Findings() const { return m_Findings; }
    template <class IsRemoved>
    void Remove(IsRemoved isRemoved) {
        std::erase_if(m_Findings, isRemoved);
    }

    Startup& startup;
    std::vector<StartupSource> sources;

private:
    void AddSections();
    void AddRegistryKeys();
    void AddReferences();
    void FindMeantDatabase();
    void AddDatabases();
    void AddDatabasesOf(const StartupSource& source);
    void AddRegistryDatabasesOf(const StartupSource& source);
    void AddDatabase(const StartupSource& source, const CString& name);
    CString FormFor(const CString& section, const CString& form) const;
    bool IsNearOwn(const CString& database) const;

    struct Keys {
        std::vector<std::pair<CString, const XOptionDefinition*>> singles;  // folded names, in order
        std::vector<const XOptionDefinition*> families;
    };
    struct Database {
        CString name;  // as spelled
        std::set<OptionLayer> layers;
    };

    const AskedLine* m_Asked;
    std::vector<std::pair<enumCfgSection, CString>> m_Sections;  // full names; "%d" for an index
    CString m_Database;                                          // folded
    std::set<enumCfgSection> m_RuleSections;
    std::map<enumCfgSection, Keys> m_Keys;
    std::vector<RegistryKey> m_RegistryKeys;
    CString m_ToolKey;                             // folded
    std::map<CString, Database> m_OtherDatabases;  // by folded name
    std::set<OptionLayer> m_WithOwn;               // have the section of this database
    bool m_IsOwnKnown = false;                     // from that, or from one of its families
    CString m_MeantDatabase;
    std::map<std::pair<OptionLayer, enumCfgSection>, CString> m_FirstSections;  // of families, as spelled
    std::map<CString, std::set<CString>> m_References;  // sections of the values that refer to a name; all folded
    std::vector<Placed> m_Findings;
};

using Findings = std::vector<LintRun::Placed>;

/// Whether two names differ in their digits alone, as those of neighbours do.
bool IsNeighbour(const CString& left, const CString& right);

/// Whether a value holds a reference between two percent signs.
bool HasReference(const CString& value);
/// The names of its references.
std::vector<CString> ReferencesOf(const CString& value);

/// What is wrong with the text of a value for the kind of its option; nothing while it has references.
std::vector<Finding> CheckText(const CString& key, const CString& value, const XOptionDefinition& row);
/// What in the text of a value looks like a comment or a quote.
std::optional<Finding> CheckSigns(const CString& value, bool isQuoted);
/// Finds a percent sign that does not begin a reference, or a reference without a name.
std::optional<Finding> CheckPercent(const CString& value);

/// "team.ini:4", to be named in a text.
CString ShortPlace(const SourcePlace& place);

/// Runs the checks. @return their findings, by source, line and code, each once
Findings FindAll(LintRun& run);

// The checks.
void LintFiles(LintRun& run);
void LintLines(LintRun& run);
void LintRegistry(LintRun& run);
void LintRules(LintRun& run);
void LintValues(LintRun& run);
void LintErrors(LintRun& run);       ///< after those: uses their findings
void LintUnused(LintRun& run);       ///< after the errors
void SilenceFindings(LintRun& run);  ///< after all of them

}  // namespace veltrane::config

#pragma once

#include <map>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "veltrane/collections/xsetint.h"
#include "veltrane/options/xnamingrules.h"
#include "veltrane/options/xoptiondefinition.h"
#include "veltrane/options/xoptionitem.h"
#include "veltrane/options/xoptionorigin.h"
#include "veltrane/platform/text/cstring.h"

namespace veltrane::detail {
class XOptionItems;
class XOptionOrigins;
class XOptionRetrieval;
class XOptionSources;
struct StartupFolder;
struct XKeptOrigin;
struct XOptionFamily;
using XOptionFamilies = std::map<const XOptionDefinition*, XOptionFamily>;  // read for several values of an option
}  // namespace veltrane::detail

/// The options of the process, gathered from command line, registry, INI files and environment. Owns its items, its
/// readers and the naming rules. A host makes one, runs the three start-up steps in their order and then asks the typed
/// getters, which read only what the store holds.
///
/// A name is the long name ("logfile") or what is typed ("-log", "--logfile"); case counts. An index is -1 for a single
/// option, else the number of the value from 0. A configuration source never overrides an item that exists.
///
/// Every operation that takes a name throws an XException for an unknown one; a typed getter also for an empty name and
/// an option of another type, with the getter's own reason in front.
/// @code
/// XOption options;
/// options.Initialize(exePath, exeName, compileTime, version, now);
/// options.OpenConfiguration();
/// options.ReadConfiguration();
/// const CString& logFile = options.GetOptionString(L"logfile", -1);
/// @endcode
class VELTRANE_API XOption {
public:
    XOption();
    XOption(const XOption&) = delete;
    XOption& operator=(const XOption&) = delete;
    ~XOption();

    // Start-up. Whatever was inserted or opened before an error stays.

    /// Takes over what the host knows about itself, walks the command line and resolves the folders: metadata below
    /// exePath, the others below the option "data", default ones created when missing. The options help and version
    /// show their box, and with setup they end the process with exit code 0.
    /// @throws XException  errors of the command line and of references in it; missing folders as XFileException
    void Initialize(const CString& exePath, const CString& exeName, const CString& compileTime,
                    const CString& versionInfo, const CString& dateTime);
    /// Opens the user configuration that the option "ini" names, if any, and the basic one: the file in the metadata
    /// folder with the lower-case name of the executable. A reader that is open stays.
    void OpenConfiguration();
    /// Retrieves every ordinary option, merges the obsolete classes and reads the naming rules. A second call retrieves
    /// only options without an item, so a family cut short by an error stays incomplete, and reads the rules again,
    /// after those that it has.
    void ReadConfiguration();

    // Options and their items.

    XOptionDefinition* GetOptionDefinition(const CString& name);  ///< null for an empty name
    /// Fills an option that has no item yet from the configuration sources: basic file, user file, registry, of which
    /// the later one wins; for options of section ROOT also the environment, the weakest of all. References between
    /// percent signs are replaced.
    /// @throws XException  no source provides a mandatory option; bad references; an index given twice
    void RetrieveOption(const CString& name);
    void RetrieveOption(XOptionDefinition* definition);  ///< null does nothing
    /// Stores a value unchanged: in place of the value of a single option, after the values of another.
    /// @return the item, which belongs to the store; null for an empty name
    XOptionItem* InsertOptionItem(const CString& name, const CString& value, int index);
    /// Starts a walk over the items of an option, or over all items for an empty name. Walks over the same option share
    /// the marks of its items and disturb each other. @return null at the end
    XOptionItem* GetFirstOptionItem(const CString& name);
    XOptionItem* GetNextOptionItem(const CString& name);
    /// @return null when there is no such item
    /// @throws XException  option with several values and index < 0; mandatory option without the item
    XOptionItem* GetOptionItem(const CString& name, int index);
    void DeleteOption(const CString& name);  ///< all its items

    // By a row of the table, without looking up a name. Marks of walks stay.

    /// The items of an option in the order of insertion. Valid until one of them is inserted or deleted.
    std::span<XOptionItem* const> GetOptionItems(const XOptionDefinition& option) const;
    /// The first item of an option with an index, with any for an index below 0; null without one.
    XOptionItem* FindOptionItem(const XOptionDefinition& option, int index) const;

    // Typed values. The texts belong to the store and are valid until the item is deleted or gets another value; the
    // index forms throw what GetOptionItem throws.

    /// "" without an item; if the value may be left out: "true" given bare, "false" not given.
    const CString& GetOptionString(const CString& name, int index);
    const CString& GetFirstOptionString(const CString& name);  ///< "" ends the walk
    const CString& GetNextOptionString(const CString& name);
    bool GetOptionBoolean(const CString& name, int index);  ///< whether the text is "true" in any case
    bool GetFirstOptionBoolean(const CString& name);        ///< whether the text is exactly "true"; false ends the walk
    bool GetNextOptionBoolean(const CString& name);
    enumFlags GetOptionTrillian(const CString& name, int index);    ///< eFlagAuto without an item
    const XSetInt* GetOptionIList(const CString& name, int index);  ///< null without an item
    const XSetInt* GetFirstOptionIList(const CString& name);        ///< null ends the walk
    const XSetInt* GetNextOptionIList(const CString& name);

    // Names by the rules up to a version; without keepCase names and rules are used in upper case.

    void ReplaceTableName(CString& name, int version, bool keepCase);
    void ReplaceColumnsName(CString& name, int version, bool keepCase);

    // Where values come from. These change nothing: what they ask is not stored.

    /// Whether the origins of values are kept from now on; call it before Initialize to have all of them. Costs a few
    /// percent of a start.
    void KeepOrigins(bool wanted);
    /// Whether start-up only looks: default folders that are missing are not created, and help, version and setup
    /// neither show a box nor end the process. Each of the three start-up steps then continues after an error and
    /// throws the first one at its end. Call it before Initialize.
    void LookOnly(bool wanted);

    /// Where the value of an item of the store comes from, as far as origins were kept; the host without.
    veltrane::OptionOrigin GetOptionOrigin(const XOptionItem* item) const;
    /// What the sources have for one value of an option now: the one in force first, then what it overrode. A host's
    /// fact, a folder of start-up and words of the command line are included as far as origins were kept.
    veltrane::OptionCandidates GetOptionCandidates(const CString& name, int index) const;
    /// The candidates of each item of an option, or of all items for an empty name, in the order of a walk over them:
    /// as GetOptionCandidates for each, but every source is read only once.
    std::vector<veltrane::OptionCandidates> GetAllOptionCandidates(const CString& name) const;
    /// The steps from the key of a value to the value: those of the retrieval as far as origins were kept, else those
    /// that a retrieval would take now.
    veltrane::OptionExplanation ExplainOption(const CString& name, int index) const;

    /// Full name of a section as options are looked up in it, "%d" for the index; empty while the database's name is
    /// not known.
    CString GetSectionName(enumCfgSection section) const;
    /// The naming rules of one kind: those in force in the order of their application, then those of the basic file
    /// that a section of the user file hides. Their origins as far as origins were kept.
    std::vector<veltrane::OptionRule> GetNamingRules(enumOption option) const;
    /// The changes that ReplaceTableName (ReplaceColumnsName) makes to a name, rule by rule.
    std::vector<veltrane::OptionRenaming> PreviewTableName(const CString& name, int version, bool keepCase) const;
    std::vector<veltrane::OptionRenaming> PreviewColumnsName(const CString& name, int version, bool keepCase) const;
    /// Whether the two files come too late for an option: start-up determines the folders and the user file before they
    /// are open. The option may still get a value from them.
    bool ComesTooLate(const CString& name) const;
    /// The files and folders that start-up looks at, in its order.
    std::vector<veltrane::OptionLocation> GetLocations() const;

private:
    void ParseCommandLine();
    void OpenRegistry();
    void ActOnCommand(const XOptionDefinition& definition);
    void ShowVersion();
    void RetrieveMetadataFolder();
    void RetrieveUserPath(const veltrane::detail::StartupFolder& folder);
    void OpenUserConfiguration();
    void OpenBasicConfiguration();
    static CString BasicFilePath(const CString& metadata, const CString& exeName);
    void MergeObsoleteClasses();
    void ReadNamingRules(enumOption option);
    const XNamingRules& RulesOf(enumOption option) const;
    void AddHiddenRules(std::vector<veltrane::OptionRule>& rules, enumOption option) const;
    std::vector<veltrane::detail::XKeptOrigin> ValuesOf(const XOptionItem* item) const;
    veltrane::OptionCandidates CandidatesOf(const XOptionDefinition& definition, int index, const XOptionItem* item,
                                            veltrane::detail::XOptionFamilies& families) const;
    bool IsEnvironmentEarly(const XOptionDefinition& definition,
                            const std::vector<veltrane::OptionPlace>& places) const;
    bool IsTooLateForFiles(const XOptionDefinition& definition) const;
    void ExplainRetrieval(veltrane::OptionExplanation& explanation, const XOptionDefinition& definition,
                          int index) const;
    CString ExplainFamily(veltrane::detail::XKeptOrigin& kept, const CString& section, const CString& key,
                          int index) const;

    bool m_bLookOnly = false;
    std::optional<bool> m_bDataKnown;  // when start-up determined the folders, if one needed "data"
    std::optional<bool> m_bIniKnown;   // when the user file was determined, if it was
    std::unique_ptr<veltrane::detail::XOptionItems> m_pItems;
    std::unique_ptr<veltrane::detail::XOptionSources> m_pSources;
    std::unique_ptr<veltrane::detail::XOptionOrigins> m_pOrigins;
    std::unique_ptr<veltrane::detail::XOptionRetrieval> m_pRetrieval;
    XNamingRules m_TableNameRules;
    XNamingRules m_ColumnNameRules;
};

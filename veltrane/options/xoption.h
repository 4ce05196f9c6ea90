#pragma once

#include <array>
#include <memory>

#include "veltrane/collections/XSet.h"
#include "veltrane/collections/xmap.h"
#include "veltrane/collections/xsetint.h"
#include "veltrane/config/xconfiguration.h"
#include "veltrane/config/xregistry.h"
#include "veltrane/options/xnamingrules.h"
#include "veltrane/options/xoptiondefinition.h"
#include "veltrane/options/xoptionitem.h"
#include "veltrane/platform/text/cstring.h"

namespace veltrane::detail {
class XOptionExpansion;
}

/// The options of the process, gathered from command line, registry, INI files and environment. Owns its items, its
/// readers and the naming rules. A host makes one, runs the three start-up steps in their order and then asks the typed
/// getters, which read only what the store holds.
///
/// A name is the long name ("logfile") or what is typed ("-log", "--logfile"); case counts. An index is -1 for a single
/// option, else the number of the value from 0. An item that is there is never overridden by a configuration source.
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

    // Start-up. What was inserted or opened before an error stays.

    /// Takes over what the host knows about itself, walks the command line and resolves the folders: metadata below
    /// exePath, the others below the option "data", default ones created when missing. The options help and version
    /// show their box, and with setup they end the process with exit code 0.
    /// @throws XException  errors of the command line and of references in it; missing folders as XFileException
    void Initialize(const CString& exePath, const CString& exeName, const CString& compileTime,
                    const CString& versionInfo, const CString& dateTime);
    /// Opens the user configuration that the option "ini" names, if any, and the basic one: the file in the metadata
    /// folder with the lower-case name of the executable. A reader that is open stays.
    void OpenConfiguration();
    /// Retrieves every ordinary option, merges the obsolete classes and reads the naming rules.
    void ReadConfiguration();

    // Options and their items.

    XOptionDefinition* GetOptionDefinition(const CString& name);  ///< null for an empty name
    /// Fills an option that has no item yet from the configuration sources: basic file, user file, registry, the later
    /// one winning; for options of section ROOT the environment, weakest of all. References between percent signs are
    /// replaced.
    /// @throws XException  no source provides a mandatory option; bad references; an index given twice
    void RetrieveOption(const CString& name);
    void RetrieveOption(XOptionDefinition* definition);  ///< null does nothing
    /// Stores a value unchanged: in place of the value of a single option, behind the values of another.
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

    // Names by the rules up to a version; without keepCase names and rules are taken in upper case.

    void ReplaceTableName(CString& name, int version, bool keepCase);
    void ReplaceColumnsName(CString& name, int version, bool keepCase);

private:
    XOptionItem* GetFirstOptionItem(XOptionDefinition* definition);
    XOptionItem* GetNextOptionItem(XOptionDefinition* definition);
    XOptionItem* GetOptionItem(XOptionDefinition* definition, int index);
    XOptionItem* InsertOptionItem(XOptionDefinition* definition, const CString& value, int index);
    XOptionItem*& SingleItem(const XOptionDefinition& definition);

    bool GetKeyValue(CString& value, const CString& section, const CString& key, bool assignEmpty);
    bool GetKeyValueSet(XMapInt2CString& values, const CString& section, const CString& pattern);
    bool GetKeyIndexSet(XSetInt& indexes, const CString& section, const CString& pattern);
    bool GetOptionNameSet(XMapInt2CString& names, const CString& sectionFormat);
    template <class Ask>
    bool AskConfigurations(Ask ask);

    CString SourceValue(const CString& section, const CString& key);
    veltrane::detail::XOptionExpansion NewExpansion();
    CString RetrieveSectionName(enumCfgSection section);
    void RetrieveOptionInternal(CString& value, const CString& section, const CString& key);
    bool RetrieveOptionSetInternal(XMapInt2CString& values, const CString& section, const CString& key);
    void RetrieveSingle(XOptionDefinition& definition, const CString& section);
    void RetrieveMultiple(XOptionDefinition& definition, const CString& section);
    void ExpandOptionValue(CString& value, const CString& section);

    bool ParseCommandLine();
    int FreeIndex(const XOptionDefinition& definition);
    void ActOnCommand(const XOptionDefinition& definition);
    void RetrieveMetadataFolder();
    void RetrieveUserPath(const CString& optionName, const CString& defaultFolder);
    void OpenUserConfiguration();
    void OpenBasicConfiguration();
    void MergeObsoleteClasses();
    void ReadNamingRules(enumOption option);
    void ShowVersion();

    XSetP<XOptionItem> m_OptionItems;  // in insertion order
    std::unique_ptr<XRegistry> m_pRegistry;
    std::unique_ptr<XConfiguration> m_pUserConfiguration;
    std::unique_ptr<XConfiguration> m_pBasicConfiguration;
    XNamingRules m_TableNameRules;
    XNamingRules m_ColumnNameRules;
    std::unique_ptr<XOptionItem*[]> m_SingleItems;  // by table row: the item of each single option that has one
};

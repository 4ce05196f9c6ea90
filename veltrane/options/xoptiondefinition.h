#pragma once

#include <cstdint>

#include "veltrane/platform/text/cstring.h"

/// Type bits of an option, in the low twelve bits of its id.
enum enumOptionBit : std::int32_t {
    eString = 0x1,           ///< the value is a text
    eCommand = 0x2,          ///< a command of the host tool
    eBoolean = 0x4,          ///< "true" or "false"
    eTrillian = 0x8,         ///< "true", "false" or "auto"
    eIList = 0x10,           ///< integer list
    eSingle = 0x40,          ///< at most one value; without it the values differ by an index
    eMandatory = 0x80,       ///< retrieval fails when no value is found
    eHelp = 0x100,           ///< has a line in the help text
    eValueOptional = 0x200,  ///< on the command line the value may be left out (string options only)
};

namespace veltrane::detail {

// The number of an option in the field of its group.
constexpr std::int32_t Flag(std::int32_t number) {
    return number << 12;
}
constexpr std::int32_t Setting(std::int32_t number) {
    return number << 16;
}
constexpr std::int32_t Command(std::int32_t number) {
    return number << 24;
}
constexpr std::int32_t Rule(std::int32_t number) {
    return number << 28;
}

}  // namespace veltrane::detail

/// Ids of the options: number and type bits. Hosts compare them.
// clang-format off
enum enumOption : std::int32_t {
    eOptionTitle = eHelp,  // titles and separator lines of the help text

    eOptionCreateViews                           = veltrane::detail::Flag(1)     | eTrillian           | eSingle | eHelp,
    eOptionCreateSchema                          = veltrane::detail::Flag(2)     | eBoolean            | eSingle | eHelp,
    eOptionGatherIndexStatistics                 = veltrane::detail::Flag(3)     | eBoolean            | eSingle | eHelp,
    eOptionQuiet                                 = veltrane::detail::Flag(4)     | eBoolean            | eSingle | eHelp,
    eOptionLoadOracle                            = veltrane::detail::Flag(5)     | eCommand | eBoolean | eSingle | eHelp,
    eOptionExit                                  = veltrane::detail::Flag(6)     | eBoolean            | eSingle | eHelp,
    eOptionSpool                                 = veltrane::detail::Flag(7)     | eString             | eSingle | eHelp | eValueOptional,
    eOptionHelp                                  = veltrane::detail::Flag(8)     | eBoolean            | eSingle | eHelp,
    eOptionVersion                               = veltrane::detail::Flag(9)     | eBoolean            | eSingle | eHelp,
    eOptionSummary                               = veltrane::detail::Flag(10)    | eBoolean            | eSingle | eHelp,
    eOptionName                                  = veltrane::detail::Setting(1)  | eString             | eSingle | eMandatory | eHelp,
    eOptionDictionaryRoot                        = veltrane::detail::Setting(2)  | eString             | eSingle | eHelp,
    eOptionData                                  = veltrane::detail::Setting(4)  | eString             | eSingle | eHelp,
    eOptionChangefileRoot                        = veltrane::detail::Setting(3)  | eString             | eSingle | eHelp,
    eOptionLogFile                               = veltrane::detail::Setting(5)  | eString             | eSingle | eHelp,
    eOptionLogging                               = veltrane::detail::Setting(6)  | eString             | eSingle,
    eOptionIni                                   = veltrane::detail::Setting(7)  | eString             | eSingle | eHelp,
    eOptionSetup                                 = veltrane::detail::Setting(8)  | eString             | eSingle | eHelp,
    eOptionMetadata                              = veltrane::detail::Setting(11) | eString             | eSingle,
    eOptionConfig                                = veltrane::detail::Setting(9)  | eString             | eSingle | eHelp,
    eOptionAutodocDocumentRoot                   = veltrane::detail::Setting(10) | eString             | eSingle | eHelp,
    eOptionExePath                               = veltrane::detail::Setting(32) | eString             | eSingle | eMandatory,
    eOptionExeName                               = veltrane::detail::Setting(33) | eString             | eSingle | eMandatory,
    eOptionVersionInfo                           = veltrane::detail::Setting(34) | eString             | eSingle | eMandatory,
    eOptionCompileTime                           = veltrane::detail::Setting(35) | eString             | eSingle | eMandatory,
    eOptionDateTime                              = veltrane::detail::Setting(36) | eString             | eSingle | eMandatory,
    eOptionLoadDictionary                        = veltrane::detail::Command(1)  | eString | eCommand  | eHelp,
    eOptionDiffDictionary                        = veltrane::detail::Command(2)  | eCommand            | eHelp,
    eOptionCreateChangefile                      = veltrane::detail::Command(3)  | eString | eCommand  | eHelp,
    eOptionCheckDatabase                         = veltrane::detail::Command(4)  | eCommand | eBoolean | eSingle | eHelp,
    eOptionFixDatabase                           = veltrane::detail::Command(5)  | eCommand | eBoolean | eSingle | eHelp,
    eOptionLoadActiveEnvironment                 = veltrane::detail::Command(6)  | eCommand | eBoolean | eSingle | eHelp,
    eOptionCreateAutodoc                         = veltrane::detail::Command(7)  | eCommand | eBoolean | eSingle | eHelp,
    eOptionDictionaryName                        = veltrane::detail::Setting(37) | eString             | eSingle | eMandatory,
    eOptionRole                                  = veltrane::detail::Setting(38) | eString             | eSingle | eMandatory,
    eOptionRegistry                              = veltrane::detail::Setting(39) | eString             | eSingle | eMandatory,
    eOptionAutodocScript                         = veltrane::detail::Setting(30) | eString             | eSingle,
    eOptionAutodocEmptyPage                      = veltrane::detail::Setting(29) | eString             | eSingle,
    eOptionAutodocStylesheet                     = veltrane::detail::Setting(12) | eString             | eSingle,
    eOptionAutodocIndex                          = veltrane::detail::Setting(13) | eString             | eSingle,
    eOptionAutodocGenerated                      = veltrane::detail::Setting(14) | eString             | eSingle,
    eOptionAutodocTitle                          = veltrane::detail::Setting(15) | eString             | eSingle,
    eOptionAutodocClassTitle                     = veltrane::detail::Setting(16) | eString             | eSingle,
    eOptionAutodocPersistentClassTreeFile        = veltrane::detail::Setting(17) | eString             | eSingle,
    eOptionAutodocPersistentClassListFile        = veltrane::detail::Setting(18) | eString             | eSingle,
    eOptionAutodocNonpersistentClassListFile     = veltrane::detail::Setting(19) | eString             | eSingle,
    eOptionAutodocContainerClassListFile         = veltrane::detail::Setting(20) | eString             | eSingle,
    eOptionAutodocPersistentClassPropertyFile    = veltrane::detail::Setting(21) | eString             | eSingle,
    eOptionAutodocNonpersistentClassPropertyFile = veltrane::detail::Setting(22) | eString             | eSingle,
    eOptionAutodocContainerClassPropertyFile     = veltrane::detail::Setting(23) | eString             | eSingle,
    eOptionAutodocClassListLineTemplate          = veltrane::detail::Setting(24) | eString             | eSingle,
    eOptionAutodocClassHrefTemplate              = veltrane::detail::Setting(25) | eString             | eSingle,
    eOptionAutodocAttributeListLineTemplate      = veltrane::detail::Setting(26) | eString             | eSingle,
    eOptionAutodocRefListLineTemplate            = veltrane::detail::Setting(27) | eString             | eSingle,
    eOptionAutodocPresentationRepository         = veltrane::detail::Setting(31) | eString             | eSingle,
    eOptionObsoleteClasses                       = veltrane::detail::Setting(41) | eIList,
    eOptionMapFile                               = veltrane::detail::Setting(42) | eString,
    eOptionIndexFile                             = veltrane::detail::Setting(43) | eString,
    eOptionTableNameRules                        = veltrane::detail::Rule(1)     | eString,
    eOptionColumnNameRules                       = veltrane::detail::Rule(2)     | eString,
    eOptionWorkingDirectory                      = veltrane::detail::Setting(40) | eString             | eSingle | eMandatory,
};
// clang-format on

/// Sections in which the value of an option is looked up when the command line gave none.
enum enumCfgSection : std::int32_t {
    eSectionNone = 0,     ///< never looked up
    eSectionUnnamed = 1,  ///< the section with the empty name
    eSectionRoot = 2,
    eSectionUser = 3,
    eSectionAutodoc = 4,
    eSectionDatabase = 5,  ///< named by the option "name"
    eSectionFiles = 16,    ///< one section for each index, as the two below
    eSectionTableRules = 32,
    eSectionColumnRules = 48,
};

/// Value of a tri-state option.
enum enumFlags : std::int32_t { eFlagFalse = 0, eFlagTrue = 1, eFlagAuto = 2 };

/// One row of the option table. Rows are constant and live as long as the library; a name that an operation takes may
/// be the long name ("logfile") or what is typed ("-log", "--logfile"), and case counts.
struct VELTRANE_API XOptionDefinition {
    enumOption eOption;
    enumCfgSection eSection;
    wchar_t szShortName[4];      ///< without "-"; may be empty
    wchar_t szLongName[50];      ///< without "--"; also the key in configuration sources
    wchar_t szSyntax[50];        ///< left column of the help, a title, or "--" for a separator line
    std::int32_t nTabulators;    ///< tabulators between name and value in a listing; -1 none
    wchar_t szDescription[512];  ///< right column of the help

    constexpr bool IsString() const { return Has(eString); }
    constexpr bool IsCommand() const { return Has(eCommand); }
    constexpr bool IsBoolean() const { return Has(eBoolean); }
    constexpr bool IsTrillian() const { return Has(eTrillian); }
    constexpr bool IsIList() const { return Has(eIList); }
    constexpr bool IsSingle() const { return Has(eSingle); }
    constexpr bool IsMandatory() const { return Has(eMandatory); }
    constexpr bool IsHelpVisible() const { return Has(eHelp); }
    constexpr bool IsValueOptional() const { return Has(eValueOptional); }
    /// Whether this is an ordinary option, which start-up reads from the configuration; titles and rules are not.
    constexpr bool HasOptionNumber() const { return (eOption & 0x0FFFF000) != 0; }

    /// The value that a flag takes when none follows it: "true", "auto", or empty for an option that is not a flag.
    const CString& GetDefaultValue() const;

private:
    constexpr bool Has(enumOptionBit bit) const { return (eOption & static_cast<std::int32_t>(bit)) != 0; }
};

/// One row of the section table.
struct XConfigSection {
    enumCfgSection eSection;
    enumCfgSection eParent;  ///< its name comes in front, with a backslash between; eSectionNone for none
    /// Own name; "--name" stands for the value of that option, "%d" for the index of a multiple option's value.
    wchar_t szName[24];
};

extern VELTRANE_API const CString g_BooleanStrings[2];   ///< "false", "true"
extern VELTRANE_API const CString g_TrillianStrings[3];  ///< by enumFlags: "false", "true", "auto"

VELTRANE_API int GetOptionDefinitionCount();
VELTRANE_API int GetConfigSectionCount();

/// The row at a position in table order, from 0; null outside. Rows must not be changed.
VELTRANE_API XOptionDefinition* GetOptionDefinitionAt(int index);
/// The section at a position, those of the library first, from 0; null outside. Rows must not be changed.
VELTRANE_API XConfigSection* GetConfigSectionAt(int index);
/// The first row that a name names; null when there is none.
VELTRANE_API XOptionDefinition* FindOptionDefinition(const CString& name);
/// The row of a section; null for a value without a row.
VELTRANE_API XConfigSection* FindConfigSection(enumCfgSection section);
/// The first row with exactly that own name; null when there is none.
VELTRANE_API XConfigSection* FindConfigSection(const CString& name);

/// Whether a text is "false" or "true", in any case.
VELTRANE_API bool IsValidBooleanString(const CString& value);
/// Whether a text is "false", "true" or "auto", in any case.
VELTRANE_API bool IsValidTrillianString(const CString& value);

/// Shows the help text in an information box. If the process has only some of the library's rows, their texts name the
/// program instead of the library's own tool.
VELTRANE_API void ShowHelp();
/// The description of a row as the help of a tool shows it.
/// @param tool  name of its program
VELTRANE_API CString DescribeOption(const XOptionDefinition& row, const CString& tool);

#pragma once

#include <cstdint>

#include "platform/cstring.h"

/// Type bits of an option, in the low twelve bits of its id.
enum enumOptionBit : std::int32_t {
    eString = 0x1,           ///< the value is a text
    eCommand = 0x2,          ///< a command of the host tool
    eBoolean = 0x4,          ///< "true" or "false"
    eTrillian = 0x8,         ///< "true", "false" or "auto"
    eIList = 0x10,           ///< integer list
    eSingle = 0x40,          ///< at most one value; without it the values are told apart by an index
    eMandatory = 0x80,       ///< retrieval fails when no value is found
    eHelp = 0x100,           ///< has a line in the help text
    eValueOptional = 0x200,  ///< on the command line the value may be left out (string options only)
};

// The number of an option in the field of its group.
constexpr std::int32_t XFlag(std::int32_t number) {
    return number << 12;
}
constexpr std::int32_t XSetting(std::int32_t number) {
    return number << 16;
}
constexpr std::int32_t XCommand(std::int32_t number) {
    return number << 24;
}
constexpr std::int32_t XRule(std::int32_t number) {
    return number << 28;
}

/// Ids of the options: number and type bits. Hosts compare them.
// clang-format off
enum enumOption : std::int32_t {
    eOptionTitle = eHelp,  // titles and separator lines of the help text

    eOptionCreateViews                           = XFlag(1)     | eTrillian           | eSingle | eHelp,
    eOptionCreateSchema                          = XFlag(2)     | eBoolean            | eSingle | eHelp,
    eOptionGatherIndexStatistics                 = XFlag(3)     | eBoolean            | eSingle | eHelp,
    eOptionQuiet                                 = XFlag(4)     | eBoolean            | eSingle | eHelp,
    eOptionLoadOracle                            = XFlag(5)     | eCommand | eBoolean | eSingle | eHelp,
    eOptionExit                                  = XFlag(6)     | eBoolean            | eSingle | eHelp,
    eOptionSpool                                 = XFlag(7)     | eString             | eSingle | eHelp | eValueOptional,
    eOptionHelp                                  = XFlag(8)     | eBoolean            | eSingle | eHelp,
    eOptionVersion                               = XFlag(9)     | eBoolean            | eSingle | eHelp,
    eOptionSummary                               = XFlag(10)    | eBoolean            | eSingle | eHelp,
    eOptionName                                  = XSetting(1)  | eString             | eSingle | eMandatory | eHelp,
    eOptionDictionaryRoot                        = XSetting(2)  | eString             | eSingle | eHelp,
    eOptionData                                  = XSetting(4)  | eString             | eSingle | eHelp,
    eOptionChangefileRoot                        = XSetting(3)  | eString             | eSingle | eHelp,
    eOptionLogFile                               = XSetting(5)  | eString             | eSingle | eHelp,
    eOptionLogging                               = XSetting(6)  | eString             | eSingle,
    eOptionIni                                   = XSetting(7)  | eString             | eSingle | eHelp,
    eOptionSetup                                 = XSetting(8)  | eString             | eSingle | eHelp,
    eOptionMetadata                              = XSetting(11) | eString             | eSingle,
    eOptionConfig                                = XSetting(9)  | eString             | eSingle | eHelp,
    eOptionAutodocDocumentRoot                   = XSetting(10) | eString             | eSingle | eHelp,
    eOptionExePath                               = XSetting(32) | eString             | eSingle | eMandatory,
    eOptionExeName                               = XSetting(33) | eString             | eSingle | eMandatory,
    eOptionVersionInfo                           = XSetting(34) | eString             | eSingle | eMandatory,
    eOptionCompileTime                           = XSetting(35) | eString             | eSingle | eMandatory,
    eOptionDateTime                              = XSetting(36) | eString             | eSingle | eMandatory,
    eOptionLoadDictionary                        = XCommand(1)  | eString | eCommand  | eHelp,
    eOptionDiffDictionary                        = XCommand(2)  | eCommand            | eHelp,
    eOptionCreateChangefile                      = XCommand(3)  | eString | eCommand  | eHelp,
    eOptionCheckDatabase                         = XCommand(4)  | eCommand | eBoolean | eSingle | eHelp,
    eOptionFixDatabase                           = XCommand(5)  | eCommand | eBoolean | eSingle | eHelp,
    eOptionLoadActiveEnvironment                 = XCommand(6)  | eCommand | eBoolean | eSingle | eHelp,
    eOptionCreateAutodoc                         = XCommand(7)  | eCommand | eBoolean | eSingle | eHelp,
    eOptionDictionaryName                        = XSetting(37) | eString             | eSingle | eMandatory,
    eOptionRole                                  = XSetting(38) | eString             | eSingle | eMandatory,
    eOptionRegistry                              = XSetting(39) | eString             | eSingle | eMandatory,
    eOptionAutodocScript                         = XSetting(30) | eString             | eSingle,
    eOptionAutodocEmptyPage                      = XSetting(29) | eString             | eSingle,
    eOptionAutodocStylesheet                     = XSetting(12) | eString             | eSingle,
    eOptionAutodocIndex                          = XSetting(13) | eString             | eSingle,
    eOptionAutodocGenerated                      = XSetting(14) | eString             | eSingle,
    eOptionAutodocTitle                          = XSetting(15) | eString             | eSingle,
    eOptionAutodocClassTitle                     = XSetting(16) | eString             | eSingle,
    eOptionAutodocPersistentClassTreeFile        = XSetting(17) | eString             | eSingle,
    eOptionAutodocPersistentClassListFile        = XSetting(18) | eString             | eSingle,
    eOptionAutodocNonpersistentClassListFile     = XSetting(19) | eString             | eSingle,
    eOptionAutodocContainerClassListFile         = XSetting(20) | eString             | eSingle,
    eOptionAutodocPersistentClassPropertyFile    = XSetting(21) | eString             | eSingle,
    eOptionAutodocNonpersistentClassPropertyFile = XSetting(22) | eString             | eSingle,
    eOptionAutodocContainerClassPropertyFile     = XSetting(23) | eString             | eSingle,
    eOptionAutodocClassListLineTemplate          = XSetting(24) | eString             | eSingle,
    eOptionAutodocClassHrefTemplate              = XSetting(25) | eString             | eSingle,
    eOptionAutodocAttributeListLineTemplate      = XSetting(26) | eString             | eSingle,
    eOptionAutodocRefListLineTemplate            = XSetting(27) | eString             | eSingle,
    eOptionAutodocPresentationRepository         = XSetting(31) | eString             | eSingle,
    eOptionObsoleteClasses                       = XSetting(41) | eIList,
    eOptionMapFile                               = XSetting(42) | eString,
    eOptionIndexFile                             = XSetting(43) | eString,
    eOptionTableNameRules                        = XRule(1)     | eString,
    eOptionColumnNameRules                       = XRule(2)     | eString,
    eOptionWorkingDirectory                      = XSetting(40) | eString             | eSingle | eMandatory,
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

    bool IsString() const { return Has(eString); }
    bool IsCommand() const { return Has(eCommand); }
    bool IsBoolean() const { return Has(eBoolean); }
    bool IsTrillian() const { return Has(eTrillian); }
    bool IsIList() const { return Has(eIList); }
    bool IsSingle() const { return Has(eSingle); }
    bool IsMandatory() const { return Has(eMandatory); }
    bool IsHelpVisible() const { return Has(eHelp); }
    bool IsValueOptional() const { return Has(eValueOptional); }
    /// Whether this is an ordinary option, which start-up reads from the configuration; titles and rules are not.
    bool HasOptionNumber() const { return (eOption & 0x0FFFF000) != 0; }

    /// The value that a flag takes when none follows it: "true", "auto", or empty for what is no flag.
    const CString& GetDefaultValue() const;

private:
    bool Has(enumOptionBit bit) const { return (eOption & static_cast<std::int32_t>(bit)) != 0; }
};

/// One row of the section table.
struct XConfigSection {
    enumCfgSection eSection;
    enumCfgSection eParent;  ///< its name stands in front, with a backslash between; eSectionNone for none
    /// Own name; "--name" stands for the value of that option, "%d" for the index of a multiple option's value.
    wchar_t szName[24];
};

extern VELTRANE_API const CString g_BooleanStrings[2];   ///< "false", "true"
extern VELTRANE_API const CString g_TrillianStrings[3];  ///< by enumFlags: "false", "true", "auto"

VELTRANE_API int GetOptionDefinitionCount();
VELTRANE_API int GetConfigSectionCount();

/// The row at a position in table order, from 0; null outside. Rows must not be changed.
VELTRANE_API XOptionDefinition* GetOptionDefinitionAt(int index);
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

/// Shows the help text in an information box.
VELTRANE_API void ShowHelp();

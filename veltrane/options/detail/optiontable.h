#pragma once

#include <algorithm>
#include <iterator>
#include <string_view>

#include "veltrane/options/xoptiondefinition.h"

namespace veltrane::detail {

// The vocabulary of the tool. To add an option:
//  1. Add its text for the right column of the help (HELP_...), if it has one.
//  2. Add its enumerator to enumOption, with a number that its group has not used.
//  3. Add its row below, at its place in the help, and raise OPTION_COUNT.
//  4. Describe it in docs/ and show it in examples/config; the tests compare both with this table.
// The compiler then checks that texts fit, ids and names differ and the section exists.

inline constexpr int OPTION_COUNT = 67;
inline constexpr int SECTION_COUNT = 8;

// Descriptions begin with the tabulators that bring them to their column.
// clang-format off
inline constexpr std::wstring_view HELP_CREATE_VIEWS =
    L"\tForce the Veltrane to create SQL-statements for creation of all views,\r\n"
    L"\t\t\t\t\t\tor prohibit the Veltrane to create these statements.\r\n"
    L"\t\t\t\t\t\tThe default is [auto] which allows the Veltrane to determine dynamically if new views are needed.";
inline constexpr std::wstring_view HELP_CREATE_SCHEMA =
    L"\t\tForce the Veltrane to produce a 'create schema' file instead of a 'change schema' file.";
inline constexpr std::wstring_view HELP_GATHER_INDEX_STATISTICS =
    L"\tWhen creating new indexes also compute statistics!";
inline constexpr std::wstring_view HELP_QUIET =
    L"\t\t\tQuiet Mode. Don't ask questions where's nothing to ask!";
inline constexpr std::wstring_view HELP_LOAD_ORACLE =
    L"\t\tTry to load an existing oracle database schema.";
inline constexpr std::wstring_view HELP_EXIT =
    L"\t\t\t\tGenerate an 'exit' statement in the changefile.\r\n"
    L"\t\t\t\t\t\tThis is NOT a good idea, when running from setup...";
inline constexpr std::wstring_view HELP_SPOOL =
    L"\t\tGenerate commands for spooling the sql activity in the changefile.";
inline constexpr std::wstring_view HELP_HELP =
    L"\t\t\t\tThis window.";
inline constexpr std::wstring_view HELP_VERSION =
    L"\t\t\t\tPrint the Veltrane version information.";
inline constexpr std::wstring_view HELP_SUMMARY =
    L"\t\t\tPrint a summary of all options.";
inline constexpr std::wstring_view HELP_NAME =
    L"\t\tSet the name of the database which should be processed (e.g 'database' or 'base').";
inline constexpr std::wstring_view HELP_DICTIONARY_ROOT =
    L"\t\tSet the root directory, from where all dictionaries are found easily.";
inline constexpr std::wstring_view HELP_DATA =
    L"\t\t\tDefine a root directory for all written files.";
inline constexpr std::wstring_view HELP_CHANGEFILE_ROOT =
    L"\t\tDefine a directory for all written changefiles.";
inline constexpr std::wstring_view HELP_LOGFILE =
    L"\t\tUse this logfile for logging output";
inline constexpr std::wstring_view HELP_INI =
    L"\t\t\tUse this ini file for more Veltrane configuration.";
inline constexpr std::wstring_view HELP_METADATA =
    L"\tUse this location for all metadata files.";
inline constexpr std::wstring_view HELP_CONFIG =
    L"\tUse this location for all user defined configuration files.";
inline constexpr std::wstring_view HELP_AUTODOC_DOCUMENT_ROOT =
    L"\tDefine the root directory for the HTML Autodoc file tree.";
inline constexpr std::wstring_view HELP_LOAD_DICTIONARY =
    L"\tLoad the dictionary at location <dictionary>.\r\n"
    L"\t\t\t\t\t\tYou may call this option more then once, if you want to load several dictionaries at one time.";
inline constexpr std::wstring_view HELP_DIFF_DICTIONARY =
    L"\t\t\tStart the analysis of differencies between the first two dictionaries previously loaded.\r\n"
    L"\t\t\t\t\t\tSo it's necessary to load at least two dictionaries (see the '-l' option).";
inline constexpr std::wstring_view HELP_CREATE_CHANGEFILE =
    L"\tCreate a change file for a dictionary difference (see the -diff option).";
inline constexpr std::wstring_view HELP_CHECK_DATABASE =
    L"\t\t\tCheck an existing database for correct database schema\r\n"
    L"\t\t\t\t\t\t(indexes, mapping options, table and column status).";
inline constexpr std::wstring_view HELP_FIX_DATABASE =
    L"\t\t\tCheck and fix an existing database.\r\n"
    L"\t\t\t\t\t\tIf any changes for the database are necessary, a changefile 'modify-database-xx.sql' will be created in the working directory.";
inline constexpr std::wstring_view HELP_LOAD_ACTIVE_ENVIRONMENT =
    L"\t\tTry to find the active environment, then load the dictionary and the according oracle database mapping.";
inline constexpr std::wstring_view HELP_CREATE_AUTODOC =
    L"\t\t\tCreate a datamodel's HTML document tree.";

template <std::size_t Width>
consteval void Put(wchar_t (&field)[Width], std::wstring_view text) {
    if (text.size() >= Width) throw "the text does not fit its field";
    std::ranges::copy(text, field);
}

consteval XOptionDefinition Row(enumOption option, enumCfgSection section, std::wstring_view shortName,
                                std::wstring_view longName, int tabulators, std::wstring_view syntax = {},
                                std::wstring_view description = {}) {
    XOptionDefinition row{option, section, {}, {}, {}, tabulators, {}};
    Put(row.szShortName, shortName);
    Put(row.szLongName, longName);
    Put(row.szSyntax, syntax);
    Put(row.szDescription, description);
    return row;
}

consteval XConfigSection Section(enumCfgSection section, enumCfgSection parent, std::wstring_view name) {
    XConfigSection row{section, parent, {}};
    Put(row.szName, name);
    return row;
}

inline constexpr XOptionDefinition g_OptionDefinitions[] = {
    //  option                                        section              short   long                                          tabs syntax                                            description
    Row(eOptionTitle,                                 eSectionNone,        L"--",  L"--",                                        -1, L"flags and switches:"),
    Row(eOptionCreateViews,                           eSectionUser,        L"cv",  L"create-views",                               2, L"-cv,\t--create-views [true|false|auto]",        HELP_CREATE_VIEWS),
    Row(eOptionCreateSchema,                          eSectionUser,        L"cs",  L"create-schema",                              2, L"-cs,\t--create-schema [true,false]",            HELP_CREATE_SCHEMA),
    Row(eOptionGatherIndexStatistics,                 eSectionUser,        L"gis", L"gather-index-statistics",                    1, L"-gis,\t--gather-index-statistics [true,false]", HELP_GATHER_INDEX_STATISTICS),
    Row(eOptionQuiet,                                 eSectionUser,        L"q",   L"quiet",                                      2, L"-q, \t--quiet [true,false]",                    HELP_QUIET),
    Row(eOptionLoadOracle,                            eSectionUser,        L"o",   L"load-oracle",                                2, L"-o, \t--load-oracle [true,false]",              HELP_LOAD_ORACLE),
    Row(eOptionExit,                                  eSectionUser,        L"e",   L"exit",                                       3, L"-e, \t--exit",                                  HELP_EXIT),
    Row(eOptionSpool,                                 eSectionUser,        L"sp",  L"spool",                                      3, L"-sp,\t--spool <spool-filename>",                HELP_SPOOL),
    Row(eOptionHelp,                                  eSectionNone,        L"h",   L"help",                                       3, L"-h, \t--help",                                  HELP_HELP),
    Row(eOptionVersion,                               eSectionNone,        L"v",   L"version",                                    3, L"-v, \t--version",                               HELP_VERSION),
    Row(eOptionSummary,                               eSectionUser,        L"",    L"summary",                                    2, L"    \t--summary",                               HELP_SUMMARY),
    Row(eOptionTitle,                                 eSectionNone,        L"--",  L"--",                                        -1, L"--"),
    Row(eOptionTitle,                                 eSectionNone,        L"--",  L"--",                                        -1, L"paths and settings:"),
    Row(eOptionName,                                  eSectionRoot,        L"n",   L"name",                                       3, L"-n, \t--name <database name>",                  HELP_NAME),
    Row(eOptionDictionaryRoot,                        eSectionRoot,        L"dr",  L"dictionary-root",                            2, L"-dr,\t--dictionary-root <directory>",           HELP_DICTIONARY_ROOT),
    Row(eOptionData,                                  eSectionRoot,        L"dat", L"data",                                       3, L"-dat,\t--data <directory>",                     HELP_DATA),
    Row(eOptionChangefileRoot,                        eSectionRoot,        L"cr",  L"changefile-root",                            2, L"-cr,\t--changefile-root <directory>",           HELP_CHANGEFILE_ROOT),
    Row(eOptionLogFile,                               eSectionRoot,        L"log", L"logfile",                                    3, L"-log,\t--logfile <log-filename>",               HELP_LOGFILE),
    Row(eOptionLogging,                               eSectionRoot,        L"",    L"logging",                                    3, L"    \t--logging <logging directory>"),
    Row(eOptionIni,                                   eSectionUser,        L"i",   L"ini",                                        3, L"-i, \t--ini <ini-filename>",                    HELP_INI),
    Row(eOptionSetup,                                 eSectionNone,        L"s",   L"setup",                                     -1, L"-s, \t--setup <setup-ini-filename>"),
    Row(eOptionMetadata,                              eSectionRoot,        L"m",   L"metadata",                                   2, L"-m, \t--metadata <metadata directory>",         HELP_METADATA),
    Row(eOptionConfig,                                eSectionUser,        L"cfg", L"config",                                     3, L"-cfg,\t--config <user-config-file location>",   HELP_CONFIG),
    Row(eOptionAutodocDocumentRoot,                   eSectionUser,        L"doc", L"autodoc-document-root",                      1, L"-doc,\t--autodoc-document-root <directory>",    HELP_AUTODOC_DOCUMENT_ROOT),
    Row(eOptionExePath,                               eSectionNone,        L"",    L"exe-path",                                  2),
    Row(eOptionExeName,                               eSectionNone,        L"",    L"exe-name",                                  2),
    Row(eOptionVersionInfo,                           eSectionNone,        L"",    L"version-info",                              2),
    Row(eOptionCompileTime,                           eSectionNone,        L"",    L"compile-time",                              2),
    Row(eOptionDateTime,                              eSectionNone,        L"",    L"datetime",                                  2),
    Row(eOptionTitle,                                 eSectionNone,        L"--",  L"--",                                        -1, L"--"),
    Row(eOptionTitle,                                 eSectionNone,        L"--",  L"--",                                        -1, L"commands:"),
    Row(eOptionLoadDictionary,                        eSectionUser,        L"l",   L"load-dictionary",                            2, L"-l, \t--load-dictionary <dictionary>",          HELP_LOAD_DICTIONARY),
    Row(eOptionDiffDictionary,                        eSectionUser,        L"d",   L"diff-dictionary",                            2, L"-d, \t--diff-dictionary",                       HELP_DIFF_DICTIONARY),
    Row(eOptionCreateChangefile,                      eSectionUser,        L"c",   L"create-changefile",                          1, L"-c, \t--create-changefile <filename>",          HELP_CREATE_CHANGEFILE),
    Row(eOptionCheckDatabase,                         eSectionUser,        L"",    L"check-database",                             2, L"    \t--check-database",                        HELP_CHECK_DATABASE),
    Row(eOptionFixDatabase,                           eSectionUser,        L"",    L"fix-database",                               2, L"    \t--fix-database",                          HELP_FIX_DATABASE),
    Row(eOptionLoadActiveEnvironment,                 eSectionUser,        L"la",  L"load-active-environment",                    1, L"-la,\t--load-active-environment",               HELP_LOAD_ACTIVE_ENVIRONMENT),
    Row(eOptionCreateAutodoc,                         eSectionUser,        L"ca",  L"create-autodoc",                             2, L"-ca,\t--create-autodoc",                        HELP_CREATE_AUTODOC),
    Row(eOptionTitle,                                 eSectionNone,        L"--",  L"--",                                        -1, L"--"),
    Row(eOptionDictionaryName,                        eSectionDatabase,    L"",    L"dictionary-name",                           2),
    Row(eOptionRole,                                  eSectionDatabase,    L"",    L"role",                                      3),
    Row(eOptionRegistry,                              eSectionDatabase,    L"",    L"registry",                                  3),
    Row(eOptionAutodocScript,                         eSectionAutodoc,     L"",    L"autodoc-script",                            2),
    Row(eOptionAutodocEmptyPage,                      eSectionAutodoc,     L"",    L"autodoc-empty-page",                        2),
    Row(eOptionAutodocStylesheet,                     eSectionAutodoc,     L"",    L"autodoc-stylesheet",                        2),
    Row(eOptionAutodocIndex,                          eSectionAutodoc,     L"",    L"autodoc-index",                             3),
    Row(eOptionAutodocGenerated,                      eSectionAutodoc,     L"",    L"autodoc-generated",                         2),
    Row(eOptionAutodocTitle,                          eSectionAutodoc,     L"",    L"autodoc-title",                             2),
    Row(eOptionAutodocClassTitle,                     eSectionAutodoc,     L"",    L"autodoc-class-title",                       2),
    Row(eOptionAutodocPersistentClassTreeFile,        eSectionAutodoc,     L"",    L"autodoc-persistent-class-tree-file",        1),
    Row(eOptionAutodocPersistentClassListFile,        eSectionAutodoc,     L"",    L"autodoc-persistent-class-list-file",        1),
    Row(eOptionAutodocNonpersistentClassListFile,     eSectionAutodoc,     L"",    L"autodoc-nonpersistent-class-list-file",     1),
    Row(eOptionAutodocContainerClassListFile,         eSectionAutodoc,     L"",    L"autodoc-container-class-list-file",         1),
    Row(eOptionAutodocPersistentClassPropertyFile,    eSectionAutodoc,     L"",    L"autodoc-persistent-class-property-file",    1),
    Row(eOptionAutodocNonpersistentClassPropertyFile, eSectionAutodoc,     L"",    L"autodoc-nonpersistent-class-property-file", 1),
    Row(eOptionAutodocContainerClassPropertyFile,     eSectionAutodoc,     L"",    L"autodoc-container-class-property-file",     1),
    Row(eOptionAutodocClassListLineTemplate,          eSectionAutodoc,     L"",    L"autodoc-class-list-line-template",          1),
    Row(eOptionAutodocClassHrefTemplate,              eSectionAutodoc,     L"",    L"autodoc-class-href-template",               1),
    Row(eOptionAutodocAttributeListLineTemplate,      eSectionAutodoc,     L"",    L"autodoc-attribute-list-line-template",      1),
    Row(eOptionAutodocRefListLineTemplate,            eSectionAutodoc,     L"",    L"autodoc-ref-list-line-template",            1),
    Row(eOptionAutodocPresentationRepository,         eSectionAutodoc,     L"",    L"autodoc-presentation-repository",           1),
    Row(eOptionObsoleteClasses,                       eSectionDatabase,    L"",    L"obsolete-classes",                          -1),
    Row(eOptionMapFile,                               eSectionFiles,       L"",    L"map-file",                                  2),
    Row(eOptionIndexFile,                             eSectionFiles,       L"",    L"index-file",                                2),
    Row(eOptionTableNameRules,                        eSectionTableRules,  L"",    L"tablename-rules",                           -1),
    Row(eOptionColumnNameRules,                       eSectionColumnRules, L"",    L"columnname-rules",                          -1),
    Row(eOptionWorkingDirectory,                      eSectionNone,        L"",    L"working-directory",                         -1),
};

inline constexpr XConfigSection g_ConfigSections[] = {
    //      section              parent            name
    Section(eSectionUnnamed,     eSectionNone,     L""),
    Section(eSectionRoot,        eSectionUnnamed,  L"ROOT"),
    Section(eSectionUser,        eSectionUnnamed,  L"USER"),
    Section(eSectionAutodoc,     eSectionUnnamed,  L"AUTODOC"),
    Section(eSectionDatabase,    eSectionNone,     L"--name"),
    Section(eSectionFiles,       eSectionDatabase, L"FILES\\%d"),
    Section(eSectionTableRules,  eSectionDatabase, L"TABLENAME RULES\\%d"),
    Section(eSectionColumnRules, eSectionDatabase, L"COLUMNNAME RULES\\%d"),
};
// clang-format on

consteval bool IdsAndNamesDiffer() {
    for (const auto* a = std::begin(g_OptionDefinitions); a != std::end(g_OptionDefinitions); ++a) {
        for (const auto* b = a + 1; b != std::end(g_OptionDefinitions); ++b) {
            if (a->eOption == eOptionTitle || b->eOption == eOptionTitle) continue;
            if (a->eOption == b->eOption) return false;
            if (std::wstring_view{a->szLongName} == b->szLongName) return false;
            if (a->szShortName[0] != 0 && std::wstring_view{a->szShortName} == b->szShortName) return false;
        }
    }
    return true;
}

consteval bool IsSection(enumCfgSection section) {
    return section == eSectionNone || std::ranges::count(g_ConfigSections, section, &XConfigSection::eSection) == 1;
}

consteval bool SectionsExist() {
    return std::ranges::all_of(g_OptionDefinitions, IsSection, &XOptionDefinition::eSection) &&
           std::ranges::all_of(g_ConfigSections, IsSection, &XConfigSection::eParent);
}

static_assert(std::size(g_OptionDefinitions) == OPTION_COUNT && std::size(g_ConfigSections) == SECTION_COUNT);
static_assert(IdsAndNamesDiffer() && SectionsExist());
static_assert(eOptionCreateViews == 0x1148 && eOptionName == 0x101C1 && eOptionWorkingDirectory == 0x2800C1);
static_assert(eOptionTableNameRules == 0x10000001 && eOptionColumnNameRules == 0x20000001);  // hosts compare these

}  // namespace veltrane::detail

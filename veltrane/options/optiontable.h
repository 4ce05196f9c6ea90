#pragma once

#include <iterator>
#include <string_view>

#include "veltrane/options/optionrow.h"

namespace veltrane::detail {

// The vocabulary of the tool. To add an option:
//  1. Add its text for the right column of the help (HELP_...), if it has one.
//  2. Add its enumerator to enumOption, with a number that its group has not used.
//  3. Add its row below, at its place in the help.
//  4. List it in docs/values.md and show it in examples/config/metadata/veltrane.ini; the tests compare both with this
//     table. Man pages and completions need no change.
// The compiler then checks that texts fit, ids and names differ and the section exists.

// Descriptions begin with the tabulators in front of their column.
// clang-format off
inline constexpr std::wstring_view HELP_CREATE_VIEWS =
    L"\tForce the Veltrane to create SQL-statements for creation of all views,\r\n"
    L"\t\t\t\t\t\tor prohibit the Veltrane to create these statements.\r\n"
    L"\t\t\t\t\t\tThe default is [auto] which allows the Veltrane to determine dynamically if new views are needed.";
inline constexpr std::wstring_view HELP_CREATE_SCHEMA           = L"\t\tForce the Veltrane to produce a 'create schema' file instead of a 'change schema' file.";
inline constexpr std::wstring_view HELP_GATHER_INDEX_STATISTICS = L"\tWhen creating new indexes also compute statistics!";
inline constexpr std::wstring_view HELP_QUIET                   = L"\t\t\tQuiet Mode. Don't ask questions where's nothing to ask!";
inline constexpr std::wstring_view HELP_LOAD_ORACLE             = L"\t\tTry to load an existing oracle database schema.";
inline constexpr std::wstring_view HELP_EXIT =
    L"\t\t\t\tGenerate an 'exit' statement in the changefile.\r\n"
    L"\t\t\t\t\t\tThis is NOT a good idea, when running from setup...";
inline constexpr std::wstring_view HELP_SPOOL                   = L"\t\tGenerate commands for spooling the sql activity in the changefile.";
inline constexpr std::wstring_view HELP_HELP                    = L"\t\t\t\tThis window.";
inline constexpr std::wstring_view HELP_VERSION                 = L"\t\t\t\tPrint the Veltrane version information.";
inline constexpr std::wstring_view HELP_SUMMARY                 = L"\t\t\tPrint a summary of all options.";
inline constexpr std::wstring_view HELP_NAME                    = L"\t\tSet the name of the database which should be processed (e.g 'database' or 'base').";
inline constexpr std::wstring_view HELP_DICTIONARY_ROOT         = L"\t\tSet the root directory, from where all dictionaries are found easily.";
inline constexpr std::wstring_view HELP_DATA                    = L"\t\t\tDefine a root directory for all written files.";
inline constexpr std::wstring_view HELP_CHANGEFILE_ROOT         = L"\t\tDefine a directory for all written changefiles.";
inline constexpr std::wstring_view HELP_LOGFILE                 = L"\t\tUse this logfile for logging output";
inline constexpr std::wstring_view HELP_INI                     = L"\t\t\tUse this ini file for more Veltrane configuration.";
inline constexpr std::wstring_view HELP_METADATA                = L"\tUse this location for all metadata files.";
inline constexpr std::wstring_view HELP_CONFIG                  = L"\tUse this location for all user defined configuration files.";
inline constexpr std::wstring_view HELP_AUTODOC_DOCUMENT_ROOT   = L"\tDefine the root directory for the HTML Autodoc file tree.";
inline constexpr std::wstring_view HELP_LOAD_DICTIONARY =
    L"\tLoad the dictionary at location <dictionary>.\r\n"
    L"\t\t\t\t\t\tYou may call this option more then once, if you want to load several dictionaries at one time.";
inline constexpr std::wstring_view HELP_DIFF_DICTIONARY =
    L"\t\t\tStart the analysis of differencies between the first two dictionaries previously loaded.\r\n"
    L"\t\t\t\t\t\tSo it's necessary to load at least two dictionaries (see the '-l' option).";
inline constexpr std::wstring_view HELP_CREATE_CHANGEFILE       = L"\tCreate a change file for a dictionary difference (see the -diff option).";
inline constexpr std::wstring_view HELP_CHECK_DATABASE =
    L"\t\t\tCheck an existing database for correct database schema\r\n"
    L"\t\t\t\t\t\t(indexes, mapping options, table and column status).";
inline constexpr std::wstring_view HELP_FIX_DATABASE =
    L"\t\t\tCheck and fix an existing database.\r\n"
    L"\t\t\t\t\t\tIf any changes for the database are necessary, a changefile 'modify-database-xx.sql' will be created in the working directory.";
inline constexpr std::wstring_view HELP_LOAD_ACTIVE_ENVIRONMENT =
    L"\t\tTry to find the active environment, then load the dictionary and the according oracle database mapping.";
inline constexpr std::wstring_view HELP_CREATE_AUTODOC          = L"\t\t\tCreate a datamodel's HTML document tree.";

inline constexpr XOptionDefinition g_OptionDefinitions[] = {
    //        option                                        section              short   long                                          tabs syntax                                            description
    OptionRow(eOptionTitle,                                 eSectionNone,        L"--",  L"--",                                        -1, L"flags and switches:"),
    OptionRow(eOptionCreateViews,                           eSectionUser,        L"cv",  L"create-views",                               2, L"-cv,\t--create-views [true|false|auto]",        HELP_CREATE_VIEWS),
    OptionRow(eOptionCreateSchema,                          eSectionUser,        L"cs",  L"create-schema",                              2, L"-cs,\t--create-schema [true,false]",            HELP_CREATE_SCHEMA),
    OptionRow(eOptionGatherIndexStatistics,                 eSectionUser,        L"gis", L"gather-index-statistics",                    1, L"-gis,\t--gather-index-statistics [true,false]", HELP_GATHER_INDEX_STATISTICS),
    OptionRow(eOptionQuiet,                                 eSectionUser,        L"q",   L"quiet",                                      2, L"-q, \t--quiet [true,false]",                    HELP_QUIET),
    OptionRow(eOptionLoadOracle,                            eSectionUser,        L"o",   L"load-oracle",                                2, L"-o, \t--load-oracle [true,false]",              HELP_LOAD_ORACLE),
    OptionRow(eOptionExit,                                  eSectionUser,        L"e",   L"exit",                                       3, L"-e, \t--exit",                                  HELP_EXIT),
    OptionRow(eOptionSpool,                                 eSectionUser,        L"sp",  L"spool",                                      3, L"-sp,\t--spool <spool-filename>",                HELP_SPOOL),
    OptionRow(eOptionHelp,                                  eSectionNone,        L"h",   L"help",                                       3, L"-h, \t--help",                                  HELP_HELP),
    OptionRow(eOptionVersion,                               eSectionNone,        L"v",   L"version",                                    3, L"-v, \t--version",                               HELP_VERSION),
    OptionRow(eOptionSummary,                               eSectionUser,        L"",    L"summary",                                    2, L"    \t--summary",                               HELP_SUMMARY),
    OptionRow(eOptionTitle,                                 eSectionNone,        L"--",  L"--",                                        -1, L"--"),
    OptionRow(eOptionTitle,                                 eSectionNone,        L"--",  L"--",                                        -1, L"paths and settings:"),
    OptionRow(eOptionName,                                  eSectionRoot,        L"n",   L"name",                                       3, L"-n, \t--name <database name>",                  HELP_NAME),
    OptionRow(eOptionDictionaryRoot,                        eSectionRoot,        L"dr",  L"dictionary-root",                            2, L"-dr,\t--dictionary-root <directory>",           HELP_DICTIONARY_ROOT),
    OptionRow(eOptionData,                                  eSectionRoot,        L"dat", L"data",                                       3, L"-dat,\t--data <directory>",                     HELP_DATA),
    OptionRow(eOptionChangefileRoot,                        eSectionRoot,        L"cr",  L"changefile-root",                            2, L"-cr,\t--changefile-root <directory>",           HELP_CHANGEFILE_ROOT),
    OptionRow(eOptionLogFile,                               eSectionRoot,        L"log", L"logfile",                                    3, L"-log,\t--logfile <log-filename>",               HELP_LOGFILE),
    OptionRow(eOptionLogging,                               eSectionRoot,        L"",    L"logging",                                    3, L"    \t--logging <logging directory>"),
    OptionRow(eOptionIni,                                   eSectionUser,        L"i",   L"ini",                                        3, L"-i, \t--ini <ini-filename>",                    HELP_INI),
    OptionRow(eOptionSetup,                                 eSectionNone,        L"s",   L"setup",                                     -1, L"-s, \t--setup <setup-ini-filename>"),
    OptionRow(eOptionMetadata,                              eSectionRoot,        L"m",   L"metadata",                                   2, L"-m, \t--metadata <metadata directory>",         HELP_METADATA),
    OptionRow(eOptionConfig,                                eSectionUser,        L"cfg", L"config",                                     3, L"-cfg,\t--config <user-config-file location>",   HELP_CONFIG),
    OptionRow(eOptionAutodocDocumentRoot,                   eSectionUser,        L"doc", L"autodoc-document-root",                      1, L"-doc,\t--autodoc-document-root <directory>",    HELP_AUTODOC_DOCUMENT_ROOT),
    OptionRow(eOptionExePath,                               eSectionNone,        L"",    L"exe-path",                                  2),
    OptionRow(eOptionExeName,                               eSectionNone,        L"",    L"exe-name",                                  2),
    OptionRow(eOptionVersionInfo,                           eSectionNone,        L"",    L"version-info",                              2),
    OptionRow(eOptionCompileTime,                           eSectionNone,        L"",    L"compile-time",                              2),
    OptionRow(eOptionDateTime,                              eSectionNone,        L"",    L"datetime",                                  2),
    OptionRow(eOptionTitle,                                 eSectionNone,        L"--",  L"--",                                        -1, L"--"),
    OptionRow(eOptionTitle,                                 eSectionNone,        L"--",  L"--",                                        -1, L"commands:"),
    OptionRow(eOptionLoadDictionary,                        eSectionUser,        L"l",   L"load-dictionary",                            2, L"-l, \t--load-dictionary <dictionary>",          HELP_LOAD_DICTIONARY),
    OptionRow(eOptionDiffDictionary,                        eSectionUser,        L"d",   L"diff-dictionary",                            2, L"-d, \t--diff-dictionary",                       HELP_DIFF_DICTIONARY),
    OptionRow(eOptionCreateChangefile,                      eSectionUser,        L"c",   L"create-changefile",                          1, L"-c, \t--create-changefile <filename>",          HELP_CREATE_CHANGEFILE),
    OptionRow(eOptionCheckDatabase,                         eSectionUser,        L"",    L"check-database",                             2, L"    \t--check-database",                        HELP_CHECK_DATABASE),
    OptionRow(eOptionFixDatabase,                           eSectionUser,        L"",    L"fix-database",                               2, L"    \t--fix-database",                          HELP_FIX_DATABASE),
    OptionRow(eOptionLoadActiveEnvironment,                 eSectionUser,        L"la",  L"load-active-environment",                    1, L"-la,\t--load-active-environment",               HELP_LOAD_ACTIVE_ENVIRONMENT),
    OptionRow(eOptionCreateAutodoc,                         eSectionUser,        L"ca",  L"create-autodoc",                             2, L"-ca,\t--create-autodoc",                        HELP_CREATE_AUTODOC),
    OptionRow(eOptionTitle,                                 eSectionNone,        L"--",  L"--",                                        -1, L"--"),
    OptionRow(eOptionDictionaryName,                        eSectionDatabase,    L"",    L"dictionary-name",                           2),
    OptionRow(eOptionRole,                                  eSectionDatabase,    L"",    L"role",                                      3),
    OptionRow(eOptionRegistry,                              eSectionDatabase,    L"",    L"registry",                                  3),
    OptionRow(eOptionAutodocScript,                         eSectionAutodoc,     L"",    L"autodoc-script",                            2),
    OptionRow(eOptionAutodocEmptyPage,                      eSectionAutodoc,     L"",    L"autodoc-empty-page",                        2),
    OptionRow(eOptionAutodocStylesheet,                     eSectionAutodoc,     L"",    L"autodoc-stylesheet",                        2),
    OptionRow(eOptionAutodocIndex,                          eSectionAutodoc,     L"",    L"autodoc-index",                             3),
    OptionRow(eOptionAutodocGenerated,                      eSectionAutodoc,     L"",    L"autodoc-generated",                         2),
    OptionRow(eOptionAutodocTitle,                          eSectionAutodoc,     L"",    L"autodoc-title",                             2),
    OptionRow(eOptionAutodocClassTitle,                     eSectionAutodoc,     L"",    L"autodoc-class-title",                       2),
    OptionRow(eOptionAutodocPersistentClassTreeFile,        eSectionAutodoc,     L"",    L"autodoc-persistent-class-tree-file",        1),
    OptionRow(eOptionAutodocPersistentClassListFile,        eSectionAutodoc,     L"",    L"autodoc-persistent-class-list-file",        1),
    OptionRow(eOptionAutodocNonpersistentClassListFile,     eSectionAutodoc,     L"",    L"autodoc-nonpersistent-class-list-file",     1),
    OptionRow(eOptionAutodocContainerClassListFile,         eSectionAutodoc,     L"",    L"autodoc-container-class-list-file",         1),
    OptionRow(eOptionAutodocPersistentClassPropertyFile,    eSectionAutodoc,     L"",    L"autodoc-persistent-class-property-file",    1),
    OptionRow(eOptionAutodocNonpersistentClassPropertyFile, eSectionAutodoc,     L"",    L"autodoc-nonpersistent-class-property-file", 1),
    OptionRow(eOptionAutodocContainerClassPropertyFile,     eSectionAutodoc,     L"",    L"autodoc-container-class-property-file",     1),
    OptionRow(eOptionAutodocClassListLineTemplate,          eSectionAutodoc,     L"",    L"autodoc-class-list-line-template",          1),
    OptionRow(eOptionAutodocClassHrefTemplate,              eSectionAutodoc,     L"",    L"autodoc-class-href-template",               1),
    OptionRow(eOptionAutodocAttributeListLineTemplate,      eSectionAutodoc,     L"",    L"autodoc-attribute-list-line-template",      1),
    OptionRow(eOptionAutodocRefListLineTemplate,            eSectionAutodoc,     L"",    L"autodoc-ref-list-line-template",            1),
    OptionRow(eOptionAutodocPresentationRepository,         eSectionAutodoc,     L"",    L"autodoc-presentation-repository",           1),
    OptionRow(eOptionObsoleteClasses,                       eSectionDatabase,    L"",    L"obsolete-classes",                          -1),
    OptionRow(eOptionMapFile,                               eSectionFiles,       L"",    L"map-file",                                  2),
    OptionRow(eOptionIndexFile,                             eSectionFiles,       L"",    L"index-file",                                2),
    OptionRow(eOptionTableNameRules,                        eSectionTableRules,  L"",    L"tablename-rules",                           -1),
    OptionRow(eOptionColumnNameRules,                       eSectionColumnRules, L"",    L"columnname-rules",                          -1),
    OptionRow(eOptionWorkingDirectory,                      eSectionNone,        L"",    L"working-directory",                         -1),
};

inline constexpr XConfigSection g_ConfigSections[] = {
    //         section              parent            name
    SectionRow(eSectionUnnamed,     eSectionNone,     L""),
    SectionRow(eSectionRoot,        eSectionUnnamed,  L"ROOT"),
    SectionRow(eSectionUser,        eSectionUnnamed,  L"USER"),
    SectionRow(eSectionAutodoc,     eSectionUnnamed,  L"AUTODOC"),
    SectionRow(eSectionDatabase,    eSectionNone,     L"--name"),
    SectionRow(eSectionFiles,       eSectionDatabase, L"FILES\\%d"),
    SectionRow(eSectionTableRules,  eSectionDatabase, L"TABLENAME RULES\\%d"),
    SectionRow(eSectionColumnRules, eSectionDatabase, L"COLUMNNAME RULES\\%d"),
};
// clang-format on

inline constexpr int OPTION_COUNT = static_cast<int>(std::size(g_OptionDefinitions));
inline constexpr int SECTION_COUNT = static_cast<int>(std::size(g_ConfigSections));
static_assert(eOptionCreateViews == 0x1148 && eOptionName == 0x101C1 && eOptionWorkingDirectory == 0x2800C1);
static_assert(eOptionTableNameRules == 0x10000001 && eOptionColumnNameRules == 0x20000001);  // hosts compare these

inline constexpr TableRows LIBRARY_ROWS{g_OptionDefinitions, g_ConfigSections};
static_assert((Refuse(CheckTables({&LIBRARY_ROWS, 1})), true));

}  // namespace veltrane::detail

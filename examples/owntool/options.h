#pragma once

#include "veltrane/options/xowntable.h"

// The options of the tool, in the form of the library's own table. The compiler checks that texts fit their columns and
// that ids, names and sections go together with those of the library.

constexpr enumCfgSection eSectionScale = veltrane::OwnSection(1);

constexpr enumOption eOptionUnit = veltrane::OwnOption(1, eString | eSingle | eHelp);
constexpr enumOption eOptionDryRun = veltrane::OwnOption(2, eBoolean | eSingle | eHelp);
constexpr enumOption eOptionRound = veltrane::OwnOption(3, eTrillian | eSingle | eHelp);
constexpr enumOption eOptionSource = veltrane::OwnOption(4, eString | eHelp);
constexpr enumOption eOptionSteps = veltrane::OwnOption(5, eIList);
constexpr enumOption eOptionTeam = veltrane::OwnOption(6, eString | eSingle | eMandatory);

constexpr XConfigSection OWN_SECTIONS[] = {veltrane::SectionRow(eSectionScale, eSectionUnnamed, L"SCALE")};

// clang-format off
constexpr XOptionDefinition OWN_OPTIONS[] = {
    veltrane::TitleRow(L"scaling:"),
    //                  option         section         short   long       tabs  syntax                              description
    veltrane::OptionRow(eOptionUnit,   eSectionScale,  L"u",   L"unit",      3, L"-u, \t--unit <unit>",             L"\t\t\tMeasure in this unit."),
    veltrane::OptionRow(eOptionDryRun, eSectionScale,  L"dry", L"dry-run",   2, L"-dry,\t--dry-run [true,false]",   L"\t\tOnly tell what would be done."),
    veltrane::OptionRow(eOptionRound,  eSectionScale,  L"",    L"round",     3, L"    \t--round [true,false,auto]", L"\t\tRound the results, or let the unit decide."),
    veltrane::OptionRow(eOptionSource, eSectionScale,  L"src", L"source",    2, L"-src,\t--source <file>",          L"\t\t\tRead these files."),
    veltrane::OptionRow(eOptionSteps,  eSectionScale,  L"",    L"steps",     2),
    veltrane::OptionRow(eOptionTeam,   eSectionScale,  L"",    L"team",      3),
};
// clang-format on

// Of the library's options the tool has those that every tool needs.
constexpr veltrane::OwnTable OWN_TABLE{
    .options = OWN_OPTIONS, .sections = OWN_SECTIONS, .library = veltrane::BASE_ROWS};
static_assert(veltrane::FitsLibrary<OWN_TABLE>());

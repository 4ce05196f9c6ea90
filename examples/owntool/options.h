#pragma once
// clang-format off

#include "veltrane/options/xowntable.h"

using veltrane::OptionRow, veltrane::OwnOption;

constexpr enumCfgSection SCALE = veltrane::OwnSection(1);
inline constexpr XConfigSection OWN_SECTIONS[] = {veltrane::SectionRow(SCALE, eSectionUnnamed, L"SCALE")};

inline constexpr XOptionDefinition OWN_OPTIONS[] = {
    veltrane::TitleRow(L"scaling:"),
    //        number, kind of value                      section  short   long       tabs  syntax                              description
    OptionRow(OwnOption(1, eString | eSingle | eHelp),      SCALE, L"u",   L"unit",      3, L"-u, \t--unit <unit>",             L"\t\t\tMeasure in this unit."),
    OptionRow(OwnOption(2, eBoolean | eSingle | eHelp),     SCALE, L"dry", L"dry-run",   2, L"-dry,\t--dry-run [true,false]",   L"\t\tOnly tell what would be done."),
    OptionRow(OwnOption(3, eTrillian | eSingle | eHelp),    SCALE, L"",    L"round",     3, L"    \t--round [true,false,auto]", L"\t\tRound the results, or let the unit decide."),
    OptionRow(OwnOption(4, eString | eHelp),                SCALE, L"src", L"source",    2, L"-src,\t--source <file>",          L"\t\t\tRead these files."),
    OptionRow(OwnOption(5, eIList),                         SCALE, L"",    L"steps",     2),
    OptionRow(OwnOption(6, eString | eSingle | eMandatory), SCALE, L"",    L"team",      3),
};
inline constexpr veltrane::OwnTable OWN_TABLE{
    .options = OWN_OPTIONS, .sections = OWN_SECTIONS, .library = veltrane::BASE_ROWS};
static_assert(veltrane::FitsLibrary<OWN_TABLE>());
// clang-format on

// Input: the rows of a tool's table, one a line with columns separated by tabs: "option", id, section, short
// and long name, tabulators, syntax and description, or "section", value, parent and name; numbers are hexadecimal.
// Then the words of the command line and the basic file, each after a line "====". The table is refused, or its rows
// are found, shown in the help, typed and read like those of the library. Afterwards the library's table is as before.
#include <cwchar>

#include "fuzz_program.h"
#include "veltrane/foundation/xexception.h"
#include "veltrane/options/xoption.h"
#include "veltrane/options/xowntable.h"
#include "veltrane/platform/process/messagebox.h"
#include "veltrane/platform/process/process.h"
#include "veltrane/platform/sources/winreg.h"

using namespace veltrane;

namespace {

// A text that is too long fills its column without an end.
template <std::size_t Width>
void Fill(wchar_t (&column)[Width], CString& rest) {
    CString text;
    const int end = rest.Find(L'\t');
    text = end < 0 ? rest : rest.Left(end);
    rest = end < 0 ? CString{} : rest.Mid(end + 1);
    text.View().copy(column, Width);
}

std::int32_t Number(CString& rest) {
    wchar_t digits[16] = {};
    Fill(digits, rest);
    digits[15] = L'\0';
    return static_cast<std::int32_t>(std::wcstoul(digits, nullptr, 16));
}

struct Rows {
    std::vector<XOptionDefinition> options;
    std::vector<XConfigSection> sections;
};

Rows ReadRows(std::string_view input) {
    Rows rows;
    for (CString line : LinesOf(input)) {
        wchar_t kind[8] = {};
        Fill(kind, line);
        if (kind[0] == L'o') {
            XOptionDefinition& row = rows.options.emplace_back();
            row.eOption = static_cast<enumOption>(Number(line));
            row.eSection = static_cast<enumCfgSection>(Number(line));
            Fill(row.szShortName, line);
            Fill(row.szLongName, line);
            row.nTabulators = Number(line);
            Fill(row.szSyntax, line);
            Fill(row.szDescription, line);
        } else if (kind[0] == L's') {
            XConfigSection& row = rows.sections.emplace_back();
            row.eSection = static_cast<enumCfgSection>(Number(line));
            row.eParent = static_cast<enumCfgSection>(Number(line));
            Fill(row.szName, line);
        }
    }
    return rows;
}

CString Help() {
    CString help;
    SetMessageBoxHandler([&](const CString& text, unsigned, unsigned) {
        help = text;
        return 1;
    });
    ShowHelp();
    SetMessageBoxHandler({});
    return help;
}

void RequireKnown(const Rows& rows, int before) {
    const CString help = Help();
    REQUIRE(GetOptionDefinitionCount() == before + static_cast<int>(rows.options.size()));
    for (const XOptionDefinition& row : rows.options) {
        const XOptionDefinition* const known = GetOptionDefinitionAt(before++);
        REQUIRE(known && known->eOption == row.eOption && known->szSyntax == std::wstring_view{row.szSyntax});
        REQUIRE(!row.IsHelpVisible() || row.szSyntax == std::wstring_view{L"--"} || help.Find(row.szSyntax) >= 0);
        if (row.eOption == eOptionTitle) continue;
        REQUIRE(FindOptionDefinition(row.szLongName) == known);
        REQUIRE(row.szShortName[0] == 0 || FindOptionDefinition(CString{L"-"} + row.szShortName) == known);
    }
    for (const XConfigSection& row : rows.sections) {
        const XConfigSection* const known = FindConfigSection(row.eSection);
        REQUIRE(known && known->eParent == row.eParent && known->szName == std::wstring_view{row.szName});
    }
}

// An error of the library is an answer, too.
template <class Step>
void Try(Step step) try {
    step();
} catch (const XException& error) {
    REQUIRE(!error.GetMessage().IsEmpty());
}

void AskTyped(XOption& options, const XOptionDefinition& row) {
    const CString name = row.szLongName;
    if (row.eOption == eOptionTitle) return;
    for (const auto* item = options.GetFirstOptionItem(name); item; item = options.GetNextOptionItem(name)) {
        REQUIRE(item->GetID() == row.eOption);
        const int index = item->GetOptionIndex();
        Try([&] { REQUIRE(options.ExplainOption(name, index).hasValue); });
        Try([&] { options.GetOptionString(name, index); });
        Try([&] { options.GetOptionBoolean(name, index); });
        Try([&] { options.GetOptionTrillian(name, index); });
        Try([&] { options.GetOptionIList(name, index); });
    }
}

void Use(const Rows& rows, const CString& path) {
    XOption options;
    options.LookOnly(true);  // help and version do not end the process
    options.KeepOrigins(true);
    Try([&] { options.Initialize(path, L"tool", L"", L"", L""); });
    Try([&] { options.OpenConfiguration(); });
    Try([&] { options.ReadConfiguration(); });
    for (const XConfigSection& row : rows.sections) Try([&] { options.GetSectionName(row.eSection); });
    for (const XOptionDefinition& row : rows.options) Try([&] { AskTyped(options, row); });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const ProgramFolder folder;
    std::string_view input = InputText(data, size);
    const Rows rows = ReadRows(NextPart(input));
    std::vector<CString> words = LinesOf(NextPart(input));
    words.insert(words.begin(), L"tool");
    SetArguments(std::move(words));
    SetRegistryFile(L"/nowhere");
    folder.Write(".metadata/tool.ini", input);

    const CString help = Help();
    const int options = GetOptionDefinitionCount();
    const int sections = GetConfigSectionCount();
    Try([&] {
        const OwnOptions own{{rows.options, rows.sections}};
        RequireKnown(rows, options);
        Use(rows, folder.Path());
    });
    REQUIRE(GetOptionDefinitionCount() == options && GetConfigSectionCount() == sections && Help() == help);
    return 0;
}

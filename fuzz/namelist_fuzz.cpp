// Input: two name lists, the second after a line "====". The names that are read and reported, and the difference of
// the lists, are compared with a plain reading of the lines. A line that is neither a name nor a comment, or a version
// that is not the first entry, is an error.
#include <optional>
#include <set>

#include "fuzz_program.h"
#include "fuzz_text.h"
#include "namelist.h"
#include "veltrane/foundation/xexception.h"

using namespace veltrane;

namespace {

struct Model {
    std::set<CString> tables;
    std::set<CString> columns;
    int reported = 0;
    int badLine = 0;  // number of the line that ends the reading
};

bool IsVersion(const Text& text) {
    const Text number = text.starts_with(L"version") ? CString{text.substr(7).c_str()}.Trim().GetString() : L"";
    return text.find(L'\0') == text.npos && text.size() > 8 && IsWhiteSpace(text[7]) && !number.empty() &&
           number.find_first_not_of(L"0123456789") == Text::npos;
}

/// The name in a line that begins with a word and a blank.
std::optional<CString> NameAfter(const Text& word, const Text& text) {
    if (!text.starts_with(word) || text.size() <= word.size() || !IsWhiteSpace(text[word.size()])) return {};
    return CString{text.substr(word.size())}.Trim().MakeUpper();
}

Model Read(std::string_view list) {
    Model model;
    bool isFirst = true;
    if (list.starts_with("\xEF\xBB\xBF")) list.remove_prefix(3);
    for (int number = 1; !list.empty(); ++number) {
        const Text text{FromUtf8(NextLine(list)).Trim().View()};
        if (text.empty() || text[0] == L';') continue;
        const auto table = NameAfter(L"table", text);
        const auto column = NameAfter(L"column", text);
        if (table) model.tables.insert(*table);
        if (column) model.columns.insert(*column);
        model.reported += table || column ? 1 : 0;
        if (!table && !column && !(isFirst && IsVersion(text))) {
            model.badLine = number;
            return model;
        }
        isFirst = false;
    }
    return model;
}

std::set<CString> SetOf(const XSetString& names) {
    std::set<CString> set;
    for (int i = 0; i < names.Size(); ++i) {
        REQUIRE(i == 0 || names.GetConstRefAt(i - 1) < names.GetConstRefAt(i));
        set.insert(names.GetConstRefAt(i));
    }
    return set;
}

/// @return whether the list can be read
bool RequireList(NameList& names, const MemoryFile& file, std::string_view list, const Model& model) {
    file.Write(list);
    int reported = 0;
    try {
        XOption options;
        ReadNameList(options, file.Name(), [&](const ListedName& name) {
            REQUIRE(CString{name.oldName}.MakeUpper() == name.newName);
            Keep(name.isTable ? names.tables : names.columns, name.newName);
            ++reported;
        });
        REQUIRE(model.badLine == 0);
    } catch (const XException& error) {
        REQUIRE(model.badLine > 0 && error.GetMessage().Find(FormatText(L" line %d:", model.badLine)) > 0);
    }
    REQUIRE(reported == model.reported);
    return model.badLine == 0;
}

void AddMissing(std::vector<CString>& lines, const std::set<CString>& names, const std::set<CString>& others,
                const CString& sign) {
    for (const CString& name : names) {
        if (!others.contains(name)) lines.push_back(sign + name);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const MemoryFile file;
    std::string_view input = InputText(data, size);
    const std::string_view list = NextPart(input);
    const Model first = Read(list);
    const Model second = Read(input);
    NameList names;
    NameList others;
    const bool isFirstRead = RequireList(names, file, list, first);
    const bool isSecondRead = RequireList(others, file, input, second);
    if (!isFirstRead || !isSecondRead) return 0;

    std::vector<CString> lines;
    AddMissing(lines, first.tables, second.tables, L"- table ");
    AddMissing(lines, second.tables, first.tables, L"+ table ");
    AddMissing(lines, first.columns, second.columns, L"- column ");
    AddMissing(lines, second.columns, first.columns, L"+ column ");
    REQUIRE(Difference(names, others) == lines);
    REQUIRE(SetOf(names.tables) == first.tables && SetOf(names.columns) == first.columns);
    return 0;
}

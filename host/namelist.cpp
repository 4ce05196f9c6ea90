#include "namelist.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>

#include "nameline.h"
#include "printable.h"
#include "veltrane/foundation/xpath.h"
#include "veltrane/foundation/xraise.h"
#include "veltrane/platform/files/filesystem.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

constexpr XSource Here{L".\\namelist"};

// Rules and lists are compared in upper case.
constexpr bool KEEP_CASE = false;

XFileException NotReadable(const CString& file) {
    const XSite site = Here(L"ReadNameList");
    if (FileExists(file)) return MakeOpenError(site, file, {CFileException::accessDenied, EACCES, file});
    return MakeMissingFile(site, file, L"The name list does not exist!");
}

std::ifstream OpenNameList(const CString& file) {
    const std::string path = MapPath(file);
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(path, ignored)) throw NotReadable(file);
    std::ifstream lines{path};
    if (!lines) throw NotReadable(file);
    return lines;
}

void SortUnique(XSetString& names) {
    names.Sort(nullptr);
    XSetString unique;
    for (int i = 0; i < names.Size(); ++i) {
        if (i == 0 || names.GetConstRefAt(i) != names.GetConstRefAt(i - 1)) Keep(unique, names.GetConstRefAt(i));
    }
    unique.SetSorted(true);
    names = unique;
}

void AppendDifference(std::vector<CString>& lines, XSetString& names, XSetString& others, const CString& sign) {
    XSetString only;
    only.Sub(names, others);
    for (int i = 0; i < only.Size(); ++i) lines.push_back(sign + only.GetConstRefAt(i));
}

/// A place in a name list, as errors show it.
struct Line {
    const CString& file;
    int number;
    const CString& text;
};

CString Renamed(XOption& options, const CString& name, bool isTable, int version, const Line& line) try {
    CString renamed = name;
    if (isTable) {
        options.ReplaceTableName(renamed, version, KEEP_CASE);
    } else {
        options.ReplaceColumnsName(renamed, version, KEEP_CASE);
    }
    return renamed;
} catch (const std::length_error&) {
    throw MakeError(Here(L"ReadNameList"), L"The rules let a name of the list <%s> in line %d grow without end: <%s>!",
                    line.file, line.number, line.text);
}

}  // namespace

void Keep(XSetString& names, const CString& name) {
    if (!names.Insert(name, false)) throw std::bad_alloc{};
}

void ReadNameList(XOption& options, const CString& file, const std::function<void(const ListedName&)>& tell) {
    std::ifstream list = OpenNameList(file);
    int version = 0;
    bool isFirst = true;
    for (NameLines lines{list}; lines.Next(); isFirst = false) {
        if (lines.IsTooLong()) {
            throw MakeError(Here(L"ReadNameList"), L"The name list <%s> is longer than %d bytes in line %d: <%s>!",
                            file, NameLines::LONGEST, lines.Number(), Printable(lines.Text()));
        }
        const std::optional<NameLine> line = lines.Line();
        if (line && line->kind != NameLine::Kind::Version) {
            const bool isTable = line->kind == NameLine::Kind::Table;
            const CString renamed =
                Renamed(options, line->name, isTable, version, {file, lines.Number(), lines.Text()});
            tell({isTable, line->name, renamed});
        } else if (line && isFirst) {
            version = line->version;
        } else {
            throw MakeError(Here(L"ReadNameList"), L"The name list <%s> cannot be understood in line %d: <%s>!", file,
                            lines.Number(), lines.Text());
        }
    }
    if (list.bad()) throw NotReadable(file);
}

std::vector<CString> Difference(NameList& first, NameList& second) {
    for (XSetString* const names : {&first.tables, &first.columns, &second.tables, &second.columns}) SortUnique(*names);
    std::vector<CString> lines;
    AppendDifference(lines, first.tables, second.tables, L"- table ");
    AppendDifference(lines, second.tables, first.tables, L"+ table ");
    AppendDifference(lines, first.columns, second.columns, L"- column ");
    AppendDifference(lines, second.columns, first.columns, L"+ column ");
    return lines;
}

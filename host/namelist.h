#pragma once

#include <functional>
#include <vector>

#include "veltrane/collections/xsetstring.h"
#include "veltrane/options/xoption.h"
#include "veltrane/platform/text/cstring.h"

/// The names of one schema version, renamed by the rules.
struct NameList {
    XSetString tables;
    XSetString columns;
};

/// Appends a name. @throws std::bad_alloc  the set itself would only show a box and lose the name
void Keep(XSetString& names, const CString& name);

/// A name of a list.
struct ListedName {
    bool isTable;
    CString oldName;
    CString newName;  ///< as the rules change it
};

/// Reads a name list, renames each name and passes it on at once, in file order. Keeps none.
///
/// One name a line, "table NAME" or "column NAME"; "version N" may come first. Empty lines and lines that begin with
/// ';' are skipped. @throws XException  the file cannot be read, or a line is none of these or longer than 65,536
/// bytes, or a name grows beyond the longest text
void ReadNameList(XOption& options, const CString& file, const std::function<void(const ListedName&)>& tell);

/// What only the first list holds ("- table NAME") and what only the second holds ("+ table NAME"): sorted, tables
/// before columns. Leaves each name only once in the lists, in ascending order.
std::vector<CString> Difference(NameList& first, NameList& second);

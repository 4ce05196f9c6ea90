#pragma once

#include <vector>

#include "veltrane/collections/xsetstring.h"
#include "veltrane/options/xoption.h"
#include "veltrane/platform/text/cstring.h"

/// The names of one schema version, renamed by the rules; each name once, in ascending order.
struct NameList {
    XSetString tables;
    XSetString columns;
};

/// Reads a name list, renames it and adds a line "OLD -> NEW" for each name, in file order.
///
/// One name a line, "table NAME" or "column NAME"; "version N" may stand first. Empty lines and lines that begin with
/// ';' are skipped. @throws XException  the file can not be read, or a line is none of these
void LoadNameList(NameList& names, std::vector<CString>& renamings, XOption& options, const CString& file);

/// What only the first list holds ("- table NAME") and what only the second holds ("+ table NAME"): sorted, tables
/// before columns.
std::vector<CString> Difference(NameList& first, NameList& second);

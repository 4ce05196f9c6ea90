#pragma once

#include <functional>
#include <vector>

#include "veltrane/collections/xsetstring.h"
#include "veltrane/options/xoption.h"
#include "veltrane/platform/text/cstring.h"

/// The names of one schema version, renamed by the rules; each name once, in ascending order.
struct NameList {
    XSetString tables;
    XSetString columns;
};

/// Reads a name list, renames it and tells each name as it comes, in file order.
///
/// One name a line, "table NAME" or "column NAME"; "version N" may stand first. Empty lines and lines that begin with
/// ';' are skipped. @throws XException  the file cannot be read, or a line is none of these, or a
/// name grows beyond the longest text
void LoadNameList(NameList& names, XOption& options, const CString& file,
                  const std::function<void(const CString& oldName, const CString& newName)>& tell);

/// What only the first list holds ("- table NAME") and what only the second holds ("+ table NAME"): sorted, tables
/// before columns.
std::vector<CString> Difference(NameList& first, NameList& second);

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "veltrane/platform/export.h"
#include "veltrane/platform/text/cstring.h"

namespace veltrane::detail {

/// While one lives, given bytes stand for a file in its thread, whatever path leads to the file and whether it exists
/// or not: for values, lists, lines, naming rules, the registry, and the check of start-up that it exists. For a text
/// that is not on the disk yet. Of several for one file the newest answers; they may end in any order.
/// @code
/// const SourceReplacement edited{path, bytes};
/// const SourceFileLines view = ReadProfileLines(path);  // of the bytes
/// @endcode
class VELTRANE_API SourceReplacement {
public:
    /// @param bytes  all that the file would hold, a mark at its start included
    SourceReplacement(const CString& path, std::string bytes);
    SourceReplacement(const SourceReplacement&) = delete;
    SourceReplacement& operator=(const SourceReplacement&) = delete;
    ~SourceReplacement();

    /// The bytes that stand for a file in this thread; nothing for a file without a replacement.
    static std::optional<std::string_view> Find(CStringView path);

private:
    std::string m_Name;  // in full, links followed
    std::string m_Bytes;
    SourceReplacement* m_Older;
};

}  // namespace veltrane::detail

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "veltrane/platform/export.h"
#include "veltrane/platform/text/cstring.h"

namespace veltrane::detail {

/// While one lives, a file answers every question of its thread with given bytes, whatever path leads to it and whether
/// it is there or not: values, lists, lines, naming rules, the registry, and start-up's look whether it exists. For a
/// text that is not on the disk yet. Of several for one file the newest answers; they may end in any order.
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

    /// The bytes that stand for a file in this thread; nothing for a file that answers for itself.
    static std::optional<std::string_view> Find(CStringView path);

private:
    std::string m_Name;  // in full, links followed
    std::string m_Bytes;
    SourceReplacement* m_Older;
};

}  // namespace veltrane::detail

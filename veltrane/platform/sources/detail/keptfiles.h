#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string_view>

#include "veltrane/platform/text/cstring.h"

namespace veltrane::detail {

/// The bytes of a file; shared, as a question may go on while they are replaced.
struct FileBytes {
    std::shared_ptr<const char[]> data;
    std::size_t size = 0;

    std::string_view View() const noexcept { return {data.get(), size}; }
};

/// The configuration files that the questions of this thread's snapshot have read; a missing one is kept as empty.
class KeptFiles {
public:
    /// The files of the snapshot that is in force; null without one, and while an observer is set.
    static KeptFiles* Current();

    /// @return null when the file has to be read
    const FileBytes* Find(CStringView path) const;
    void Keep(CStringView path, FileBytes bytes);

private:
    struct Entry {
        CString path;
        FileBytes bytes;
    };
    std::array<Entry, 3> m_Entries;  // the two files of a store and the registry
    std::size_t m_nNext = 0;
};

}  // namespace veltrane::detail

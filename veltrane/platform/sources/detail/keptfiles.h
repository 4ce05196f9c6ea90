#pragma once

#include <array>
#include <cstddef>
#include <memory>

#include "veltrane/platform/sources/detail/textfile.h"
#include "veltrane/platform/text/cstring.h"

namespace veltrane::detail {

/// The configuration files that the questions of this thread's snapshot have read, a missing one too. Not one whose
/// reading failed: that may pass.
class KeptFiles {
public:
    /// The files of the snapshot that is in force; null without one, and while an observer is set.
    static KeptFiles* Current();

    /// @return null when the file has to be read
    std::shared_ptr<const FileText> Find(CStringView path) const;
    /// Keeps a file in place of the one that came three before it, which the question that asked for it may still read.
    void Keep(CStringView path, std::shared_ptr<const FileText> text);

private:
    struct Entry {
        CString path;
        std::shared_ptr<const FileText> text;
    };
    std::array<Entry, 3> m_Entries;  // the two files of a store and the registry
    std::size_t m_nNext = 0;
};

}  // namespace veltrane::detail

#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <optional>

#include "veltrane/platform/files/foreigncode.h"
#include "veltrane/platform/sources/detail/profileindex.h"
#include "veltrane/platform/sources/detail/registryindex.h"
#include "veltrane/platform/sources/detail/textfile.h"
#include "veltrane/platform/text/cstring.h"

namespace veltrane::detail {

/// How a file is found by its path.
enum class Spelling {
    AnyCase,  ///< through the path mapping
    Exact,    ///< as it is spelled, without a search
};

/// A file that a snapshot keeps, with what makes the next questions to it short.
class KeptFile {
public:
    /// From the second question on: one alone would not pay. @return null when the text is to be searched from the
    /// front
    const ProfileIndex* Profile();
    RegistryIndex& Registry();

    TextFile file;

private:
    unsigned m_nAsked = 0;
    std::optional<ProfileIndex> m_Profile;
    std::optional<RegistryIndex> m_Registry;
};

/// The configuration files that the questions of this thread's snapshot have read, a missing one too. Not one whose
/// reading failed: that may pass.
class KeptFiles {
public:
    /// The files of the snapshot that is in force; null without one.
    static KeptFiles* Current();

    /// @return null when the file has to be read
    std::shared_ptr<KeptFile> Find(CStringView path, Spelling spelling) const;
    /// Keeps a file in place of the one that came three before it, which the question that asked for it may still read.
    void Keep(CStringView path, Spelling spelling, std::shared_ptr<KeptFile> file);

private:
    struct Entry {
        CString path;
        Spelling spelling = Spelling::AnyCase;
        std::shared_ptr<KeptFile> file;
    };
    std::array<Entry, 3> m_Entries;  // the two files of a store and the registry
    std::size_t m_nNext = 0;
    unsigned m_nForeignRuns = ForeignCode::Runs();  // when the first file was read
};

}  // namespace veltrane::detail

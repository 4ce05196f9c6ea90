#pragma once

#include <cstddef>
#include <memory>

#include "veltrane/platform/sources/detail/keptfiles.h"
#include "veltrane/platform/sources/detail/textfile.h"
#include "veltrane/platform/text/cstring.h"

namespace veltrane::detail {

/// The file that a question is asked of: read anew, or as the snapshot of this thread
/// keeps it.
class AskedFile {
public:
    explicit AskedFile(CStringView path, Spelling spelling = Spelling::AnyCase);
    AskedFile(const AskedFile&) = delete;
    AskedFile& operator=(const AskedFile&) = delete;

    /// Both as long as this object.
    const TextFile& File() const noexcept { return m_Kept ? m_Kept->file : m_Own; }
    KeptFile* Kept() const noexcept { return m_Kept.get(); }  ///< null outside a snapshot

private:
    /// @return false, with nothing taken from it, when the file is not small or not surely a regular file
    bool ReadSmall(const NativeFile& file);

    static constexpr std::size_t SMALL_SIZE = 16384;  // nearly every configuration file fits: no memory is asked for

    char m_SmallBytes[SMALL_SIZE];
    TextFile m_Own;
    std::shared_ptr<KeptFile> m_Kept;
};

}  // namespace veltrane::detail

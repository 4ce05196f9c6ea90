#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "veltrane/platform/files/internal/nativefile.h"
#include "veltrane/platform/sources/detail/profileindex.h"
#include "veltrane/platform/sources/detail/registryindex.h"
#include "veltrane/platform/sources/sourcereading.h"
#include "veltrane/platform/text/cstring.h"
#include "veltrane/platform/text/internal/decoding.h"

namespace veltrane::detail {

/// How a file is found by its path.
enum class Spelling {
    AnyCase,  ///< through the path mapping
    Exact,    ///< as it is spelled, without a search
};

/// A configuration file as bytes to scan: without a mark at its start, and UTF-16 turned into UTF-8. Empty unless the
/// reading was done. A file that changes meanwhile gives what was there.
class SourceFile {
public:
    /// Largest file that is read: far above any configuration or export of a machine's registry, and small enough that
    /// a wrong name does not fill the memory.
    static constexpr std::size_t MAX_SIZE = std::size_t{256} << 20;

    /// Reads a regular file to its end, whatever size it claims.
    SourceFile(CStringView path, Spelling spelling);
    SourceFile(const SourceFile&) = delete;
    SourceFile& operator=(const SourceFile&) = delete;

    FileText Text() const noexcept { return m_Text; }
    SourceReading Result() const noexcept { return m_Reading; }
    SourceEncoding Encoding() const noexcept { return m_Encoding; }

    /// The index, made at the second question: one alone would not pay. @return null when the text is to be searched
    /// from the front
    const ProfileIndex* Profile();
    RegistryIndex& Registry();

private:
    /// @return false, with nothing taken from it, when the file is not small or not surely a regular file
    bool ReadSmall(const NativeFile& file);
    SourceReading ReadBytes(const NativeFile& file, std::size_t size);
    void MakeRoom(std::size_t room);
    void Assign(std::string_view bytes);

    static constexpr std::size_t SMALL_SIZE = 16384;  // nearly every configuration file fits: no allocation

    char m_SmallBytes[SMALL_SIZE];
    std::unique_ptr<char[]> m_Bytes;  // of a larger file; not cleared first
    std::size_t m_nSize = 0;
    std::string m_Converted;
    FileText m_Text;
    SourceEncoding m_Encoding = SourceEncoding::Utf8;
    SourceReading m_Reading = SourceReading::Done;
    unsigned m_nAsked = 0;
    std::optional<ProfileIndex> m_Profile;
    std::optional<RegistryIndex> m_Registry;
};

/// The file that a question is asked of: read anew, or as the snapshot of this thread keeps it.
class AskedFile {
public:
    explicit AskedFile(CStringView path, Spelling spelling = Spelling::AnyCase);
    AskedFile(const AskedFile&) = delete;
    AskedFile& operator=(const AskedFile&) = delete;

    /// Valid as long as this object.
    SourceFile& File() noexcept { return m_Kept ? *m_Kept : *m_Own; }

private:
    std::shared_ptr<SourceFile> m_Kept;
    std::optional<SourceFile> m_Own;
};

}  // namespace veltrane::detail
